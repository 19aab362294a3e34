#include "kdxcommon/names/dn_scanner.h"

#include <cstdint>

namespace kdx {
namespace {

constexpr std::size_t kBlock = 64;

bool isSeparator(wstring_view dn, std::size_t position) {
  return dn[position] == kDnSeparator && (position == 0 || dn[position - 1] != kDnEscape);
}

// How many of the units of a block are separators. Reads the unit before the block.
std::size_t separatorsInBlock(const wchar* block) {
  const wchar* const previous = block - 1;
  // In 16 bits and without a branch, so that the compiler compares and adds many units with one instruction.
  std::uint16_t count = 0;
  for (std::size_t i = 0; i != kBlock; ++i) {
    count = static_cast<std::uint16_t>(count + ((block[i] == kDnSeparator) & (previous[i] != kDnEscape)));
  }
  return count;
}

}  // namespace

SeparatorScan scanSeparators(wstring_view dn, std::size_t limit) {
  SeparatorScan seen{0, 0};
  if (!dn.empty() && isSeparator(dn, 0) && ++seen.count == limit) return seen;
  std::size_t& at = seen.position;
  for (at = 1; at + kBlock <= dn.size(); at += kBlock) {
    const std::size_t inBlock = separatorsInBlock(dn.data() + at);
    if (inBlock >= limit - seen.count) break;
    seen.count += inBlock;
  }
  for (; at < dn.size(); ++at) {
    if (isSeparator(dn, at) && ++seen.count == limit) return seen;
  }
  at = wstring_view::npos;
  return seen;
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
