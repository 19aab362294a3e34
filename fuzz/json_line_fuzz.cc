// Any bytes that are logged as JSON: one line of UTF-8 without characters that need escaping, from which a strict
// reader of RFC 8259 gets the same texts back, with U+FFFD in place of each byte that isn't UTF-8.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "fuzz/slow_log_text.h"

namespace {

using kdx::string;
using kdx::string_view;

void require(bool holds) {
  if (!holds) std::abort();
}

// Reads a line from its beginning. What isn't in the form ends the program.
class JsonReader {
 public:
  explicit JsonReader(string_view line) : rest_(line) {}

  JsonReader& take(string_view expected) {
    require(rest_.starts_with(expected));
    rest_.remove_prefix(expected.size());
    return *this;
  }

  // Reads a string and returns it as UTF-8.
  string takeString() {
    take("\"");
    kdx::wstring units;
    for (char c = takeByte(); c != '"'; c = takeByte()) {
      if (c == '\\') {
        units += takeEscape();
        continue;
      }
      const std::size_t more = (c & 0x80) == 0 ? 0 : (c & 0xE0) == 0xC0 ? 1 : (c & 0xF0) == 0xE0 ? 2 : 3;
      string character(1, c);
      while (character.size() <= more) character += takeByte();
      const auto decoded = kdx::testing::decodeSlowly(character);
      require(decoded.has_value() && static_cast<unsigned char>(c) >= 0x20);
      units += *decoded;
    }
    bool paired = false;
    const string text = kdx::testing::encodeSlowly(units, paired);
    require(paired);
    return text;
  }

 private:
  char takeByte() {
    require(!rest_.empty());
    const char byte = rest_.front();
    rest_.remove_prefix(1);
    return byte;
  }

  kdx::wchar takeEscape() {
    const char kind = takeByte();
    const string_view kinds = "\"\\/bfnrt", meanings = "\"\\/\b\f\n\r\t";
    if (kind != 'u') {
      require(kinds.find(kind) != string_view::npos);
      return static_cast<kdx::wchar>(meanings[kinds.find(kind)]);
    }
    std::size_t unit = 0;
    for (int i = 0; i < 4; ++i) {
      const std::size_t digit = string_view("0123456789ABCDEF").find(takeByte());
      require(digit != string_view::npos);
      unit = unit * 16 + digit;
    }
    return static_cast<kdx::wchar>(unit);
  }

  string_view rest_;
};

// Returns the text with U+FFFD in place of each byte that no UTF-8 character has.
string repaired(string_view text) {
  string out;
  while (!text.empty()) {
    std::size_t size = 1;
    while (size < 4 && !kdx::testing::decodeSlowly(text.substr(0, size))) ++size;
    const bool valid = kdx::testing::decodeSlowly(text.substr(0, size)).has_value();
    out += valid ? text.substr(0, size) : string_view("\xEF\xBF\xBD");
    text.remove_prefix(std::min(text.size(), valid ? size : 1));
  }
  return out;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  // No spare capacity, so that a sanitizer detects reads beyond the end.
  string text(data, data + size);
  text.shrink_to_fit();
  kdx::ScratchText line;
  kdx::appendJsonLine({2, text, 3, text, text}, {0, 7}, line);
  const auto units = kdx::testing::decodeSlowly(line);
  require(units && line.ends_with("}\n"));
  require(std::none_of(units->begin(), units->end() - 1, kdx::testing::mustBeEscaped));
  JsonReader reader(line);
  const string expected = repaired(text);
  reader.take("{\"time\":\"1601-01-01T00:00:00.000Z\",\"thread\":7,\"job\":3,\"level\":2,");
  if (!text.empty()) require(reader.take("\"function\":").takeString() == expected), reader.take(",");
  require(reader.take("\"text\":").takeString() == expected);
  if (!text.empty()) require(reader.take(",\"error\":").takeString() == expected);
  reader.take("}\n");
  return 0;
}
