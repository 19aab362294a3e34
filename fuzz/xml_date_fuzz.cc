// Whatever text an XML document has for a date, whole and line by line: both widths read what the slow reader does, in
// zones on both sides of Greenwich, and what was read prints and reads back the same.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <sstream>

#include "kdxcommon/datetime/calendar_date.h"
#include "kdxcommon/datetime/date_time.h"
#include "kdxcommon/testing/fake_zone.h"
#include "slow_xml_date.h"

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

void readDateTime(const kdx::string& narrow, const kdx::wstring& wide, bool utc) {
  kdx::CDateTime dateTime(12345);
  kdx::CDateTime fromWide(54321);
  const bool inForm = dateTime.setXML(narrow, utc);
  kdx::CDateTime expected;
  require(kdx::testing::slowDateTime(narrow, utc, expected) == inForm);
  require(expected.unixTime() == dateTime.unixTime() && expected.timeStamp() == dateTime.timeStamp());
  require(fromWide.setXML(wide, utc) == inForm);
  require(fromWide.unixTime() == dateTime.unixTime() && fromWide.timeStamp() == dateTime.timeStamp());
  require(inForm || dateTime.timeStamp() == kdx::DTGetConst_EmptyTimeStamp());
  require(dateTime.timeStamp().fraction == 0);

  kdx::string text;
  kdx::CDateTime again;
  require(again.setXML(dateTime.formatXMLDateTime(text, false), utc) && again == dateTime);
  kdx::wstring wideText;
  require(again.setXML(dateTime.formatXMLDateTime(wideText, true), true) && again == dateTime);
  require(wideText == kdx::wstring(text.begin(), text.end() - 1));
}

void readDate(const kdx::string& narrow, const kdx::wstring& wide) {
  kdx::CDate date({1999, 1, 1});
  kdx::CDate fromWide({1998, 1, 1});
  const bool inForm = date.setXML(narrow);
  kdx::CDate expected;
  require(kdx::testing::slowDate(narrow, expected) == inForm && expected == date);
  require(fromWide.setXML(wide) == inForm && fromWide == date);
  require(inForm || date.empty());
  kdx::string text;
  kdx::CDate again;
  require(again.setXML(date.formatXMLDate(text)) && again == date);
}

void read(kdx::string narrow) {
  // No spare room in the strings, so that a sanitizer sees what reads behind their ends.
  kdx::wstring wide(narrow.begin(), narrow.end());
  narrow.shrink_to_fit();
  wide.shrink_to_fit();
  for (const std::int32_t bias : {300, -345}) {
    const kdx::testing::FakeZone zone(bias, kdx::os::kTimeZoneIdDaylight);
    readDateTime(narrow, wide, true);
    readDateTime(narrow, wide, false);
  }
  readDate(narrow, wide);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const kdx::string text(data, data + size);
  read(text);
  std::istringstream lines(text);
  for (kdx::string line; std::getline(lines, line);) read(line);
  return 0;
}
