#include "kdxcommon/base/unit_search.h"

#include <algorithm>
#include <bit>

namespace kdx {

std::size_t findUnit(wstring_view text, wchar unit) {
  std::size_t position = 0;
  for (; text.size() - position >= kMaskedUnits; position += kMaskedUnits) {
    const std::uint32_t mask = unitMask(text.data() + position, unit);
    if (mask != 0) return position + static_cast<std::size_t>(std::countr_zero(mask));
  }
  while (position != text.size() && text[position] != unit) ++position;
  return position;
}

bool equalUnits(wstring_view left, wstring_view right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end());
}

}  // namespace kdx
