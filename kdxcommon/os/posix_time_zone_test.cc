#include "kdxcommon/os/posix_time_zone.h"

#include <gtest/gtest.h>
#include <time.h>

#include <atomic>
#include <cerrno>
#include <limits>
#include <random>
#include <string>
#include <thread>
#include <utility>

#include "kdxcommon/testing/posix_faults.h"
#include "kdxcommon/testing/scoped_time_zone.h"

namespace kdx::os {
namespace {

constexpr time_t kJanuary2024 = 1705320000;  // 2024-01-15 12:00:00 UTC
constexpr time_t kJuly2024 = 1721044800;     // 2024-07-15 12:00:00 UTC

struct Zone {
  const char* name;
  std::int32_t bias, daylightBias;
  std::uint32_t january, july;  // results of GetTimeZoneInformation
  std::string names;
};
const Zone kZones[] = {
    {"UTC0", 0, 0, 0, 0, "UTC,"},
    {"Europe/London", 0, -60, 1, 2, "GMT,BST"},
    {"Europe/Berlin", -60, -60, 1, 2, "CET,CEST"},
    {"Asia/Kolkata", -330, 0, 0, 0, "IST,"},
    {"Asia/Kathmandu", -345, 0, 0, 0, "+0545,"},
    {"America/St_Johns", 210, -60, 1, 2, "NST,NDT"},
    {"America/New_York", 300, -60, 1, 2, "EST,EDT"},
    {"America/Sao_Paulo", 180, 0, 0, 0, "-03,"},
    {"Pacific/Apia", -780, 0, 0, 0, "+13,"},
    {"Pacific/Niue", 660, 0, 0, 0, "-11,"},
    {"Australia/Sydney", -600, -60, 2, 1, "AEST,AEDT"},
    {"Australia/Lord_Howe", -630, -30, 2, 1, "+1030,+11"},
    {"Europe/Dublin", 0, -60, 1, 2, "GMT,IST"},
    {"Africa/Casablanca", 0, -60, 2, 2, "+00,+01"},
    {"Europe/Moscow", -180, 0, 0, 0, "MSK,"},
    {"Asia/Aqtau", -300, 0, 0, 0, "+05,"},
    {"America/Caracas", 240, 0, 0, 0, "-04,"},
    {"<S234567890123456789012345678901X>5<D234567890123456789012345678901X>", 300, -60, 1, 2,
     "S234567890123456789012345678901,D234567890123456789012345678901"},
    {"AAA3BBB2,0/0,J365/25", 120, 0, 0, 0, "BBB,"},  // daylight time all year, of which the C library makes nothing
};

TEST(PosixTimeZone, PresentOfRealZones) {
  for (const Zone& row : kZones) {
    const testing::ScopedTimeZone scope(row.name);
    for (const auto& [now, id] : {std::pair(kJanuary2024, row.january), std::pair(kJuly2024, row.july)}) {
      const PosixTimeZone zone = timeZoneAt(now);
      const wstring_view standard = zone.information.StandardName, daylight = zone.information.DaylightName;
      EXPECT_EQ(zone.id, id) << row.name;
      EXPECT_EQ(zone.information.Bias, row.bias) << row.name;
      EXPECT_EQ(zone.information.DaylightBias, row.daylightBias) << row.name;
      EXPECT_EQ(std::string(standard.begin(), standard.end()) + ',' + std::string(daylight.begin(), daylight.end()),
                row.names);
    }
  }
}

TEST(PosixTimeZone, AChangedZoneIsNoticedInTheNextSecond) {
  const testing::ScopedTimeZone scope("Asia/Tokyo");
  const auto bias = [](std::int64_t second) { return cachedTimeZone(second).information.Bias; };
  constexpr BrokenDownTime kNoon{.tm_hour = 12, .tm_mday = 1, .tm_year = 70};
  EXPECT_EQ(bias(7), -540);
  EXPECT_EQ(secondOfStandardTime(kNoon), 3 * 3600);
  EXPECT_EQ(bias(7), -540);
  ::setenv("TZ", "Asia/Kolkata", 1);
  EXPECT_EQ(bias(7), -540);
  EXPECT_EQ(bias(8), -330);
  EXPECT_EQ(secondOfStandardTime(kNoon), 6 * 3600 + 1800);
  EXPECT_EQ(bias(8), -330);
  ::setenv("TZ", "Asia/Kathmandu", 1);
  OperatingSystem::current()._tzset();
  EXPECT_EQ(bias(8), -345);
  ::unsetenv("TZ");  // the system's zone, from its file if there is one
  const std::int32_t ofSystem = bias(9);
  testing::fault = {"stat", ENOENT, 1};
  EXPECT_EQ(bias(10), ofSystem);
  ::setenv("TZ", ":/etc/localtime", 1);
  EXPECT_EQ(bias(11), ofSystem);
}

TEST(PosixTimeZone, NamesFitOrFail) {
  const testing::ScopedTimeZone scope("EST5");
  char buffer[] = "before";
  EXPECT_EQ(timeZoneName(buffer, 3, 0), ERANGE);
  EXPECT_TRUE(timeZoneName(buffer, 6, 2) == EINVAL && timeZoneName(buffer, 6, -1) == EINVAL);
  EXPECT_EQ(timeZoneName(nullptr, 6, 0), EINVAL);
  EXPECT_STREQ(buffer, "before");
  EXPECT_EQ(timeZoneName(buffer, 4, 0), 0);
  EXPECT_STREQ(buffer, "EST");
}

// That every instant converts as the C library does it is seen by fuzz/posix_time_zone_fuzz.cc.
TEST(PosixTimeZone, FieldsOutOfBoundsCarryOverOrAreRefused) {
  const testing::ScopedTimeZone scope("Asia/Tokyo");
  std::mt19937 random(2106);
  const auto within = [&random](int limit) { return std::uniform_int_distribution<int>(-limit, limit)(random); };
  for (int i = 0; i < 50000; ++i) {
    const BrokenDownTime local{within(100000), within(100000), within(10000), within(1000), within(100), within(2000)};
    tm time{local.tm_sec, local.tm_min, local.tm_hour, local.tm_mday, local.tm_mon, local.tm_year, 0, 0, 0, 0, nullptr};
    const std::int64_t second = ::timegm(&time) - 9 * 3600;
    ASSERT_EQ(secondOfStandardTime(local), second < 0 || second > kLastConvertibleSecond ? -1 : second);
  }
  constexpr int kMost = std::numeric_limits<int>::max();
  EXPECT_EQ(secondOfStandardTime({kMost, kMost, kMost, kMost, kMost, kMost}), -1);
  EXPECT_EQ(secondOfStandardTime({-kMost, -kMost, -kMost, -kMost, -kMost, -kMost}), -1);
  EXPECT_EQ(secondOfStandardTime({.tm_mday = 1, .tm_year = 110, .tm_isdst = 1}), -1);
  BrokenDownTime time{.tm_sec = 7};
  for (const std::int64_t second : {std::int64_t{-1}, kLastConvertibleSecond + 1}) {
    EXPECT_FALSE(breakDownUtc(second, time) || breakDownLocal(second, time));
  }
  EXPECT_EQ(time.tm_sec, 7);
}

TEST(PosixTimeZoneConcurrency, ThreadsAskWhileTheZoneIsForgotten) {
  const testing::ScopedTimeZone scope("America/St_Johns");
  std::atomic<int> wrong{0};
  const auto ask = [&wrong] {
    for (int question = 0; question < 2000; ++question) {
      char name[8] = "";
      BrokenDownTime local;
      const bool right = currentTimeZone().information.Bias == 210 && timeZoneName(name, sizeof name, 0) == 0 &&
                         std::string(name) == "NST" && breakDownLocal(kJanuary2024, local) && local.tm_hour == 8;
      if (!right) ++wrong;
      if (question % 100 == 0) cachedTimeZone(question);
    }
  };
  { const std::jthread first(ask), second(ask), third(ask); }
  EXPECT_EQ(wrong, 0);
}

}  // namespace
}  // namespace kdx::os
