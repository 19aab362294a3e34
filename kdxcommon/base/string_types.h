// The library's two string types: bytes, and 16-bit code units, the same on every system.
//
// Both are standard strings, which take literals of either kind directly:
//
//   kdx::string narrow = "caf\u00e9";   // UTF-8 if it is converted to a wstring
//   kdx::wstring wide = u"caf\u00e9";   // UTF-16 (an L"..." literal if wchar_t has 16 bits)

#ifndef KDXCOMMON_BASE_STRING_TYPES_H_
#define KDXCOMMON_BASE_STRING_TYPES_H_

#include <cwchar>
#include <sstream>
#include <string>
#include <string_view>

namespace kdx {

/// Bytes. UTF-8 wherever a string is converted to or from a `wstring`; the platform's own texts keep the platform's
/// encoding.
using string = std::string;
using string_view = std::string_view;

/// UTF-16 code units of 16 bits, whatever the width of the system's own wide character.
#if WCHAR_MAX <= 0xFFFF
using wchar = wchar_t;
#else
using wchar = char16_t;
#endif
using wstring = std::basic_string<wchar>;
using wstring_view = std::basic_string_view<wchar>;

static_assert(sizeof(wchar) == 2, "a wide unit has 16 bits");

/// A stream that formatting functions append to.
using ostrstream = std::ostringstream;

}  // namespace kdx

#endif  // KDXCOMMON_BASE_STRING_TYPES_H_
