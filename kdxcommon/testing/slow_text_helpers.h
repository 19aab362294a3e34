// The text helpers once more, slow and plain: the C library's own functions where it has them, else one unit and one
// pass at a time. Tests and fuzz programs hold the fast ones against these, in the "C" locale.

#ifndef KDXCOMMON_TESTING_SLOW_TEXT_HELPERS_H_
#define KDXCOMMON_TESTING_SLOW_TEXT_HELPERS_H_

#include <cctype>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
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

inline double slowATOF(const std::string& text) {
  char* end = nullptr;
  const double number = std::strtod(text.c_str(), &end);
  return end == text.c_str() ? 0 : number;  // mingw-w64 gives the zero the sign that stood in front of no number
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

inline std::string slowReplace(std::string text, char unit, std::string_view replacement) {
  for (std::size_t i = text.find(unit); i != std::string::npos; i = text.find(unit, i + replacement.size())) {
    text.replace(i, 1, replacement);
  }
  return text;
}

inline std::string slowEscapeDoubleQuote(std::string text) {
  return slowReplace(slowReplace(std::move(text), '\\', "\\\\"), '"', "\\\"");
}

inline std::string slowEscapeADSIspecialChars(std::string text) {
  text = slowReplace(std::move(text), '\\', "\\5c");  // first, so that it doesn't meet its own work
  text = slowReplace(std::move(text), '*', "\\2a");
  text = slowReplace(std::move(text), '(', "\\28");
  text = slowReplace(std::move(text), ')', "\\29");
  return slowReplace(std::move(text), '/', "\\2f");
}

/// The helper that is not of one mind with its slow twin over `text`, in either width, if there is one; else null.
inline const char* disagreeingHelper(const std::string& text) {
  wstring wide;
  for (const char byte : text) wide += static_cast<unsigned char>(byte);
  std::string quoted = text, search = text;
  wstring wideSearch = wide;
  escapeDoubleQuote(quoted);
  escapeADSIspecialChars(search);
  escapeADSIspecialChars(wideSearch);
  const double number = slowATOF(text);
  const struct {
    const char* name;
    bool agrees;
  } kHelpers[] = {
      {"ATOI", platformATOI(text) == slowATOI(text) && platformWATOI(wide) == slowATOI(text)},
      {"ATOL", platformATOL(text) == slowATOI(text) && platformWATOL(wide) == slowATOI(text)},
      {"ATOLL", platformATOLL(text) == slowATOLL(text) && platformWATOLL(wide) == slowATOLL(text)},
      {"ATOF", sameNumber(platformATOF(text), number) && sameNumber(platformWATOF(wide), number)},
      {"numeric", platformStringIsNumeric(text) == slowIsNumeric(text)},
      {"numeric, wide", platformWStringIsNumeric(wide) == slowIsNumeric(text)},
      {"hexadecimal", platformStringIsHexadecimal(text) == slowIsHexadecimal(text)},
      {"hexadecimal, wide", platformWStringIsHexadecimal(wide) == slowIsHexadecimal(text)},
      {"alphanumeric", platformStringIsAlphaNumeric(text) == slowEach(text, std::isprint)},
      {"double quotes", quoted == slowEscapeDoubleQuote(text)},
      {"directory search", search == slowEscapeADSIspecialChars(text)},
      {"directory search, wide", std::string(wideSearch.begin(), wideSearch.end()) == search},
  };
  for (const auto& helper : kHelpers) {
    if (!helper.agrees) return helper.name;
  }
  return nullptr;
}

}  // namespace kdx::testing

#endif  // KDXCOMMON_TESTING_SLOW_TEXT_HELPERS_H_
