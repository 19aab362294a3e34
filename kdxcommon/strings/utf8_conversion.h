// Internal: the conversion that never fails, for texts that are to be shown or folded whatever they hold.

#ifndef KDXCOMMON_STRINGS_UTF8_CONVERSION_H_
#define KDXCOMMON_STRINGS_UTF8_CONVERSION_H_

#include "kdxcommon/base/string_types.h"

namespace kdx {

class KDXErrorTraits;

/// Sets `out` to the UTF-8 form of `in` up to its first zero unit, with U+FFFD in the place of each surrogate without
/// its partner. Always true; `errors` receives nothing. Throws what an allocation throws.
bool fromUTF16ToUTF8(const wstring& in, string& out, KDXErrorTraits& errors);

}  // namespace kdx

#endif  // KDXCOMMON_STRINGS_UTF8_CONVERSION_H_
