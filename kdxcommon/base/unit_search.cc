#include "kdxcommon/base/unit_search.h"

#include <algorithm>
#include <cstdint>

namespace kdx {

std::size_t findUnit(wstring_view text, wchar unit) {
  constexpr std::size_t kBlock = 64;
  std::size_t position = 0;
  for (; text.size() - position >= kBlock; position += kBlock) {
    const wchar* const block = text.data() + position;
    // Without an early exit, so that the compiler compares many units with one instruction.
    std::uint16_t found = 0;
    for (std::size_t i = 0; i != kBlock; ++i)
      found = static_cast<std::uint16_t>(found | (block[i] == unit ? 0xFFFF : 0));
    if (found != 0) break;
  }
  while (position != text.size() && text[position] != unit) ++position;
  return position;
}

bool equalUnits(wstring_view left, wstring_view right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end());
}

}  // namespace kdx
