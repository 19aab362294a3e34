#include "kdxcommon/datetime/time_of_day.h"

#include <gtest/gtest.h>

#include "kdxcommon/testing/fake_zone.h"

namespace kdx {
namespace {

using testing::FakeZone;

constexpr std::int64_t kDay = 86400;

TEST(TimeOfDay, TakesWhatIsATimeAndClearsForTheRest) {
  const FakeZone zone(300, os::kTimeZoneIdDaylight);
  CTime time;
  EXPECT_EQ(time, (Time_t{15, 18, 12, 0}));
  for (const Time_t& refused : {Time_t{24, 0, 0, 7}, Time_t{0, 60, 0, 7}, Time_t{0, 0, 60, 7}}) {
    EXPECT_TRUE(time.set({23, 59, 59, 7}, true));
    EXPECT_EQ(time, (Time_t{23, 59, 59, 7}));
    EXPECT_FALSE(time.set(refused, true));
    EXPECT_TRUE(time.empty());
  }
  time = tagTIMESTAMP_STRUCT{-1, 99, 99, 0, 0, 0, 7};
  EXPECT_TRUE(!time.empty() && time.seconds() == 0);
}

TEST(TimeOfDay, StoresLocalTimeAsUtc) {
  {
    const FakeZone zone(300);
    CTime time;
    EXPECT_TRUE(time.set(20, 1, 2, false));
    EXPECT_EQ(time, (Time_t{1, 1, 2, 0}));
    EXPECT_EQ(CTime({19, 0, 0, 7}, false), (Time_t{0, 0, 0, 0}));
    EXPECT_EQ(time = (Time_t{1, 2, 3, 4}), (Time_t{1, 2, 3, 4}));
  }
  for (const std::int32_t bias : {0, 300, -120, -345, 720, -840}) {
    for (const std::uint32_t inForce : {os::kTimeZoneIdStandard, os::kTimeZoneIdDaylight}) {
      const FakeZone zone(bias, inForce);
      const std::int64_t offset = bias * 60 - (inForce == os::kTimeZoneIdDaylight ? 3600 : 0);
      CTime time;
      for (std::uint32_t second = 0; second <= kDay; ++second) {
        ASSERT_TRUE(time.set(second, false));
        ASSERT_EQ(time.seconds(), second % kDay == 0 ? 0 : (second + kDay + offset) % kDay);
      }
      ASSERT_TRUE(time.set({0, 0, 0, 7}, false));
      ASSERT_EQ(time.seconds(), (kDay + offset) % kDay);
      ASSERT_EQ(time.time().fraction, 0U);
      EXPECT_FALSE(time.set(kDay + 1, false));
      ASSERT_EQ(time.seconds(), (kDay + offset) % kDay);
    }
  }
  const FakeZone unreadable(300, os::kTimeZoneIdInvalid);
  CTime time;
  EXPECT_TRUE(time.set(0U, false) && time.set(86400U, false));  // asks for no zone
  EXPECT_FALSE(time.set(5U, false));
  EXPECT_EQ(time, (Time_t{0, 0, 5, 0}));
  EXPECT_FALSE(time.set({10, 0, 0, 7}, false));
  EXPECT_EQ(time, (Time_t{10, 0, 0, 7}));
}

TEST(TimeOfDay, MovesRoundTheClockFace) {
  const Time_t kStarts[] = {{0, 0, 0, 7}, {12, 34, 56, 7}, {23, 59, 59, 7}};
  for (std::int32_t delta = -86401; delta <= 86401; ++delta) {
    for (const Time_t& start : kStarts) {
      CTime time(start, true);
      const std::int64_t before = time.seconds();
      ASSERT_EQ(time.bySeconds(delta), delta >= -kDay && delta <= kDay);
      const bool stays = delta % kDay == 0 || delta > kDay || delta < -kDay;
      ASSERT_EQ(time.time().fraction, stays ? 7U : 0U);
      ASSERT_EQ(time.seconds(), stays ? before : (before + delta + kDay) % kDay);
    }
  }
  CTime time({12, 0, 0, 7}, true);
  EXPECT_TRUE(time.byHours(24) && time.byHours(-24) && time.byMinutes(1440) && time.byMinutes(-1440));
  EXPECT_FALSE(time.byHours(25) || time.byHours(-25) || time.byMinutes(1441) || time.byMinutes(-1441));
  EXPECT_EQ(time, (Time_t{12, 0, 0, 7}));
  EXPECT_TRUE(time.byHours(-13) && time.byMinutes(61));
  EXPECT_EQ(time, (Time_t{0, 1, 0, 0}));
}

}  // namespace
}  // namespace kdx
