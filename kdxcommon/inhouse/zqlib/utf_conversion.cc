#include "kdxcommon/inhouse/zqlib/utf_conversion.h"

#include "kdxcommon/base/transcoder.h"
#include "kdxcommon/base/unit_search.h"

namespace kdx {

std::int32_t UTF8String2WideChar(wstring& out, const string& in) {
  return utf8ToUtf16(in, out) ? 1 : 0;
}

std::int32_t WideChar2UTF8String(const wchar* in, string& out) {
  return utf16ToUtf8(in, out) ? 1 : 0;
}

std::int32_t WideChar2UTF8String(const wstring& in, string& out) {
  const wstring_view text = in;
  return utf16ToUtf8(text.substr(0, findUnit(text, wchar{})), out) ? 1 : 0;
}

}  // namespace kdx
