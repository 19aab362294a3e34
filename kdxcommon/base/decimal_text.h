// Internal to the library: parses the decimal number at the start of a text, of either unit, by the rules of the C
// library's `strtoul` in the "C" locale: white space, an optional sign, digits, up to the first unit that is not a
// digit. Copies nothing; the text needs no terminating NUL.

#ifndef KDXCOMMON_BASE_DECIMAL_TEXT_H_
#define KDXCOMMON_BASE_DECIMAL_TEXT_H_

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string_view>

namespace kdx {

template <typename Unit>
constexpr bool isAsciiDigit(Unit unit) {
  return unit >= '0' && unit <= '9';
}

template <typename Unit>
constexpr bool isAsciiSpace(Unit unit) {
  return unit == ' ' || (unit >= '\t' && unit <= '\r');
}

/// The length of leading white space and one sign.
struct NumberStart {
  std::size_t length = 0;
  bool negative = false;
};

template <typename Unit>
constexpr NumberStart numberStart(std::basic_string_view<Unit> text) {
  std::size_t position = 0;
  while (position < text.size() && isAsciiSpace(text[position])) ++position;
  if (position == text.size() || (text[position] != '-' && text[position] != '+')) return {position, false};
  return {position + 1, text[position] == '-'};
}

/// Returns the digits at the start of `text` as a number, or the largest number if 64 bits don't hold it.
template <typename Unit>
constexpr std::uint64_t decimalMagnitude(std::basic_string_view<Unit> text) {
  constexpr std::uint64_t kLargest = std::numeric_limits<std::uint64_t>::max();
  constexpr std::size_t kSafeDigits = std::numeric_limits<std::uint64_t>::digits10;  // no number of so few overflows
  std::uint64_t magnitude = 0;
  std::size_t position = 0;
  const auto digitHere = [&] { return static_cast<std::uint64_t>(text[position] - '0'); };
  const std::size_t safe = std::min(text.size(), kSafeDigits);
  for (; position < safe && isAsciiDigit(text[position]); ++position) magnitude = magnitude * 10 + digitHere();
  for (; position < text.size() && isAsciiDigit(text[position]); ++position) {
    magnitude = magnitude > (kLargest - digitHere()) / 10 ? kLargest : magnitude * 10 + digitHere();
  }
  return magnitude;
}

/// Returns a 32-bit number: a minus sign negates within 32 bits; a number too large is 0xFFFFFFFF, whatever its sign.
template <typename Unit>
constexpr std::uint32_t decimalUnsigned32(std::basic_string_view<Unit> text) {
  constexpr std::uint32_t kLargest = std::numeric_limits<std::uint32_t>::max();
  const NumberStart start = numberStart(text);
  const std::uint64_t magnitude = decimalMagnitude(text.substr(start.length));
  if (magnitude > kLargest) return kLargest;
  const auto bits = static_cast<std::uint32_t>(magnitude);
  return start.negative ? 0 - bits : bits;
}

/// Returns a signed 64-bit number, or the nearest limit if 64 bits don't hold it.
template <typename Unit>
constexpr std::int64_t decimalSigned64(std::basic_string_view<Unit> text) {
  const NumberStart start = numberStart(text);
  const std::uint64_t magnitude = decimalMagnitude(text.substr(start.length));
  const std::uint64_t limit = (std::uint64_t{1} << 63) - (start.negative ? 0 : 1);
  const std::uint64_t bits = std::min(magnitude, limit);
  return static_cast<std::int64_t>(start.negative ? 0 - bits : bits);
}

}  // namespace kdx

#endif  // KDXCOMMON_BASE_DECIMAL_TEXT_H_
