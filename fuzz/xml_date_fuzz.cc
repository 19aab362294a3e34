// Whatever text an XML document has for a date: both widths read the same, and what was read prints and reads back the
// same.

#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "kdxcommon/datetime/calendar_date.h"
#include "kdxcommon/datetime/date_time.h"

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

void readDateTime(const kdx::string& narrow, const kdx::wstring& wide, bool utc) {
  kdx::CDateTime dateTime(12345);
  kdx::CDateTime fromWide(54321);
  const bool inForm = dateTime.setXML(narrow, utc);
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
  kdx::CDate date;
  kdx::CDate fromWide;
  const bool inForm = date.setXML(narrow);
  require(fromWide.setXML(wide) == inForm && fromWide == date);
  require(inForm || date.empty());
  kdx::string text;
  kdx::CDate again;
  require(again.setXML(date.formatXMLDate(text)) && again == date);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  // No spare room in the strings, so that a sanitizer sees what reads behind their ends.
  kdx::string narrow(data, data + size);
  kdx::wstring wide(narrow.begin(), narrow.end());
  narrow.shrink_to_fit();
  wide.shrink_to_fit();
  readDateTime(narrow, wide, true);
  readDateTime(narrow, wide, false);
  readDate(narrow, wide);
  return 0;
}
