#include "kdxcommon/sinks/log_line.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <iterator>
#include <optional>

#include "kdxcommon/base/civil_date.h"
#include "kdxcommon/base/job_id.h"
#include "kdxcommon/sinks/escaped_text.h"

namespace kdx {
namespace {

constexpr std::uint64_t kTicksPerMillisecond = 10'000;
constexpr std::uint64_t kMillisecondsPerDay = 86'400'000;
constexpr std::int32_t kDaysFrom1601To1970 = 134774;

// Writes the lowest digits of a number, with leading zeros.
template <std::size_t kDigits>
void putDigits(std::uint32_t number, char* out) {
  for (std::size_t i = kDigits; i-- > 0; number /= 10) out[i] = static_cast<char>('0' + number % 10);
}

char* putTime(std::uint64_t fileTime, char* out) {
  const std::uint64_t milliseconds = fileTime / kTicksPerMillisecond;
  const auto days = static_cast<std::int32_t>(milliseconds / kMillisecondsPerDay);
  const auto ofDay = static_cast<std::uint32_t>(milliseconds % kMillisecondsPerDay);
  const CivilDate date = civilFromDays(days - kDaysFrom1601To1970);
  constexpr string_view kForm = "0000-00-00T00:00:00.000Z";
  kForm.copy(out, kForm.size());
  putDigits<4>(static_cast<std::uint32_t>(date.year), out);
  putDigits<2>(date.month, out + 5);
  putDigits<2>(date.day, out + 8);
  putDigits<2>(ofDay / 3'600'000, out + 11);
  putDigits<2>(ofDay / 60'000 % 60, out + 14);
  putDigits<2>(ofDay / 1000 % 60, out + 17);
  putDigits<3>(ofDay % 1000, out + 20);
  return out + kForm.size();
}

// Writes a space and a number of 64 bits or less, or `-` if there is none.
template <typename Number>
char* putField(std::optional<Number> number, char* out) {
  constexpr std::ptrdiff_t kMostDigits = 20;  // with the sign
  *out++ = ' ';
  if (number) return std::to_chars(out, out + kMostDigits, *number).ptr;
  *out++ = '-';
  return out;
}

std::optional<std::int64_t> jobOf(const LogRecord& record) {
  return record.jobId == UNDEFINED_JOB_ID ? std::nullopt : std::optional(record.jobId);
}

void appendHex(char form, std::uint32_t number, int digits, ScratchText& line) {
  line += '\\';
  line += form;
  for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4) line += "0123456789ABCDEF"[number >> shift & 0xF];
}

// Appends one of the short escapes that both formats have and returns true, or returns false.
bool appendShortEscape(std::uint32_t character, ScratchText& line) {
  switch (character) {
    case '\t':
      line += "\\t";
      return true;
    case '\n':
      line += "\\n";
      return true;
    case '\r':
      line += "\\r";
      return true;
  }
  return false;
}

// In a line of text.
constexpr EscapeStyle kPlainText = {
    [](std::uint32_t character, ScratchText& line) {
      if (appendShortEscape(character, line)) return;
      if (character == 0) {
        line += "\\0";
      } else if (character < 0x80) {
        appendHex('x', character, 2, line);
      } else if (character < 0x10000) {
        appendHex('u', character, 4, line);
      } else {
        appendHex('U', character, 8, line);
      }
    },
    [](unsigned char byte, ScratchText& line) { appendHex('x', byte, 2, line); },
};

// In a string of JSON, where a code point above U+FFFF is a surrogate pair.
constexpr EscapeStyle kJsonText = {
    [](std::uint32_t character, ScratchText& line) {
      if (appendShortEscape(character, line)) return;
      if (character < 0x10000) return appendHex('u', character, 4, line);
      appendHex('u', 0xD800 + ((character - 0x10000) >> 10), 4, line);
      appendHex('u', 0xDC00 + (character & 0x3FF), 4, line);
    },
    [](unsigned char /*byte*/, ScratchText& line) { line += "\xEF\xBF\xBD"; },
};

void appendJsonString(string_view text, ScratchText& line) {
  line += '"';
  std::size_t begin = 0;
  for (std::size_t quote = text.find('"'), backslash = text.find('\\'); true;) {
    const std::size_t special = std::min(quote, backslash);
    appendEscaped(text.substr(begin, special - begin), kJsonText, line);
    if (special == string_view::npos) break;
    line += '\\';
    line += text[special];
    begin = special + 1;
    if (special == quote) {
      quote = text.find('"', begin);
    } else {
      backslash = text.find('\\', begin);
    }
  }
  line += '"';
}

// Appends a member after the first one. One without a value is left out.
template <typename Number>
void appendJsonNumber(string_view name, std::optional<Number> number, ScratchText& line) {
  if (!number) return;
  char digits[24];
  line.append(",\"").append(name).append("\":");
  line.append(digits, std::to_chars(digits, std::end(digits), *number).ptr);
}

void appendJsonMember(string_view name, string_view text, ScratchText& line) {
  line.append(",\"").append(name).append("\":");
  appendJsonString(text, line);
}

}  // namespace

void appendLogLine(const LogRecord& record, const LogOrigin& origin, ScratchText& line) {
  char head[96];
  char* out = putTime(origin.fileTime, head);
  out = putField(std::optional(origin.threadId), out);
  out = putField(jobOf(record), out);
  out = putField(record.level, out);
  *out++ = ' ';
  line.append(head, out);
  appendLogMessage(record, line);
  line += '\n';
}

void appendLogMessage(const LogRecord& record, ScratchText& line) {
  if (!record.function.empty()) {
    appendEscaped(record.function, kPlainText, line);
    line += ": ";
  }
  appendEscaped(record.text, kPlainText, line);
  if (!record.errorText.empty()) {
    line += " (";
    appendEscaped(record.errorText, kPlainText, line);
    line += ')';
  }
}

void appendJsonLine(const LogRecord& record, const LogOrigin& origin, ScratchText& line) {
  char time[32];
  line.append(R"({"time":")").append(time, putTime(origin.fileTime, time)).append("\"");
  appendJsonNumber("thread", std::optional(origin.threadId), line);
  appendJsonNumber("job", jobOf(record), line);
  appendJsonNumber("level", record.level, line);
  if (!record.function.empty()) appendJsonMember("function", record.function, line);
  appendJsonMember("text", record.text, line);
  if (!record.errorText.empty()) appendJsonMember("error", record.errorText, line);
  line += "}\n";
}

}  // namespace kdx
