#include "kdxcommon/os/posix_time_zone.h"

#include <gtest/gtest.h>
#include <time.h>

#include <atomic>
#include <cerrno>
#include <limits>
#include <random>
#include <string>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

#include "kdxcommon/os/operating_system.h"
#include "kdxcommon/testing/scoped_time_zone.h"

namespace kdx {
namespace {

using testing::ScopedTimeZone;

constexpr std::int64_t kJanuary2024 = 1705320000;  // 2024-01-15 12:00:00 UTC
constexpr std::int64_t kJuly2024 = 1721044800;     // 2024-07-15 12:00:00 UTC

constexpr const char* kZones[] = {"UTC0",         "Europe/London",       "Europe/Dublin",     "Europe/Berlin",
                                  "Asia/Kolkata", "Asia/Kathmandu",      "Asia/Tokyo",        "America/St_Johns",
                                  "Pacific/Apia", "America/New_York",    "America/Sao_Paulo", "Australia/Sydney",
                                  "Pacific/Niue", "Australia/Lord_Howe", "Pacific/Kiritimati"};

std::string text(const wchar* name) {
  const wstring_view units = name;
  return {units.begin(), units.end()};
}

auto fields(const BrokenDownTime& time) {
  return std::tie(time.tm_sec, time.tm_min, time.tm_hour, time.tm_mday, time.tm_mon, time.tm_year, time.tm_wday,
                  time.tm_yday, time.tm_isdst);
}

auto fields(const tm& time) {
  return std::tie(time.tm_sec, time.tm_min, time.tm_hour, time.tm_mday, time.tm_mon, time.tm_year, time.tm_wday,
                  time.tm_yday, time.tm_isdst);
}

BrokenDownTime record(const tm& time) {
  return {time.tm_sec, time.tm_min, time.tm_hour, time.tm_mday, time.tm_mon, time.tm_year, 0, 0, 0};
}

TEST(PosixTimeZone, PresentOfRealZones) {
  const struct {
    const char* name;
    std::int32_t bias, daylightBias;
    std::uint32_t january, july;
    const char *standardName, *daylightName;
  } kRows[] = {
      {"UTC0", 0, 0, 0, 0, "UTC", ""},
      {"Europe/London", 0, -60, 1, 2, "GMT", "BST"},
      {"Europe/Berlin", -60, -60, 1, 2, "CET", "CEST"},
      {"Asia/Kolkata", -330, 0, 0, 0, "IST", ""},
      {"Asia/Kathmandu", -345, 0, 0, 0, "+0545", ""},
      {"America/St_Johns", 210, -60, 1, 2, "NST", "NDT"},
      {"America/New_York", 300, -60, 1, 2, "EST", "EDT"},
      {"America/Sao_Paulo", 180, 0, 0, 0, "-03", ""},
      {"Pacific/Apia", -780, 0, 0, 0, "+13", ""},
      {"Pacific/Niue", 660, 0, 0, 0, "-11", ""},
      {"Pacific/Kiritimati", -840, 0, 0, 0, "+14", ""},
      {"Australia/Sydney", -600, -60, 2, 1, "AEST", "AEDT"},
      {"Australia/Lord_Howe", -630, -30, 2, 1, "+1030", "+11"},
      {"AAA3BBB2,0/0,J365/25", 120, 0, 0, 0, "BBB", ""},  // daylight time all year
      {"No/Such_Zone", 0, 0, 0, 0, "", ""},
  };
  for (const auto& row : kRows) {
    const ScopedTimeZone scope(row.name);
    for (const auto& [now, id] : {std::pair(kJanuary2024, row.january), std::pair(kJuly2024, row.july)}) {
      const PosixTimeZone zone = timeZoneAt(now);
      EXPECT_EQ(zone.id, id) << row.name;
      EXPECT_EQ(zone.information.Bias, row.bias) << row.name;
      EXPECT_EQ(zone.information.StandardBias, 0) << row.name;
      EXPECT_EQ(zone.information.DaylightBias, row.daylightBias) << row.name;
      EXPECT_EQ(text(zone.information.StandardName), row.standardName);
      EXPECT_EQ(text(zone.information.DaylightName), row.daylightName);
    }
  }
}

TEST(PosixTimeZone, BiasAndDaylightBiasGiveLocalTimeEverywhere) {
  for (const char* name : kZones) {
    const ScopedTimeZone scope(name);
    for (const time_t now : {kJanuary2024, kJuly2024}) {
      const PosixTimeZone zone = timeZoneAt(now);
      tm local;
      ::localtime_r(&now, &local);
      const std::int32_t daylight = zone.id == kTimeZoneIdDaylight ? zone.information.DaylightBias : 0;
      EXPECT_EQ((zone.information.Bias + daylight) * -60, local.tm_gmtoff) << name;
      EXPECT_EQ(zone.id == kTimeZoneIdDaylight, local.tm_isdst > 0) << name;
    }
  }
}

TEST(PosixTimeZone, AChangedZoneIsNoticedInTheNextSecond) {
  const ScopedTimeZone scope("Asia/Tokyo");
  const auto bias = [](std::int64_t second) { return timeZoneInSecond(second).information.Bias; };
  EXPECT_EQ(bias(7), -540);
  ::setenv("TZ", "Asia/Kolkata", 1);
  EXPECT_EQ(bias(7), -540);
  EXPECT_EQ(bias(8), -330);
  ::setenv("TZ", "Pacific/Niue", 1);
  EXPECT_EQ(bias(8), -330);
  forgetTimeZone();
  EXPECT_EQ(bias(8), 660);
}

TEST(PosixTimeZone, NamesFitOrFail) {
  const ScopedTimeZone scope("EST5");
  OperatingSystem& system = OperatingSystem::current();
  char buffer[] = "before";
  for (const auto& [size, index, error] : {std::tuple(3u, 0, ERANGE), {6u, 2, EINVAL}, {6u, -1, EINVAL}}) {
    EXPECT_EQ(system._get_tzname(buffer, size, index), error);
    EXPECT_STREQ(buffer, "before");
  }
  EXPECT_EQ(system._get_tzname(nullptr, 9, 0), EINVAL);
  EXPECT_EQ(system._get_tzname(buffer, 4, 0), 0);
  EXPECT_STREQ(buffer, "EST");
  EXPECT_EQ(system._get_tzname(buffer, 1, 1), 0);
  EXPECT_STREQ(buffer, "");
}

TEST(PosixTimeZone, BreaksDownAsTheCLibraryDoes) {
  std::mt19937_64 random(1970);
  std::uniform_int_distribution<std::int64_t> seconds(0, kLastConvertibleSecond);
  std::vector<time_t> instants = {0, 1, 86399, 86400, 951782400, 0x7FFFFFFF, 0xFFFFFFFF, kLastConvertibleSecond};
  for (int i = 0; i < 20000; ++i) instants.push_back(i % 2 ? seconds(random) : seconds(random) & 0xFFFFFFFF);
  for (const char* name : kZones) {
    const ScopedTimeZone scope(name);
    const std::int32_t bias = currentTimeZone().information.Bias;
    for (const time_t instant : instants) {
      tm expected;
      BrokenDownTime actual;
      ::gmtime_r(&instant, &expected);
      ASSERT_TRUE(breakDownUtc(instant, actual));
      ASSERT_EQ(fields(actual), fields(expected)) << instant;
      // Read as standard time, less the bias: the same second again, at whatever date.
      const std::int64_t second = secondOfStandardTime(actual);
      const std::int64_t shifted = instant + bias * 60;
      ASSERT_EQ(second, shifted < 0 || shifted > kLastConvertibleSecond ? -1 : shifted) << name << ' ' << instant;
      ::localtime_r(&instant, &expected);
      ASSERT_TRUE(breakDownLocal(instant, actual));
      ASSERT_EQ(fields(actual), fields(expected)) << name << ' ' << instant;
    }
  }
}

TEST(PosixTimeZone, FieldsOutOfBoundsCarryOver) {
  const ScopedTimeZone scope("Asia/Tokyo");
  std::mt19937 random(2106);
  const auto about = [&random](int middle, int spread) {
    return std::uniform_int_distribution<int>(middle - spread, middle + spread)(random);
  };
  for (int i = 0; i < 50000; ++i) {
    tm time{};
    time.tm_sec = about(0, 100000);
    time.tm_min = about(0, 100000);
    time.tm_hour = about(0, 10000);
    time.tm_mday = about(0, 1000);
    time.tm_mon = about(0, 100);
    time.tm_year = about(110, 100);
    const BrokenDownTime local = record(time);
    const std::int64_t expected = ::timegm(&time) - 9 * 3600;
    ASSERT_EQ(secondOfStandardTime(local), expected < 0 ? -1 : expected);
  }
}

TEST(PosixTimeZone, ConversionsKnowTheirLimits) {
  const ScopedTimeZone scope("UTC0");
  BrokenDownTime time{.tm_sec = 7};
  for (const std::int64_t second : {std::int64_t{-1}, kLastConvertibleSecond + 1}) {
    EXPECT_FALSE(breakDownUtc(second, time));
    EXPECT_FALSE(breakDownLocal(second, time));
    EXPECT_EQ(time.tm_sec, 7);
  }
  constexpr int kMost = std::numeric_limits<int>::max();
  const BrokenDownTime kRefused[] = {
      {.tm_sec = -1, .tm_mday = 1, .tm_year = 70},
      {.tm_mday = 1, .tm_year = 1101},
      {.tm_mday = 1, .tm_year = 110, .tm_isdst = 1},
      {kMost, kMost, kMost, kMost, kMost, kMost, 0, 0, 0},
      {-kMost, -kMost, -kMost, -kMost, -kMost, -kMost, 0, 0, 0},
  };
  for (const BrokenDownTime& refused : kRefused) EXPECT_EQ(secondOfStandardTime(refused), -1);
  EXPECT_EQ(secondOfStandardTime({.tm_mday = 1, .tm_year = 70}), 0);
  EXPECT_EQ(secondOfStandardTime({59, 59, 23, 31, 11, 1100, 0, 0, 0}), kLastConvertibleSecond);
}

TEST(PosixTimeZoneConcurrency, ThreadsAskWhileTheZoneIsForgotten) {
  const ScopedTimeZone scope("America/St_Johns");
  std::atomic<int> wrong{0};
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&wrong] {
      OperatingSystem& system = OperatingSystem::current();
      for (int question = 0; question < 2000; ++question) {
        TIME_ZONE_INFORMATION zone;
        char name[8] = "";
        BrokenDownTime local;
        const bool right = system.GetTimeZoneInformation(zone) != kTimeZoneIdInvalid && zone.Bias == 210 &&
                           system._get_tzname(name, sizeof name, 0) == 0 && std::string(name) == "NST" &&
                           system._localtime64(kJanuary2024, local) && local.tm_hour == 8 && local.tm_min == 30;
        if (!right) ++wrong;
        if (question % 100 == 0) forgetTimeZone();
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(wrong, 0);
}

}  // namespace
}  // namespace kdx
