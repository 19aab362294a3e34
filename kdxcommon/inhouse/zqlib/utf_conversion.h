// UTF8String2WideChar and WideChar2UTF8String convert between UTF-8 and UTF-16. They reject invalid input: overlong
// forms, surrogates in UTF-8, characters above U+10FFFF, truncated sequences, stray continuation bytes, and unpaired
// surrogates in UTF-16.
//
//   kdx::wstring wide;
//   if (kdx::UTF8String2WideChar(wide, "caf\u00e9") == 0) return false;   // not UTF-8
//
// Pure functions. Thread safety: safe. On failure they return 0 and empty the output. They throw only std::bad_alloc.
// The output must not overlap the input.

#ifndef KDXCOMMON_INHOUSE_ZQLIB_UTF_CONVERSION_H_
#define KDXCOMMON_INHOUSE_ZQLIB_UTF_CONVERSION_H_

#include <cstdint>

#include "kdxcommon/base/export.h"
#include "kdxcommon/base/string_types.h"

namespace kdx {

/// Sets `out` to the UTF-16 form of all of `in`, including NULs. Returns non-zero, or 0 with `out` empty if `in` is not
/// UTF-8.
KDX_EXPORT std::int32_t UTF8String2WideChar(wstring& out, const string& in);

/// Sets `out` to the UTF-8 form of the units at `in` up to the first NUL. Returns non-zero, or 0 with `out` empty if
/// one of them is an unpaired surrogate. Reads nothing after the NUL.
KDX_EXPORT std::int32_t WideChar2UTF8String(const wchar* in, string& out);

/// The same for a text of known length, which ends at its first NUL or at its end: what follows a NUL is neither
/// converted nor checked.
KDX_EXPORT std::int32_t WideChar2UTF8String(const wstring& in, string& out);

}  // namespace kdx

#endif  // KDXCOMMON_INHOUSE_ZQLIB_UTF_CONVERSION_H_
