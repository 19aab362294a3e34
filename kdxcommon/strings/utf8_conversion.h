// Internal: the conversion that never refuses. It serves CWideString::convert and the case-folding strings.

#ifndef KDXCOMMON_STRINGS_UTF8_CONVERSION_H_
#define KDXCOMMON_STRINGS_UTF8_CONVERSION_H_

#include "kdxcommon/base/string_types.h"

namespace kdx {

class KDXErrorTraits;

/// Sets `out` to the UTF-8 form of `in` up to its first NUL, with U+FFFD in the place of each unpaired surrogate.
/// Always true, and nothing is written to `errors`. Throws nothing but an allocation's exception. Any thread.
bool fromUTF16ToUTF8(const wstring& in, string& out, KDXErrorTraits& errors);

}  // namespace kdx

#endif  // KDXCOMMON_STRINGS_UTF8_CONVERSION_H_
