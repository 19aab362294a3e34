// Internal: searches wide texts a block at a time, as the standard library does only for bytes. Thread-safe; never
// throws.
//
//   const kdx::wstring_view first = text.substr(0, kdx::findUnit(text, separator));

#ifndef KDXCOMMON_BASE_UNIT_SEARCH_H_
#define KDXCOMMON_BASE_UNIT_SEARCH_H_

#include <cstddef>

#include "kdxcommon/base/string_types.h"

namespace kdx {

/// Returns the position of the first `unit` in `text`, or the text's length if there is none.
std::size_t findUnit(wstring_view text, wchar unit);

/// Returns whether two texts are equal, unit by unit.
bool equalUnits(wstring_view left, wstring_view right);

}  // namespace kdx

#endif  // KDXCOMMON_BASE_UNIT_SEARCH_H_
