#include <gtest/gtest.h>

#include <vector>

#include "kdxcommon/datetime/calendar_date.h"
#include "kdxcommon/datetime/date_time.h"
#include "kdxcommon/datetime/time_of_day.h"
#include "kdxcommon/testing/fake_zone.h"

namespace kdx {
namespace {

using testing::FakeZone;
using Texts = std::vector<string>;

string narrow(const string& text) {
  return text;
}

string narrow(const wstring& text) {
  return {text.begin(), text.end()};
}

// All texts of an object, one printed over the other.
template <typename Text>
Texts printed(const CDateTime& time, Text out) {
  return {narrow(time.formatXMLDateTime(out, false)),   narrow(time.formatXMLDateTime(out, true)),
          narrow(time.formatYYYYMMDDHHMMSS(out)),       narrow(time.formatLocalYYYYMMDDHHMMSS(out)),
          narrow(time.formatMMDDYYYYHHMMSS(out)),       narrow(time.formatLocalMMDDYYYYHHMMSS(out)),
          narrow(time.formatODBCDate(out, false)),      narrow(time.formatODBCDate(out, true)),
          narrow(time.formatLocalODBCDate(out, false)), narrow(time.formatLocalODBCDate(out, true))};
}

template <typename Text>
Texts printed(const CTime& time, Text out) {
  return {narrow(time.formatHHMMSS(out)),
          narrow(time.formatODBCTime(out, false)),
          narrow(time.formatODBCTime(out, true)),
          narrow(time.formatLocalHHMMSS(out)),
          narrow(time.formatLocalODBCTime(out, false)),
          narrow(time.formatLocalODBCTime(out, true))};
}

template <typename Text>
Texts printed(const CDate& date, Text out) {
  return {narrow(date.formatMMDDYYYY(out)), narrow(date.formatXMLDate(out)), narrow(date.formatODBCDate(out, false)),
          narrow(date.formatODBCDate(out, true))};
}

template <typename Object>
void expectTexts(const Object& object, const Texts& expected) {
  EXPECT_EQ(printed(object, string("a longer text than any of these, left over")), expected);
  EXPECT_EQ(printed(object, wstring()), expected);
}

TEST(FormatDateTime, PrintsUtcAndLocalTime) {
  const FakeZone zone(-120);
  expectTexts(CDateTime(1281021492),
              {"2010-08-05T15:18:12Z", "2010-08-05T15:18:12", "2010/08/05 15:18:12", "2010/08/05 17:18:12",
               "08-05-2010 15:18:12", "08/05/2010 17:18:12", "{ts'2010-08-05 15:18:12'}", "{ts+'2010-08-05 15:18:12+'}",
               "{ts'2010-08-05 17:18:12'}", "{ts+'2010-08-05 17:18:12+'}"});
  CDateTime none(0);
  const auto expectStartOf1970 = [&none] {
    expectTexts(none, {"1970-01-01T00:00:00Z", "1970-01-01T00:00:00", "1970/01/01 00:00:00", "1970/01/01 00:00:00",
                       "01/01/1970 00:00:00", "01/01/1970 00:00:00", "{ts'1970-01-01 00:00:00'}",
                       "{ts+'1970-01-01 00:00:00+'}", "{ts'1970-01-01 00:00:00'}", "{ts+'1970-01-01 00:00:00+'}"});
  };
  expectStartOf1970();
  none.bySeconds(0);  // the timestamp now is that second's
  none.setTimeStampComparsion(true);
  ASSERT_FALSE(none.empty());
  expectStartOf1970();
}

TEST(FormatTimeOfDay, ConvertsWithTheZoneInForceNow) {
  const struct {
    std::int32_t bias;
    std::uint32_t inForce;
    Time_t time;
    string utc, local;
  } kRows[] = {{-120, os::kTimeZoneIdStandard, {15, 18, 12, 7}, "15:18:12", "17:18:12"},
               {-120, os::kTimeZoneIdStandard, {22, 0, 0, 0}, "22:00:00", "00:00:00"},
               {300, os::kTimeZoneIdUnknown, {3, 0, 0, 0}, "03:00:00", "22:00:00"},
               {300, os::kTimeZoneIdDaylight, {3, 0, 0, 0}, "03:00:00", "23:00:00"},
               {300, os::kTimeZoneIdInvalid, {3, 0, 9, 0}, "03:00:09", "03:00:09"},
               {0, os::kTimeZoneIdUnknown, {}, "00:00:00", "00:00:00"}};
  for (const auto& [bias, inForce, time, utc, local] : kRows) {
    const FakeZone zone(bias, inForce);
    expectTexts(CTime(time, true),
                {utc, "{t'" + utc + "'}", "{t+'" + utc + "+'}", local, "{t'" + local + "'}", "{t+'" + local + "+'}"});
  }
}

TEST(FormatDate, PrintsTheFieldsAsTheyStand) {
  expectTexts(CDate({2010, 8, 5}), {"08-05-2010", "2010-08-05", "{d'2010-08-05'}", "{d+'2010-08-05+'}"});
  expectTexts(CDate(Date_t{}), {"00-00-0000", "0000-00-00", "{d'0000-00-00'}", "{d+'0000-00-00+'}"});
  expectTexts(CDate({-5, 99, 100}), {"99-100--0005", "-0005-99-100", "{d'-0005-99-100'}", "{d+'-0005-99-100+'}"});
  expectTexts(CDate({-32768, 65535, 1}),
              {"65535-01--32768", "-32768-65535-01", "{d'-32768-65535-01'}", "{d+'-32768-65535-01+'}"});
}

}  // namespace
}  // namespace kdx
