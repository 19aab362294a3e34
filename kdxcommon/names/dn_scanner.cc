#include "kdxcommon/names/dn_scanner.h"

#include <algorithm>
#include <bit>
#include <cstdint>

#include "kdxcommon/base/unit_search.h"

namespace kdx {
namespace {

bool isSeparator(wstring_view dn, std::size_t position) {
  return dn[position] == kDnSeparator && (position == 0 || dn[position - 1] != kDnEscape);
}

// Returns a bit for each of kMaskedUnits units, the lowest for the first: 1 if it is a separator. Reads the unit before
// the block.
std::uint32_t separatorMask(const wchar* block) {
  const std::uint32_t mask = unitMask(block, kDnSeparator);
  return mask == 0 ? 0 : mask & ~unitMask(block - 1, kDnEscape);
}

// How many units are counted at a time. The counts have 16 bits, as the units do, so that the compiler compares and
// adds many with one instruction.
constexpr std::size_t kChunk = 2048;
using Count = std::uint16_t;

// Returns how often an escape directly precedes a ';' in a text of at most kChunk units and one more.
std::size_t countEscapedSeparators(wstring_view text) {
  const wchar* const units = text.data();
  Count count = 0;
  for (std::size_t i = 1; i < text.size(); ++i) {
    count = static_cast<Count>(count + ((units[i] == kDnSeparator) & (units[i - 1] == kDnEscape)));
  }
  return count;
}

struct Counts {
  Count separators = 0;  // escaped or not
  Count escapes = 0;     // 0 if there are none
};

// Counts in a text of at most kChunk units.
Counts countIn(wstring_view chunk) {
  Counts counts;
  std::size_t at = 0;
#ifdef __SSE2__
  // Sixteen counters of a byte: a chunk has fewer than 256 blocks.
  const __m128i zero = _mm_setzero_si128();
  __m128i separators = zero, escapes = zero;
  const auto countBlock = [&](const wchar* block) {
    const auto* const halves = reinterpret_cast<const __m128i*>(block);
    // A unit above 0xFF becomes 0xFF or 0, neither of which is a separator or an escape.
    const __m128i units = _mm_packus_epi16(_mm_loadu_si128(halves), _mm_loadu_si128(halves + 1));
    separators = _mm_sub_epi8(separators, _mm_cmpeq_epi8(units, _mm_set1_epi8(static_cast<char>(kDnSeparator))));
    escapes = _mm_or_si128(escapes, _mm_cmpeq_epi8(units, _mm_set1_epi8(static_cast<char>(kDnEscape))));
  };
  for (; chunk.size() - at >= 64; at += 64) {  // so that a long name's loop costs little
    for (const std::size_t block : {0U, 16U, 32U, 48U}) countBlock(chunk.data() + at + block);
  }
  for (; chunk.size() - at >= 16; at += 16) countBlock(chunk.data() + at);
  const __m128i sums = _mm_sad_epu8(separators, zero);
  counts = {static_cast<Count>(_mm_extract_epi16(sums, 0) + _mm_extract_epi16(sums, 4)),
            static_cast<Count>(_mm_movemask_epi8(escapes))};
#endif
  for (const wchar unit : chunk.substr(at)) {
    counts.separators = static_cast<Count>(counts.separators + (unit == kDnSeparator));
    counts.escapes |= unit == kDnEscape;
  }
  return counts;
}

}  // namespace

std::size_t countSeparators(wstring_view dn) {
  std::size_t count = 0;
  for (std::size_t start = 0; start < dn.size(); start += kChunk) {
    const Counts counts = countIn(dn.substr(start, kChunk));
    count += counts.separators;
    // Few names have an escape. One at the chunk's end may precede the first unit of the next.
    if (counts.escapes != 0) count -= countEscapedSeparators(dn.substr(start, kChunk + 1));
  }
  return count;
}

std::size_t findSeparator(wstring_view dn, std::size_t number) {
  std::size_t left = number;
  if (!dn.empty() && isSeparator(dn, 0) && --left == 0) return 0;
  std::size_t at = 1;
  for (; at + kMaskedUnits <= dn.size(); at += kMaskedUnits) {
    for (std::uint32_t mask = separatorMask(dn.data() + at); mask != 0; mask &= mask - 1) {
      if (--left == 0) return at + static_cast<std::size_t>(std::countr_zero(mask));
    }
  }
  for (; at < dn.size(); ++at) {
    if (isSeparator(dn, at) && --left == 0) return at;
  }
  return wstring_view::npos;
}

std::size_t findLastSeparator(wstring_view dn) {
  std::size_t end = dn.size();
  for (; end > kMaskedUnits; end -= kMaskedUnits) {
    const std::size_t at = end - kMaskedUnits;
    const std::uint32_t mask = separatorMask(dn.data() + at);
    if (mask != 0) return at + static_cast<std::size_t>(std::bit_width(mask)) - 1;
  }
  while (end != 0) {
    if (isSeparator(dn, --end)) return end;
  }
  return wstring_view::npos;
}

}  // namespace kdx
