// A text's form in a log line, made slowly and simply: one character at a time.

#ifndef KDXCOMMON_FUZZ_SLOW_LOG_TEXT_H_
#define KDXCOMMON_FUZZ_SLOW_LOG_TEXT_H_

#include <map>
#include <string>

#include "kdxcommon/sinks/log_line.h"
#include "slow_transcoder.h"

namespace kdx::testing {

inline bool mustBeEscaped(char32_t c) {
  return c < 0x20 || (c >= 0x7F && c <= 0x9F) || c == 0x61C || c == 0x200E || c == 0x200F ||
         (c >= 0x2028 && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069) || (c >= 0xFFF9 && c <= 0xFFFB) ||
         c >> 7 == 0xE0000 >> 7;
}

inline string escapedSlowly(string_view text) {
  static const std::map<char32_t, string> kNames = {{0, "\\0"}, {'\n', "\\n"}, {'\r', "\\r"}, {'\t', "\\t"}};
  string out;
  while (!text.empty()) {
    std::size_t size = 1;
    while (size < 4 && !decodeSlowly(text.substr(0, size))) ++size;
    const std::optional<wstring> units = decodeSlowly(text.substr(0, size));
    if (!units) size = 1;
    char32_t c = units ? units->front() : static_cast<unsigned char>(text.front());
    if (units && units->size() == 2) c = 0x10000 + (c - 0xD800) * 1024 + (units->back() - 0xDC00);
    if (units && !mustBeEscaped(c)) {
      out += text.substr(0, size);
    } else if (units && kNames.contains(c)) {
      out += kNames.at(c);
    } else {
      out += !units || c < 0x80 ? "\\x" : c < 0x10000 ? "\\u" : "\\U";
      const int digits = !units || c < 0x80 ? 2 : c < 0x10000 ? 4 : 8;
      for (int i = digits; i-- > 0;) out += "0123456789ABCDEF"[(c >> (4 * i)) % 16];
    }
    text.remove_prefix(size);
  }
  return out;
}

/// Returns the line of a record that thread 7 wrote at the beginning of 1601, or at another time.
inline string lineOf(const LogRecord& record, std::uint64_t fileTime = 0) {
  ScratchText line;
  appendLogLine(record, {fileTime, 7}, line);
  return string(line);
}

/// Returns whether a finished text has the required form in its line.
inline bool standsAsItMust(string_view text) {
  return lineOf({std::nullopt, {}, -123456, {}, text}) ==
         "1601-01-01T00:00:00.000Z 7 - - " + escapedSlowly(text) + '\n';
}

}  // namespace kdx::testing

#endif  // KDXCOMMON_FUZZ_SLOW_LOG_TEXT_H_
