#include "kdxcommon/platform/os_release.h"

#include <algorithm>
#include <limits>
#include <optional>

#include "kdxcommon/base/decimal_text.h"

namespace kdx {
namespace {

struct Key {
  string_view name;
  string OsRelease::*value;
};
constexpr Key kKeys[] = {{"NAME", &OsRelease::name},
                         {"PRETTY_NAME", &OsRelease::prettyName},
                         {"VENDOR_NAME", &OsRelease::vendorName},
                         {"VERSION_ID", &OsRelease::versionId},
                         {"VERSION_CODENAME", &OsRelease::versionCodename},
                         {"BUILD_ID", &OsRelease::buildId}};

constexpr string_view kBlanks = " \t\r";

string_view withoutLeadingBlanks(string_view text) {
  return text.substr(std::min(text.find_first_not_of(kBlanks), text.size()));
}

// Removes the first character of `text`, which must not be empty, and returns it.
char take(string_view& text) {
  const char first = text.front();
  text.remove_prefix(1);
  return first;
}

// Appends the text up to the closing `quote` to `value`. In double quotes a backslash is literal unless a special
// character follows. Returns false if there is no closing quote.
bool takeQuoted(string_view& text, char quote, string& value) {
  while (!text.empty()) {
    char unit = take(text);
    if (unit == quote) return true;
    const bool escapes = unit == '\\' && quote == '"' && !text.empty();
    if (escapes && string_view("$`\"\\").find(text.front()) != string_view::npos) unit = take(text);
    value += unit;
  }
  return false;
}

// Returns the value of an assignment; `text` is the part of the line after the equals sign. None if the line isn't a
// plain assignment.
std::optional<string> assignedValue(string_view text) {
  string value;
  while (!text.empty() && kBlanks.find(text.front()) == string_view::npos) {
    char unit = take(text);
    if (unit == '"' || unit == '\'') {
      if (!takeQuoted(text, unit, value)) return std::nullopt;
      continue;
    }
    if (unit == '\\' && !text.empty()) unit = take(text);
    value += unit;
  }
  text = withoutLeadingBlanks(text);
  if (!text.empty() && text.front() != '#') return std::nullopt;
  return value;
}

std::uint32_t numberOf(string_view digits) {
  const std::uint64_t number = decimalMagnitude(digits);
  return number <= std::numeric_limits<std::uint32_t>::max() ? static_cast<std::uint32_t>(number) : 0;
}

string_view leadingDigits(string_view text) {
  const auto* end = std::find_if_not(text.begin(), text.end(), isAsciiDigit<char>);
  return text.substr(0, static_cast<std::size_t>(end - text.begin()));
}

}  // namespace

OsRelease parseOsRelease(string_view text) {
  OsRelease release;
  while (!text.empty()) {
    const std::size_t length = std::min(text.find('\n'), text.size());
    const string_view line = withoutLeadingBlanks(text.substr(0, length));
    text.remove_prefix(std::min(length + 1, text.size()));
    const std::size_t equals = line.find('=');
    if (equals == string_view::npos || line.find('\0') != string_view::npos) continue;
    const string_view name = line.substr(0, equals);
    const auto* key =
        std::find_if(std::begin(kKeys), std::end(kKeys), [&](const Key& known) { return known.name == name; });
    if (key == std::end(kKeys)) continue;
    if (std::optional<string> value = assignedValue(line.substr(equals + 1))) release.*key->value = *std::move(value);
  }
  return release;
}

VersionNumbers parseVersion(string_view text) {
  VersionNumbers version;
  string_view separator;  // before the next number
  for (const auto number : {&VersionNumbers::major, &VersionNumbers::minor, &VersionNumbers::patch}) {
    if (!text.starts_with(separator)) break;
    const string_view digits = leadingDigits(text.substr(separator.size()));
    if (digits.empty()) break;
    version.*number = numberOf(digits);
    text.remove_prefix(separator.size() + digits.size());
    separator = ".";
  }
  version.rest = text;
  return version;
}

std::uint32_t wholeNumber(string_view text) {
  return leadingDigits(text).size() == text.size() ? numberOf(text) : 0;
}

}  // namespace kdx
