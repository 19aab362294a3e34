// Internal: looks through wide texts a block at a time, as the standard strings do for bytes only. Callable from any
// thread at once; nothing throws.
//
//   const kdx::wstring_view first = text.substr(0, kdx::findUnit(text, separator));

#ifndef KDXCOMMON_BASE_UNIT_SEARCH_H_
#define KDXCOMMON_BASE_UNIT_SEARCH_H_

#include <cstddef>

#include "kdxcommon/base/string_types.h"

namespace kdx {

/// The position of the first `unit` in `text`; the text's length where there is none.
std::size_t findUnit(wstring_view text, wchar unit);

/// Whether two texts are the same, unit by unit.
bool equalUnits(wstring_view left, wstring_view right);

}  // namespace kdx

#endif  // KDXCOMMON_BASE_UNIT_SEARCH_H_
