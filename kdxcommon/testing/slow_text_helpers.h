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
  return std::strtod(text.c_str(), nullptr);
}

inline bool sameNumber(double a, double b) {
  return a == b || (std::isnan(a) && std::isnan(b));
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

inline bool slowIsAlphaNumeric(std::string_view text) {
  return slowEach(text, [](int unit) { return std::isalnum(unit) | std::isprint(unit); });
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

inline std::string slowUpper(std::string text) {
  for (std::size_t i = 0; i < text.size() && text[i] != 0; ++i) {
    text[i] = static_cast<char>(std::toupper(static_cast<unsigned char>(text[i])));
  }
  return text;
}

inline std::string slowLower(std::string text) {
  for (std::size_t i = 0; i < text.size() && text[i] != 0; ++i) {
    text[i] = static_cast<char>(std::tolower(static_cast<unsigned char>(text[i])));
  }
  return text;
}

template <typename Text, typename Change>
Text changed(Text text, Change change) {
  change(text);
  return text;
}

/// The helper that is not of one mind with its slow twin over `text`, if there is one; else null.
inline const char* disagreeingHelper(const std::string& text) {
  wstring wide;
  for (const char byte : text) wide += static_cast<unsigned char>(byte);
  const auto narrowed = [](const wstring& units) { return std::string(units.begin(), units.end()); };
  const auto in = [](wchar* (*change)(wchar*)) { return [change](wstring& units) { change(units.data()); }; };
  const struct {
    const char* name;
    bool agrees;
  } kHelpers[] = {
      {"platformATOI", platformATOI(text) == slowATOI(text)},
      {"platformWATOI", platformWATOI(wide) == slowATOI(text)},
      {"platformATOLL", platformATOLL(text) == slowATOLL(text)},
      {"platformWATOLL", platformWATOLL(wide) == slowATOLL(text)},
      {"platformATOF", sameNumber(platformATOF(text), slowATOF(text))},
      {"platformWATOF", sameNumber(platformWATOF(wide), slowATOF(text))},
      {"platformStringIsNumeric", platformStringIsNumeric(text) == slowIsNumeric(text)},
      {"platformWStringIsNumeric", platformWStringIsNumeric(wide) == slowIsNumeric(text)},
      {"platformStringIsHexadecimal", platformStringIsHexadecimal(text) == slowIsHexadecimal(text)},
      {"platformWStringIsHexadecimal", platformWStringIsHexadecimal(wide) == slowIsHexadecimal(text)},
      {"platformStringIsAlphaNumeric", platformStringIsAlphaNumeric(text) == slowIsAlphaNumeric(text)},
      {"platformStringUpper",
       changed(text, [](std::string& bytes) { platformStringUpper(bytes.data()); }) == slowUpper(text)},
      {"platformStringLower",
       changed(text, [](std::string& bytes) { platformStringLower(bytes.data()); }) == slowLower(text)},
      {"platformWStringUpper", narrowed(changed(wide, in(platformWStringUpper))) == slowUpper(text)},
      {"platformWStringLower", narrowed(changed(wide, in(platformWStringLower))) == slowLower(text)},
      {"escapeDoubleQuote", changed(text, escapeDoubleQuote) == slowEscapeDoubleQuote(text)},
      {"escapeADSIspecialChars",
       changed(text, [](auto& units) { escapeADSIspecialChars(units); }) == slowEscapeADSIspecialChars(text)},
      {"escapeADSIspecialChars, wide",
       narrowed(changed(wide, [](auto& units) { escapeADSIspecialChars(units); })) == slowEscapeADSIspecialChars(text)},
  };
  for (const auto& helper : kHelpers) {
    if (!helper.agrees) return helper.name;
  }
  return nullptr;
}

}  // namespace kdx::testing

#endif  // KDXCOMMON_TESTING_SLOW_TEXT_HELPERS_H_
