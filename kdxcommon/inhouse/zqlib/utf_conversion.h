// UTF8String2WideChar and WideChar2UTF8String convert between UTF-8 and UTF-16, and refuse what isn't either: a form
// that isn't the shortest, a surrogate in UTF-8, a number above U+10FFFF, a sequence cut short, a stray continuation
// byte, an unpaired surrogate in UTF-16.
//
//   kdx::wstring wide;
//   if (kdx::UTF8String2WideChar(wide, "caf\u00e9") == 0) return false;   // not UTF-8
//
// Thread rule: pure functions, callable from any thread at once. Failure rule: the result 0 and an empty output;
// nothing throws but an allocation. An output mustn't be the memory of its input.

#ifndef KDXCOMMON_INHOUSE_ZQLIB_UTF_CONVERSION_H_
#define KDXCOMMON_INHOUSE_ZQLIB_UTF_CONVERSION_H_

#include <cstdint>

#include "kdxcommon/base/export.h"
#include "kdxcommon/base/string_types.h"

namespace kdx {

/// Sets `out` to the UTF-16 form of the whole of `in`, NULs among it. Non-zero; 0 with `out` empty where `in` isn't
/// UTF-8.
KDX_EXPORT std::int32_t UTF8String2WideChar(wstring& out, const string& in);

/// Sets `out` to the UTF-8 form of the units before the first NUL at `in`. Non-zero; 0 with `out` empty where one of
/// them is an unpaired surrogate. Nothing behind the NUL is read.
KDX_EXPORT std::int32_t WideChar2UTF8String(const wchar* in, string& out);

/// The same for a text of known length, which ends at its first NUL or at its end: what follows a NUL is neither
/// converted nor refused.
KDX_EXPORT std::int32_t WideChar2UTF8String(const wstring& in, string& out);

}  // namespace kdx

#endif  // KDXCOMMON_INHOUSE_ZQLIB_UTF_CONVERSION_H_
