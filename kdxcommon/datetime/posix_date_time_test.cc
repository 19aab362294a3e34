// Dates and times against the C library, in zones that the system knows.

#include <gtest/gtest.h>
#include <time.h>

#include <random>

#include "kdxcommon/datetime/date_time.h"
#include "kdxcommon/testing/scoped_time_zone.h"

namespace kdx {
namespace {

TEST(DateTimeInRealZones, AgreesWithTheCLibrary) {
  constexpr int kInstantsPerZone = 16000;
  std::mt19937 random(20100805);
  std::uniform_int_distribution<std::uint32_t> instants(1, 0xFFFFFFFE);
  for (const char* name : {"UTC", "Europe/London", "Europe/Dublin", "Europe/Berlin", "Asia/Kolkata", "Asia/Kathmandu",
                           "America/New_York", "America/St_Johns", "America/Sao_Paulo", "Pacific/Apia",
                           "Pacific/Honolulu", "Australia/Lord_Howe", "Africa/Casablanca"}) {
    const testing::ScopedTimeZone zone(name);
    SCOPED_TRACE(name);
    string text;
    wstring wideText;
    char expected[64];
    for (int i = 0; i < kInstantsPerZone; ++i) {
      const time_t instant = instants(random);
      tm utc, local;
      ::gmtime_r(&instant, &utc);
      ::localtime_r(&instant, &local);
      const CDateTime dateTime(static_cast<std::uint32_t>(instant));
      ::strftime(expected, sizeof expected, "%Y-%m-%dT%H:%M:%SZ", &utc);
      ASSERT_EQ(dateTime.formatXMLDateTime(text, false), expected);
      ::strftime(expected, sizeof expected, "%m/%d/%Y %H:%M:%S", &local);
      ASSERT_EQ(dateTime.formatLocalMMDDYYYYHHMMSS(text), expected);
      ASSERT_EQ(dateTime.formatLocalMMDDYYYYHHMMSS(wideText), wstring(text.begin(), text.end()));
      ASSERT_EQ(CDateTime(dateTime.timeStamp(), true).unixTime(), ::timegm(&utc));
    }
  }
}

TEST(DateTimeInRealZones, ReadsLocalTimeByTheStandardTimeOfTheDate) {
  // Noon of standard time, which daylight time shows an hour later.
  const struct {
    const char *zone, *noon, *printed;
  } kRows[] = {{"Europe/Istanbul", "2015-01-15T12:00:00", "2015/01/15 12:00:00"},
               {"Europe/Istanbul", "2015-07-15T12:00:00", "2015/07/15 13:00:00"},
               {"Europe/Istanbul", "2020-01-15T12:00:00", "2020/01/15 12:00:00"},
               {"Europe/Moscow", "2012-01-15T12:00:00", "2012/01/15 12:00:00"},
               {"America/Caracas", "2010-01-15T12:00:00", "2010/01/15 12:00:00"},
               {"America/Havana", "2005-07-15T12:00:00", "2005/07/15 13:00:00"},  // the second of three such summers
               {"Europe/Dublin", "1971-01-15T12:00:00", "1971/01/15 12:00:00"},
               {"Europe/Dublin", "2015-01-15T12:00:00", "2015/01/15 12:00:00"},
               {"Europe/Dublin", "2015-07-15T12:00:00", "2015/07/15 13:00:00"},
               {"Africa/Casablanca", "2015-01-15T12:00:00", "2015/01/15 12:00:00"},
               {"Africa/Casablanca", "2020-01-15T12:00:00", "2020/01/15 13:00:00"},
               {"Africa/Casablanca", "2020-05-10T12:00:00", "2020/05/10 12:00:00"},
               {"Africa/Windhoek", "2018-01-15T12:00:00", "2018/01/15 12:00:00"}};
  for (const auto& [name, noon, printed] : kRows) {
    const testing::ScopedTimeZone zone(name);
    CDateTime dateTime;
    string text;
    ASSERT_TRUE(dateTime.setXML(string(noon), false));
    EXPECT_EQ(dateTime.formatLocalYYYYMMDDHHMMSS(text), printed) << name;
  }
}

}  // namespace
}  // namespace kdx
