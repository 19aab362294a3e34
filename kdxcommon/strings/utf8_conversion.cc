#include "kdxcommon/strings/utf8_conversion.h"

#include <algorithm>

#include "kdxcommon/base/transcoder.h"

namespace kdx {

bool fromUTF16ToUTF8(const wstring& in, string& out, KDXErrorTraits&) {
  utf16ToUtf8Replacing(in, out);
  out.erase(std::min(out.find('\0'), out.size()));
  return true;
}

}  // namespace kdx
