// The conversions between UTF-8 and UTF-16 that the in-house code calls.
//
//   kdx::wstring wide;
//   if (!kdx::UTF8String2WideChar(wide, narrow)) return false;   // not UTF-8
//
// Thread rule: any thread may call. Failure rule: 0 and an empty output; nothing throws but an allocation.

#ifndef KDXCOMMON_INHOUSE_ZQLIB_UTF_CONVERSION_H_
#define KDXCOMMON_INHOUSE_ZQLIB_UTF_CONVERSION_H_

#include <cstdint>

#include "kdxcommon/base/export.h"
#include "kdxcommon/base/string_types.h"

namespace kdx {

/// Sets `out` to the UTF-16 form of the whole of `in`. Gives 1; 0 with `out` empty where `in` is not UTF-8 (overlong
/// forms, surrogates, numbers above U+10FFFF, sequences cut short and stray continuation bytes are not).
KDX_EXPORT std::int32_t UTF8String2WideChar(wstring& out, const string& in);

/// Sets `out` to the UTF-8 form of a run of units that ends in a zero unit. Gives 1; 0 with `out` empty where a
/// surrogate stands without its partner.
KDX_EXPORT std::int32_t WideChar2UTF8String(const wchar* in, string& out);

/// The same for the units of `in` up to its first zero unit, or its end.
KDX_EXPORT std::int32_t WideChar2UTF8String(const wstring& in, string& out);

}  // namespace kdx

#endif  // KDXCOMMON_INHOUSE_ZQLIB_UTF_CONVERSION_H_
