#include "kdxcommon/names/dn_scanner.h"

#include <cstdint>

namespace kdx {
namespace {

// Counts have 16 bits, as the units do, so that the compiler compares and adds many with one instruction.
using Count = std::uint16_t;

constexpr std::size_t kBlock = 64;

bool isSeparator(wstring_view dn, std::size_t position) {
  return dn[position] == kDnSeparator && (position == 0 || dn[position - 1] != kDnEscape);
}

// Returns the number of separators in a block. Reads the unit before the block.
std::size_t separatorsInBlock(const wchar* block) {
  const wchar* const previous = block - 1;
  Count count = 0;
  for (std::size_t i = 0; i != kBlock; ++i) {
    count = static_cast<Count>(count + ((block[i] == kDnSeparator) & (previous[i] != kDnEscape)));
  }
  return count;
}

// Returns how often an escape directly precedes a ';'.
std::size_t countEscapedSeparators(wstring_view text) {
  const wchar* const units = text.data();
  Count count = 0;
  for (std::size_t i = 1; i < text.size(); ++i) {
    count = static_cast<Count>(count + ((units[i] == kDnSeparator) & (units[i - 1] == kDnEscape)));
  }
  return count;
}

}  // namespace

std::size_t countSeparators(wstring_view dn) {
  constexpr std::size_t kChunk = 2048;
  std::size_t count = 0;
  for (std::size_t start = 0; start < dn.size(); start += kChunk) {
    Count separators = 0;
    Count escapes = 0;
    for (const wchar unit : dn.substr(start, kChunk)) {
      separators = static_cast<Count>(separators + (unit == kDnSeparator));
      escapes = static_cast<Count>(escapes + (unit == kDnEscape));
    }
    count += separators;
    // Few names have an escape. One at the chunk's end may precede the first unit of the next.
    if (escapes != 0) count -= countEscapedSeparators(dn.substr(start, kChunk + 1));
  }
  return count;
}

std::size_t findSeparator(wstring_view dn, std::size_t number) {
  std::size_t left = number;
  if (!dn.empty() && isSeparator(dn, 0) && --left == 0) return 0;
  std::size_t at = 1;
  for (; at + kBlock <= dn.size(); at += kBlock) {
    const std::size_t inBlock = separatorsInBlock(dn.data() + at);
    if (inBlock >= left) break;
    left -= inBlock;
  }
  for (; at < dn.size(); ++at) {
    if (isSeparator(dn, at) && --left == 0) return at;
  }
  return wstring_view::npos;
}

std::size_t findLastSeparator(wstring_view dn) {
  std::size_t end = dn.size();
  while (end > kBlock && separatorsInBlock(dn.data() + end - kBlock) == 0) end -= kBlock;
  while (end != 0) {
    if (isSeparator(dn, --end)) return end;
  }
  return wstring_view::npos;
}

}  // namespace kdx
