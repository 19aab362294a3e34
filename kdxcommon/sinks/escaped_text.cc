#include "kdxcommon/sinks/escaped_text.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstring>
#include <iterator>

namespace kdx {
namespace {

using Byte = unsigned char;

constexpr Byte byteAt(string_view text, std::size_t position) {
  return static_cast<Byte>(text[position]);
}

constexpr bool isPrintableAscii(Byte byte) {
  return byte >= 0x20 && byte < 0x7F;
}

// Returns how many bytes at the beginning of `text` are printable ASCII, counted in whole blocks and words: at the end
// of the text up to seven more may follow. Without a branch for each byte, so that the compiler vectorises a block.
std::size_t asciiLength(string_view text) {
  constexpr std::size_t kBlock = 32;
  constexpr std::uint64_t kEachByte = 0x0101010101010101;
  constexpr std::uint64_t kHighBits = 0x80 * kEachByte;
  std::size_t length = 0;
  for (; text.size() - length >= kBlock; length += kBlock) {
    Byte found = 0;
    for (std::size_t i = 0; i != kBlock; ++i) found |= !isPrintableAscii(byteAt(text, length + i));
    if (found) break;
  }
  std::uint64_t word;
  for (; text.size() - length >= sizeof word; length += sizeof word) {
    std::memcpy(&word, text.data() + length, sizeof word);
    const std::uint64_t low = word & ~kHighBits;
    // The high bit of each byte that is 0x80 or above, 0x7F, or below 0x20. No sum carries into the next byte.
    const std::uint64_t found = (word | (low + kEachByte) | ~(low + 0x60 * kEachByte)) & kHighBits;
    if (found == 0) continue;
    const int bit = std::endian::native == std::endian::little ? std::countr_zero(found) : std::countl_zero(found);
    return length + static_cast<std::size_t>(bit) / 8;
  }
  return length;
}

// By leading byte, the size of its characters if none of them needs escaping, otherwise 0.
constexpr std::array<Byte, 256> kPlainSizes = [] {
  std::array<Byte, 256> sizes{};
  for (std::size_t lead = 0x20; lead < 0x7F; ++lead) sizes[lead] = 1;
  for (std::size_t lead = 0xC3; lead < 0xE0; ++lead) sizes[lead] = 2;
  for (std::size_t lead = 0xE1; lead < 0xEF; ++lead) sizes[lead] = 3;
  sizes[0xD8] = sizes[0xE2] = sizes[0xED] = 0;  // U+061C, U+2028 and others, the surrogates
  return sizes;
}();

bool isContinuation(string_view text, std::size_t position) {
  return position < text.size() && (byteAt(text, position) & 0xC0) == 0x80;
}

// Returns how many bytes at the beginning of `text` need no escaping, as far as their leading bytes show. The steps are
// constants, so that the processor can begin with the next character before it knows the size of this one.
std::size_t plainLength(string_view text) {
  std::size_t length = 0;
  while (length != text.size()) {
    switch (kPlainSizes[byteAt(text, length)]) {
      case 1:
        length += std::max<std::size_t>(asciiLength(text.substr(length)), 1);
        break;
      case 2:
        if (!isContinuation(text, length + 1)) return length;
        length += 2;
        break;
      case 3:
        if (!isContinuation(text, length + 1) || !isContinuation(text, length + 2)) return length;
        length += 3;
        break;
      default:
        return length;
    }
  }
  return length;
}

struct Character {
  std::uint32_t value = 0;
  std::size_t size = 0;  // 0 if the first byte begins no valid character
};

// Returns the first character of `text`, which must not be empty. Valid are shortest forms up to U+10FFFF, without
// surrogates.
Character firstCharacter(string_view text) {
  static constexpr std::uint32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};  // by the size in bytes
  const Byte lead = byteAt(text, 0);
  if (lead < 0x80) return {lead, 1};
  if (lead < 0xC0 || lead >= 0xF8) return {};
  const std::size_t size = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  std::uint32_t value = lead & (0x7FU >> size);
  for (std::size_t i = 1; i != size; ++i) {
    if (!isContinuation(text, i)) return {};
    value = value << 6 | (byteAt(text, i) & 0x3FU);
  }
  const bool isSurrogate = value >= 0xD800 && value <= 0xDFFF;
  if (value < kLeast[size] || value > 0x10FFFF || isSurrogate) return {};
  return {value, size};
}

// The characters that break a line or misrepresent it to its reader, in ascending order.
struct Range {
  std::uint32_t first;
  std::uint32_t last;
};
constexpr Range kEscaped[] = {
    {0x00, 0x1F},        // controls
    {0x7F, 0x9F},        // delete and the 8-bit controls
    {0x061C, 0x061C},    // direction mark
    {0x200E, 0x200F},    // direction marks
    {0x2028, 0x202E},    // line and paragraph separators, direction controls
    {0x2066, 0x2069},    // direction isolates
    {0xFFF9, 0xFFFB},    // annotation marks
    {0xE0000, 0xE007F},  // tags
};

bool isEscaped(std::uint32_t character) {
  const Range* range = std::find_if(std::begin(kEscaped), std::end(kEscaped),
                                    [character](const Range& candidate) { return character <= candidate.last; });
  return range != std::end(kEscaped) && character >= range->first;
}

}  // namespace

void appendEscaped(string_view text, const EscapeStyle& style, ScratchText& line) {
  std::size_t appended = 0;
  for (std::size_t next = plainLength(text); next != text.size(); next += plainLength(text.substr(next))) {
    const Character character = firstCharacter(text.substr(next));
    if (character.size != 0 && !isEscaped(character.value)) {
      next += character.size;
      continue;
    }
    line.append(text, appended, next - appended);
    if (character.size == 0) {
      style.appendInvalid(byteAt(text, next), line);
    } else {
      style.appendCharacter(character.value, line);
    }
    next += std::max<std::size_t>(character.size, 1);
    appended = next;
  }
  line.append(text, appended);
}

}  // namespace kdx
