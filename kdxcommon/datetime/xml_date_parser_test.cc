#include <gtest/gtest.h>

#include <vector>

#include "kdxcommon/datetime/calendar_date.h"
#include "kdxcommon/datetime/date_time.h"
#include "kdxcommon/testing/fake_zone.h"

namespace kdx {
namespace {

using testing::FakeZone;

enum Reading { kAsUtc, kAsTold, kRefused, kOutOfForm };

const struct {
  Reading reading;
  string fields;  // empty for an object that ends up cleared
  std::vector<string> texts;
} kExamples[] = {
    {kAsUtc,
     "2010-08-05T15:18:12",
     {"2010-08-05T15:18:12Z", "2010-08-05T15:18:12.250Z", " 2010-08-05T15:18:12Z", {"2010-08\0-05T15:18:12Z", 21}}},
    {kAsTold,
     "2010-08-05T15:18:12",
     {"2010-08-05T15:18:12", "2010-08-05T15:18:12.250", "2010-08-05T15:18:12+02:00", "2010-08-05T15:18:12-05:00",
      "2010-08-05T15:18:12.5+02:00", "2010-08-05T15:18:12z", "2010-08-05T15:18:12Z ", "2010-08-05T15:18:12.",
      "2010x-08y-05zT15a:18b:12c"}},
    {kAsTold, "2010-08-05T15:18:00", {"2010-08-05T15:18:", "2010-08-05T15:18:.5"}},
    {kAsUtc, "2010-08-05T01:02:03", {"2010-8-5T1:2:3Z"}},
    {kAsUtc,
     "2010-08-05T00:00:00",
     {"2010-08-05", "2010-08-05Z", "+2010-08-05", "2010-65544-05", "00000000002010-08-05", "2010-08-05 15:18:12",
      "2010-08-05t15:18:12"}},
    {kAsUtc, "2010-08-01T00:00:00", {"2010-08--4294967295"}},
    {kAsUtc, "2100-03-01T00:00:00", {"2100-02-29"}},
    {kRefused,
     "",
     {"", "2010-13-05T00:00:00Z", "2010-02-30", "2010-08-05T24:00:00Z", "2010-08-05T15:18:60Z", "2010-08-T15:18:12",
      "0000-00-00T00:00:00", "2010-08--5", "2010-4294967304-05", "2010-08--99999999999999999999",
      "2010-08-05T15:18:12.4294965228Z"}},  // the last one's fields add up to 0 in 32 bits
    {kOutOfForm,
     "",
     {"Z", "-", "-2010-08-05", "2010", "2010/08/05", "2010-08", "2010--05", "2010-08-05T", "2010-08-05T15",
      "2010-08-05T:18:12", "2010-08-05T15:18", "2010-08-05T15::12"}}};

// Reads over an object that held a time, in both widths, which must agree.
bool parse(const string& xml, bool utc, CDateTime& dateTime) {
  dateTime = CDateTime(12345);
  CDateTime fromWide(dateTime);
  const bool inForm = dateTime.setXML(xml, utc);
  EXPECT_EQ(fromWide.setXML(wstring(xml.begin(), xml.end()), utc), inForm);
  EXPECT_EQ(fromWide.timeStamp(), dateTime.timeStamp());
  EXPECT_EQ(fromWide.unixTime(), dateTime.unixTime());
  return inForm;
}

TEST(XmlDateTime, ReadsTheExamplesInEveryZone) {
  const std::pair<std::int32_t, std::uint32_t> kZones[] = {
      {0, os::kTimeZoneIdUnknown},    {300, os::kTimeZoneIdStandard},  {300, os::kTimeZoneIdDaylight},
      {-120, os::kTimeZoneIdUnknown}, {-345, os::kTimeZoneIdDaylight}, {300, os::kTimeZoneIdInvalid}};
  for (const auto& [bias, inForce] : kZones) {
    const FakeZone zone(bias, inForce);
    for (const auto& [reading, fields, texts] : kExamples) {
      for (std::size_t i = 0; i < 2 * texts.size(); ++i) {
        const bool utc = i % 2 == 0;
        SCOPED_TRACE(::testing::Message() << texts[i / 2] << " utc " << utc << " bias " << bias << " id " << inForce);
        CDateTime dateTime;
        EXPECT_EQ(parse(texts[i / 2], utc, dateTime), reading != kOutOfForm);
        const bool cleared = fields.empty() || inForce == os::kTimeZoneIdInvalid;
        EXPECT_EQ(dateTime.timeStamp() == DTGetConst_EmptyTimeStamp(), cleared);
        EXPECT_EQ(dateTime.unixTime() == 0, cleared);
        if (cleared) continue;
        if (reading == kAsTold && !utc) dateTime.bySeconds(-bias * 60);
        string text;
        EXPECT_EQ(dateTime.formatXMLDateTime(text, true), fields);
      }
    }
  }
}

TEST(XmlDate, ReadsTheDateAheadOfAnything) {
  const struct {
    bool inForm;
    Date_t date;
    std::vector<string> texts;
  } kRows[] = {{true, {2010, 8, 5}, {"2010-08-05", "2010-08-05T15:18:12Z", "2010-08-05Z", " +2010-8x- 5"}},
               {true, {}, {"2010-02-30", ""}},
               {false, {}, {"2010-08", "2010--05", "-2010-08-05", "2010/08/05"}}};
  for (const auto& [inForm, expected, texts] : kRows) {
    for (const string& xml : texts) {
      CDate narrow({1999, 1, 1}), wide({1999, 1, 1});
      EXPECT_TRUE(narrow.setXML(xml) == inForm && narrow == expected) << xml;
      EXPECT_TRUE(wide.setXML(wstring(xml.begin(), xml.end())) == inForm && wide == expected) << xml;
    }
  }
}

}  // namespace
}  // namespace kdx
