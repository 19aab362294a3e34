// Internal: searches wide texts a block at a time, as the standard library does only for bytes. Thread-safe; never
// throws.
//
//   const kdx::wstring_view first = text.substr(0, kdx::findUnit(text, separator));

#ifndef KDXCOMMON_BASE_UNIT_SEARCH_H_
#define KDXCOMMON_BASE_UNIT_SEARCH_H_

#include <cstddef>
#include <cstdint>

#include "kdxcommon/base/string_types.h"

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace kdx {

/// How many units `unitMask` compares.
inline constexpr std::size_t kMaskedUnits = 16;

/// Returns a bit for each unit of a block, the lowest for its first: 1 if it is `unit`. The block may begin anywhere.
inline std::uint32_t unitMask(const wchar* block, wchar unit) {
#ifdef __SSE2__
  const auto equal = [wanted = _mm_set1_epi16(static_cast<short>(unit))](const wchar* units) {
    return _mm_cmpeq_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(units)), wanted);
  };
  return static_cast<std::uint32_t>(_mm_movemask_epi8(_mm_packs_epi16(equal(block), equal(block + 8))));
#else
  std::uint32_t mask = 0;
  for (std::size_t i = 0; i != kMaskedUnits; ++i) mask |= std::uint32_t{block[i] == unit} << i;
  return mask;
#endif
}

/// Returns the position of the first `unit` in `text`, or the text's length if there is none.
std::size_t findUnit(wstring_view text, wchar unit);

/// Returns whether two texts are equal, unit by unit.
bool equalUnits(wstring_view left, wstring_view right);

}  // namespace kdx

#endif  // KDXCOMMON_BASE_UNIT_SEARCH_H_
