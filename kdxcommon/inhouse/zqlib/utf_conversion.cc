#include "kdxcommon/inhouse/zqlib/utf_conversion.h"

#include <cstddef>

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
  if (utf16ToUtf8(in, out)) {
    // A NUL is the same in both encodings, and much quicker to find among bytes.
    if (const std::size_t end = out.find('\0'); end != string::npos) out.resize(end);
    return 1;
  }
  const std::size_t end = findUnit(in, wchar{0});
  return end != in.size() && utf16ToUtf8(wstring_view(in).substr(0, end), out) ? 1 : 0;
}

}  // namespace kdx
