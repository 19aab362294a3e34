// The texts and numbers of a few instants, times and dates, as their users see them. Everything else is held against
// models of them by fuzz/dates_fuzz.cc.

#include "kdxcommon/datetime/date_time.h"

#include <gtest/gtest.h>

#include "kdxcommon/datetime/calendar_date.h"
#include "kdxcommon/datetime/time_of_day.h"
#include "kdxcommon/testing/fake_zone.h"

namespace kdx {
namespace {

TEST(DateTime, IsAnInstantWithTextsInUtcAndLocalTime) {
  const testing::FakeZone zone(-120);
  CDateTime time({2010, 8, 5, 17, 18, 12, 500}, false);
  string text;
  EXPECT_EQ(time.unixTime(), 1281021492U);
  EXPECT_EQ(time.formatXMLDateTime(text, false), "2010-08-05T15:18:12Z");
  EXPECT_EQ(time.formatYYYYMMDDHHMMSS(text), "2010/08/05 15:18:12");
  EXPECT_EQ(time.formatMMDDYYYYHHMMSS(text), "08-05-2010 15:18:12");
  EXPECT_EQ(time.formatLocalMMDDYYYYHHMMSS(text), "08/05/2010 17:18:12");
  EXPECT_EQ(time.formatLocalODBCDate(text, true), "{ts+'2010-08-05 17:18:12+'}");
  EXPECT_TRUE(time.byMonths(-1));
  EXPECT_EQ(time.unixTime(), 1281021492U - 2628028U);  // 30.417 days
  EXPECT_EQ(CDateTime(0).formatMMDDYYYYHHMMSS(text), "01/01/1970 00:00:00");
}

TEST(DateTime, HasTimesAndDatesBesideIt) {
  const testing::FakeZone zone(300, os::kTimeZoneIdDaylight);
  string text;
  EXPECT_EQ(CTime({23, 30, 0, 7}, false).formatODBCTime(text, false), "{t'03:30:00'}");
  EXPECT_EQ(CTime({3, 30, 0, 7}, true).formatLocalHHMMSS(text), "23:30:00");
  EXPECT_EQ(CDate({2100, 2, 29}).formatODBCDate(text, true), "{d+'2100-02-29+'}");
  CDate date;
  EXPECT_TRUE(date.set(2100, 2, 29) && !date.set(2010, 2, 29) && date.empty());
}

}  // namespace
}  // namespace kdx
