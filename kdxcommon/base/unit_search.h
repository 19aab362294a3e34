// Internal: finds a 16-bit unit in a text, a block at a time.
//
//   std::size_t end = kdx::findUnit(text, wchar{});   // where a C string would end

#ifndef KDXCOMMON_BASE_UNIT_SEARCH_H_
#define KDXCOMMON_BASE_UNIT_SEARCH_H_

#include <cstddef>

#include "kdxcommon/base/string_types.h"

namespace kdx {

/// The position of the first `unit` in `text`; the text's length if it holds none.
inline std::size_t findUnit(wstring_view text, wchar unit) {
  constexpr std::size_t kBlock = 32;
  std::size_t at = 0;
  for (; text.size() - at >= kBlock; at += kBlock) {
    // No branch within a block, so that the compiler compares many units at once.
    std::size_t found = 0;
    for (std::size_t i = 0; i < kBlock; ++i) found |= static_cast<std::size_t>(text[at + i] == unit);
    if (found) break;
  }
  while (at < text.size() && text[at] != unit) ++at;
  return at;
}

}  // namespace kdx

#endif  // KDXCOMMON_BASE_UNIT_SEARCH_H_
