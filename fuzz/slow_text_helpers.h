// The text helpers once more, slow and plain: the C library's own functions where it has them, else one unit and one
// pass at a time. The fuzz program holds the fast ones against these, in the "C" locale.

#ifndef KDXCOMMON_FUZZ_SLOW_TEXT_HELPERS_H_
#define KDXCOMMON_FUZZ_SLOW_TEXT_HELPERS_H_

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

#include "kdxcommon/platform/text_helpers.h"

namespace kdx::testing {

inline std::int64_t slowATOLL(const std::string& text) {
  return std::strtoll(text.c_str(), nullptr, 10);
}

inline std::int32_t slowATOI(const std::string& text) {
  constexpr std::int64_t kLargest = 4294967295;
  const std::int64_t number = slowATOLL(text);
  return number > kLargest || number < -kLargest ? -1 : static_cast<std::int32_t>(number);
}

/// The number of hexadecimal digits, with a point or without, and perhaps a binary exponent. It is rounded once, from
/// 58 bits and more to those of a double.
inline double slowHexadecimal(const std::string& digits) {
  constexpr std::int64_t kHuge = 99999;
  const std::size_t mantissaEnd = std::min(digits.find_first_of("pP"), digits.size());
  std::int64_t exponent = slowATOLL(digits.substr(std::min(mantissaEnd + 1, digits.size())));
  std::uint64_t mantissa = 0;
  bool fraction = false;
  for (const char unit : digits.substr(0, mantissaEnd)) {
    fraction |= unit == '.';
    if (unit == '.') continue;
    const auto digit = std::stoull(std::string(1, unit), nullptr, 16);
    const bool full = mantissa >> 58 != 0;  // then it only counts that more bits follow
    mantissa = full ? mantissa | (digit != 0) : mantissa * 16 + digit;
    exponent = std::clamp(exponent, -kHuge, kHuge) + (full ? 4 : 0) - (fraction ? 4 : 0);
  }
  return static_cast<double>(std::ldexp(static_cast<long double>(mantissa), static_cast<int>(exponent)));
}

/// glibc's strtod misrounds some subnormal numbers in hexadecimal, so that it serves only to find the number's end.
inline double slowATOF(const std::string& text) {
  char* end = nullptr;
  const double number = std::strtod(text.c_str(), &end);
  if (end == text.c_str()) return 0;  // mingw-w64 gives the zero the sign that stood in front of no number
  const std::string spelt(text.c_str(), static_cast<const char*>(end));
  const std::size_t prefix = std::min(spelt.find("0x"), spelt.find("0X"));
  return prefix == std::string::npos ? number : std::copysign(slowHexadecimal(spelt.substr(prefix + 2)), number);
}

inline bool sameNumber(double a, double b) {
  return (a == b && std::signbit(a) == std::signbit(b)) || (std::isnan(a) && std::isnan(b));
}

inline bool slowEach(std::string_view text, int (*isKind)(int)) {
  for (const char unit : text) {
    if (isKind(static_cast<unsigned char>(unit)) == 0) return false;
  }
  return !text.empty();
}

inline bool slowIsNumeric(std::string_view text) {
  return slowEach(text.starts_with('-') || text.starts_with('+') ? text.substr(1) : text, std::isdigit);
}

inline bool slowIsHexadecimal(std::string_view text) {
  return slowEach(text.starts_with("0x") || text.starts_with("0X") ? text.substr(2) : text, std::isxdigit);
}

/// One pass a replacement. A backslash comes first, as the others bring more of them.
inline std::string slowEscape(std::string text, std::initializer_list<std::pair<char, std::string_view>> replacements) {
  for (const auto& [unit, escaped] : replacements) {
    for (auto i = text.find(unit); i != std::string::npos; i = text.find(unit, i + escaped.size())) {
      text.replace(i, 1, escaped);
    }
  }
  return text;
}

/// A wide text whose units outside of ASCII, one for each such byte, look like ASCII in their low byte.
inline wstring widened(const std::string& text) {
  wstring wide;
  for (const char unit : text) {
    const auto byte = static_cast<unsigned char>(unit);
    wide += static_cast<wchar>(byte < 0x80 ? byte : byte + 0x80);
  }
  return wide;
}

/// The helper that is not of one mind with its slow twin over `text`, in either width, if there is one; else null.
inline const char* disagreeingHelper(const std::string& text) {
  const wstring wide = widened(text);
  const auto both = [&](auto helper, auto wideHelper, auto expected) {
    return helper(text) == expected && wideHelper(wide) == expected;
  };
  const double number = slowATOF(text);
  std::string quoted = text, search = text;
  wstring wideSearch = wide;
  escapeDoubleQuote(quoted);
  escapeADSIspecialChars(search);
  escapeADSIspecialChars(wideSearch);
  const auto slowSearch =
      slowEscape(text, {{'\\', "\\5c"}, {'*', "\\2a"}, {'(', "\\28"}, {')', "\\29"}, {'/', "\\2f"}});
  const std::pair<const char*, bool> kHelpers[] = {
      {"ATOI", both(platformATOI, platformWATOI, slowATOI(text))},
      {"ATOL", both(platformATOL, platformWATOL, slowATOI(text))},
      {"ATOLL", both(platformATOLL, platformWATOLL, slowATOLL(text))},
      {"ATOF", sameNumber(platformATOF(text), number) && sameNumber(platformWATOF(wide), number)},
      {"numeric", both(platformStringIsNumeric, platformWStringIsNumeric, slowIsNumeric(text))},
      {"hexadecimal", both(platformStringIsHexadecimal, platformWStringIsHexadecimal, slowIsHexadecimal(text))},
      {"alphanumeric", platformStringIsAlphaNumeric(text) == slowEach(text, std::isprint)},
      {"double quotes", quoted == slowEscape(text, {{'\\', "\\\\"}, {'"', "\\\""}})},
      {"directory search", search == slowSearch && wideSearch == widened(slowSearch)},
  };
  for (const auto& [name, agrees] : kHelpers) {
    if (!agrees) return name;
  }
  return nullptr;
}

}  // namespace kdx::testing

#endif  // KDXCOMMON_FUZZ_SLOW_TEXT_HELPERS_H_
