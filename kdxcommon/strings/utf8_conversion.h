// Internal: the conversion from UTF-16 to UTF-8 that accepts any text, for CWideString::convert and the case-folding
// strings.

#ifndef KDXCOMMON_STRINGS_UTF8_CONVERSION_H_
#define KDXCOMMON_STRINGS_UTF8_CONVERSION_H_

#include "kdxcommon/base/string_types.h"

namespace kdx {

class KDXErrorTraits;

/// Sets `out` to the UTF-8 form of `in` up to its first NUL, with U+FFFD in place of each unpaired surrogate. Always
/// returns true and leaves `errors` unchanged. Throws only std::bad_alloc. Thread-safe.
bool fromUTF16ToUTF8(const wstring& in, string& out, KDXErrorTraits& errors);

}  // namespace kdx

#endif  // KDXCOMMON_STRINGS_UTF8_CONVERSION_H_
