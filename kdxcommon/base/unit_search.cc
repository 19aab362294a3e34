#include "kdxcommon/base/unit_search.h"

#include <algorithm>
#include <bit>

namespace kdx {

std::size_t findUnit(wstring_view text, wchar unit) {
  std::size_t position = 0;
  for (; text.size() - position >= 2 * kMaskedUnits; position += 2 * kMaskedUnits) {
    const wchar* const block = text.data() + position;
    const std::uint32_t mask = unitMask(block, unit) | unitMask(block + kMaskedUnits, unit) << kMaskedUnits;
    if (mask != 0) return position + static_cast<std::size_t>(std::countr_zero(mask));
  }
  while (position != text.size() && text[position] != unit) ++position;
  return position;
}

bool equalUnits(wstring_view left, wstring_view right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end());
}

}  // namespace kdx
