#include "kdxcommon/base/transcoder.h"

#include <cstddef>
#include <cstdint>

namespace kdx {
namespace {
using Byte = unsigned char;
constexpr bool isContinuation(std::uint32_t byte) {
  return (byte & 0xC0) == 0x80;
}

template <bool replacing>
bool encode(wstring_view in, string& out) {
  out.clear();
  for (std::size_t i = 0; i < in.size(); ++i) {
    std::uint32_t c = in[i];
    if ((c & 0xFC00) == 0xD800 && i + 1 < in.size() && (in[i + 1] & 0xFC00) == 0xDC00) {
      c = 0x10000 + ((c & 0x3FF) << 10 | (in[++i] & 0x3FFU));
    } else if ((c & 0xF800) == 0xD800) {
      if (!replacing) return out.clear(), false;
      c = 0xFFFD;
    }
    if (c < 0x80) {
      out += static_cast<char>(c);
      continue;
    }
    if (c < 0x800) {
      out += static_cast<char>(0xC0 | c >> 6);
    } else {
      if (c < 0x10000) {
        out += static_cast<char>(0xE0 | c >> 12);
      } else {
        out += static_cast<char>(0xF0 | c >> 18);
        out += static_cast<char>(0x80 | (c >> 12 & 0x3F));
      }
      out += static_cast<char>(0x80 | (c >> 6 & 0x3F));
    }
    out += static_cast<char>(0x80 | (c & 0x3F));
  }
  return true;
}
}  // namespace

bool utf8ToUtf16(string_view in, wstring& out) {
  out.clear();
  for (std::size_t i = 0; i < in.size();) {
    const std::uint32_t lead = static_cast<Byte>(in[i]);
    const std::size_t size = lead < 0x80   ? 1
                             : lead < 0xC2 ? 0
                             : lead < 0xE0 ? 2
                             : lead < 0xF0 ? 3
                             : lead < 0xF5 ? 4
                                           : 0;
    if (size == 0 || in.size() - i < size) return out.clear(), false;
    std::uint32_t c = size == 1 ? lead : lead & (0x7FU >> size);
    for (std::size_t k = 1; k < size; ++k) {
      const auto b = static_cast<Byte>(in[i + k]);
      if (!isContinuation(b)) return out.clear(), false;
      c = c << 6 | (b & 0x3FU);
    }
    if ((size == 3 && (c < 0x800 || (c & 0xF800) == 0xD800)) || (size == 4 && (c < 0x10000 || c > 0x10FFFF)))
      return out.clear(), false;
    if (c >= 0x10000) {
      out += static_cast<wchar>(0xD7C0 + (c >> 10));
      out += static_cast<wchar>(0xDC00 + (c & 0x3FF));
    } else {
      out += static_cast<wchar>(c);
    }
    i += size;
  }
  return true;
}

bool utf16ToUtf8(wstring_view in, string& out) {
  return encode<false>(in, out);
}
void utf16ToUtf8Replacing(wstring_view in, string& out) {
  encode<true>(in, out);
}
}  // namespace kdx
