#include "kdxcommon/platform/text_helpers.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <cwctype>
#include <limits>
#include <optional>
#include <string>
#include <system_error>
#include <type_traits>

#include "kdxcommon/base/decimal_text.h"
#include "kdxcommon/base/floating_point_text.h"

namespace kdx {
namespace {

template <typename Unit>
bool isHexadecimalDigit(Unit unit) {
  return isAsciiDigit(unit) || (unit >= 'a' && unit <= 'f') || (unit >= 'A' && unit <= 'F');
}

bool isPrintable(char unit) {
  const auto byte = static_cast<unsigned char>(unit);
  if (byte < 0x80) return byte >= ' ' && byte <= '~';
  return std::isalnum(byte) != 0 || std::isprint(byte) != 0;
}

template <typename Unit>
bool isNumeric(std::basic_string_view<Unit> text) {
  if (!text.empty() && (text[0] == '-' || text[0] == '+')) text.remove_prefix(1);
  return !text.empty() && std::all_of(text.begin(), text.end(), isAsciiDigit<Unit>);
}

template <typename Unit>
bool hasHexadecimalPrefix(std::basic_string_view<Unit> text) {
  return text.size() >= 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
}

template <typename Unit>
bool isHexadecimal(std::basic_string_view<Unit> text) {
  if (hasHexadecimalPrefix(text)) text.remove_prefix(2);
  return !text.empty() && std::all_of(text.begin(), text.end(), isHexadecimalDigit<Unit>);
}

// Returns whether a number outside the range of double, in the syntax of std::from_chars, is too large rather than too
// small. The position of its first nonzero digit and the exponent determine that.
bool isTooLarge(string_view number, std::chars_format format) {
  constexpr std::int64_t kHugeExponent = std::int64_t{1} << 60;
  const bool hexadecimal = format == std::chars_format::hex;
  const std::size_t mantissaEnd = std::min(number.find_first_of(hexadecimal ? "pP" : "eE"), number.size());
  const string_view mantissa = number.substr(0, mantissaEnd);
  const auto point = static_cast<std::int64_t>(std::min(mantissa.find('.'), mantissa.size()));
  const auto firstDigit = static_cast<std::int64_t>(mantissa.find_first_not_of("0."));
  const string_view exponentText = number.substr(std::min(mantissaEnd + 1, number.size()));
  const std::int64_t exponent = std::clamp(decimalSigned64(exponentText), -kHugeExponent, kHugeExponent);
  return (point - firstDigit) * (hexadecimal ? 4 : 1) + exponent > 0;
}

// Removes an exponent with two signs, which std::from_chars of libstdc++ 12 accepts in a hexadecimal number.
string_view withoutBadExponent(string_view text) {
  const std::size_t exponent = text.find_first_of("pP");
  if (exponent == string_view::npos) return text;
  const NumberStart start = numberStart(text.substr(exponent + 1));
  const std::size_t digits = exponent + 1 + start.length;
  return digits < text.size() && isAsciiDigit(text[digits]) ? text : text.substr(0, exponent);
}

// Returns the number at the start of a text that has no leading white space or sign, if there is one.
std::optional<double> floatingPointMagnitude(string_view text) {
  std::chars_format format = std::chars_format::general;
  if (hasHexadecimalPrefix(text)) {
    format = std::chars_format::hex;
    text = withoutBadExponent(text.substr(2));
    // After 0x, from_chars would also accept a sign or a word such as inf.
    if (text.empty() || !(isHexadecimalDigit(text[0]) || text[0] == '.')) return 0;  // the 0 itself
  }
  if (text.empty() || text[0] == '-') return std::nullopt;  // a second sign
  double magnitude = 0;
  const auto [end, error] = floatingPointFromChars(text, magnitude, format);
  if (error == std::errc::invalid_argument && format == std::chars_format::general) return std::nullopt;
  if (error != std::errc::result_out_of_range) return magnitude;
  const string_view number(text.data(), static_cast<std::size_t>(end - text.data()));
  return isTooLarge(number, format) ? std::numeric_limits<double>::infinity() : 0;
}

double floatingPoint(string_view text) {
  const NumberStart start = numberStart(text);
  const std::optional<double> magnitude = floatingPointMagnitude(text.substr(start.length));
  if (!magnitude) return 0;
  return start.negative ? -*magnitude : *magnitude;
}

// These return the other case of a unit in the locale of the process, or the unit itself if its other case takes two
// units.

char toUpperInLocale(char unit) {
  return static_cast<char>(std::toupper(static_cast<unsigned char>(unit)));
}
char toLowerInLocale(char unit) {
  return static_cast<char>(std::tolower(static_cast<unsigned char>(unit)));
}
wchar toUpperInLocale(wchar unit) {
  const std::uint32_t changed = std::towupper(static_cast<std::wint_t>(unit));
  return changed <= 0xFFFF ? static_cast<wchar>(changed) : unit;
}
wchar toLowerInLocale(wchar unit) {
  const std::uint32_t changed = std::towlower(static_cast<std::wint_t>(unit));
  return changed <= 0xFFFF ? static_cast<wchar>(changed) : unit;
}

template <typename Unit>
bool isAscii(Unit unit) {
  return static_cast<std::make_unsigned_t<Unit>>(unit) < 0x80;
}

template <typename Unit>
Unit* changeCase(Unit* text, Unit firstLetter, Unit (*changeInLocale)(Unit)) {
  if (!text) return nullptr;
  constexpr Unit kLetters = 26;
  constexpr Unit kOtherCase = 'a' ^ 'A';
  const std::size_t length = std::char_traits<Unit>::length(text);
  // Almost all locales agree on the case of the letters of ASCII; in Turkish, a capital i has a dot.
  const auto i = static_cast<Unit>(firstLetter + ('i' - 'a'));
  if (changeInLocale(i) != (i ^ kOtherCase)) {
    std::transform(text, text + length, text, changeInLocale);
    return text;
  }
  Unit all = 0;
  for (std::size_t at = 0; at < length; ++at) {
    const bool change = text[at] >= firstLetter && text[at] < firstLetter + kLetters;
    text[at] = static_cast<Unit>(text[at] ^ (change ? kOtherCase : 0));
    all = static_cast<Unit>(all | text[at]);
  }
  if (isAscii(all)) return text;
  for (std::size_t at = 0; at < length; ++at) {
    if (!isAscii(text[at])) text[at] = changeInLocale(text[at]);
  }
  return text;
}

template <typename Unit>
Unit* duplicate(const Unit* text) {
  if (!text) return nullptr;
  const std::size_t bytes = (std::char_traits<Unit>::length(text) + 1) * sizeof(Unit);
  void* copy = std::malloc(bytes);
  return static_cast<Unit*>(copy ? std::memcpy(copy, text, bytes) : nullptr);
}

// Replaces each unit of the text that is one of the ASCII characters `special` with a backslash and the code that
// `appendCode` appends.
template <typename String, typename AppendCode>
void escape(String& text, string_view special, AppendCode appendCode) {
  const auto isSpecial = [special](auto unit) {
    return std::find(special.begin(), special.end(), unit) != special.end();
  };
  const auto specials = static_cast<std::size_t>(std::count_if(text.begin(), text.end(), isSpecial));
  if (specials == 0) return;
  String escaped;
  escaped.reserve(text.size() + 2 * specials);
  for (const auto unit : text) {
    if (!isSpecial(unit)) {
      escaped += unit;
      continue;
    }
    escaped += '\\';
    appendCode(escaped, unit);
  }
  text.swap(escaped);
}

template <typename String>
void escapeForDirectorySearch(String& text) {
  using Unit = typename String::value_type;
  escape(text, "\\*()/", [](String& escaped, Unit unit) {
    static constexpr char kDigits[] = "0123456789abcdef";
    for (const int digit : {unit / 16, unit % 16}) escaped += static_cast<Unit>(kDigits[digit]);
  });
}

}  // namespace

std::int32_t platformATOI(const string& text) {
  return static_cast<std::int32_t>(decimalUnsigned32(string_view(text)));
}

std::int32_t platformATOL(const string& text) {
  return platformATOI(text);
}

std::int32_t platformWATOI(const wstring& text) {
  return static_cast<std::int32_t>(decimalUnsigned32(wstring_view(text)));
}

std::int32_t platformWATOL(const wstring& text) {
  return platformWATOI(text);
}

std::int64_t platformATOLL(const string& text) {
  return decimalSigned64(string_view(text));
}

std::int64_t platformWATOLL(const wstring& text) {
  return decimalSigned64(wstring_view(text));
}

double platformATOF(const string& text) {
  return floatingPoint(text);
}

double platformWATOF(const wstring& text) {
  const auto isVisible = [](wchar unit) { return unit > ' ' && unit <= '~'; };
  const auto first = std::find_if_not(text.begin(), text.end(), isAsciiSpace<wchar>);
  const auto last = std::find_if_not(first, text.end(), isVisible);
  string narrow(static_cast<std::size_t>(last - first), '\0');
  std::transform(first, last, narrow.begin(), [](wchar unit) { return static_cast<char>(unit); });
  return floatingPoint(narrow);
}

bool platformStringIsNumeric(const string& text) {
  return isNumeric(string_view(text));
}

bool platformWStringIsNumeric(const wstring& text) {
  return isNumeric(wstring_view(text));
}

bool platformStringIsHexadecimal(const string& text) {
  return isHexadecimal(string_view(text));
}

bool platformWStringIsHexadecimal(const wstring& text) {
  return isHexadecimal(wstring_view(text));
}

bool platformStringIsAlphaNumeric(const string& text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), isPrintable);
}

char* platformStringUpper(char* text) {
  return changeCase<char>(text, 'a', toUpperInLocale);
}

char* platformStringLower(char* text) {
  return changeCase<char>(text, 'A', toLowerInLocale);
}

wchar* platformWStringUpper(wchar* text) {
  return changeCase<wchar>(text, 'a', toUpperInLocale);
}

wchar* platformWStringLower(wchar* text) {
  return changeCase<wchar>(text, 'A', toLowerInLocale);
}

char* platformStringDuplicate(const char* text) {
  return duplicate(text);
}

wchar* platformWStringDuplicate(const wchar* text) {
  return duplicate(text);
}

bool escapeDoubleQuote(string& text) {
  escape(text, "\\\"", [](string& escaped, char unit) { escaped += unit; });
  return true;
}

void escapeADSIspecialChars(string& text) {
  escapeForDirectorySearch(text);
}

void escapeADSIspecialChars(wstring& text) {
  escapeForDirectorySearch(text);
}

}  // namespace kdx
