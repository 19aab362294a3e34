#include "kdxcommon/sinks/log_line.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <utility>

#include "kdxcommon/base/civil_date.h"
#include "kdxcommon/base/job_id.h"

namespace kdx {
namespace {

constexpr std::uint64_t kTicksPerMillisecond = 10'000;
constexpr std::uint64_t kMillisecondsPerDay = 86'400'000;
constexpr std::int32_t kDaysFrom1601To1970 = 134774;

template <typename Number>
void appendNumber(Number number, string& line) {
  char digits[24];
  const auto end = std::to_chars(std::begin(digits), std::end(digits), number).ptr;
  line.append(digits, end);
}

// The lowest digits of a number, with leading zeros.
template <std::size_t kDigits>
char* putDigits(std::uint32_t number, char* out) {
  for (std::size_t i = kDigits; i-- > 0; number /= 10) out[i] = static_cast<char>('0' + number % 10);
  return out + kDigits;
}

void appendTime(std::uint64_t fileTime, string& line) {
  const std::uint64_t milliseconds = fileTime / kTicksPerMillisecond;
  const auto days = static_cast<std::int32_t>(milliseconds / kMillisecondsPerDay);
  const auto ofDay = static_cast<std::uint32_t>(milliseconds % kMillisecondsPerDay);
  const CivilDate date = civilFromDays(days - kDaysFrom1601To1970);
  char text[] = "0000-00-00T00:00:00.000Z";
  putDigits<4>(static_cast<std::uint32_t>(date.year), text);
  putDigits<2>(date.month, text + 5);
  putDigits<2>(date.day, text + 8);
  putDigits<2>(ofDay / 3'600'000, text + 11);
  putDigits<2>(ofDay / 60'000 % 60, text + 14);
  putDigits<2>(ofDay / 1000 % 60, text + 17);
  putDigits<3>(ofDay % 1000, text + 20);
  line.append(text, sizeof text - 1);
}

// Whether a byte is a control character, or may begin one of those that take more bytes.
constexpr bool needsLook(unsigned char byte) {
  return byte < 0x20 || byte == 0x7F || byte == 0xC2 || byte == 0xE2;
}

// How many bytes at the beginning of `text` need no look. A block is tested without a branch for each byte, so that the
// compiler takes all of it at a time.
std::size_t plainLength(string_view text) {
  constexpr std::size_t kBlock = 32;
  std::size_t length = 0;
  for (; text.size() - length >= kBlock; length += kBlock) {
    unsigned char found = 0;
    for (std::size_t i = 0; i < kBlock; ++i) found |= needsLook(static_cast<unsigned char>(text[length + i]));
    if (found) break;
  }
  while (length < text.size() && !needsLook(static_cast<unsigned char>(text[length]))) ++length;
  return length;
}

// Whether E2 with these two bytes behind it separates lines or paragraphs (U+2028, U+2029) or turns the direction of
// the text round it (U+202A to U+202E, U+2066 to U+2069), which shows a reader other fields than there are.
constexpr bool changesLayout(unsigned second, unsigned third) {
  return (second == 0x80 && third >= 0xA8 && third <= 0xAE) || (second == 0x81 && third >= 0xA6 && third <= 0xA9);
}

// How many bytes of `text` are one character that a line can't hold; 0 where its first byte can stand.
std::size_t unsafeLength(string_view text) {
  const auto byte = [&](std::size_t i) { return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U; };
  if (byte(0) < 0x20 || byte(0) == 0x7F) return 1;
  if (byte(0) == 0xC2 && byte(1) >= 0x80 && byte(1) <= 0x9F) return 2;
  if (byte(0) == 0xE2 && changesLayout(byte(1), byte(2))) return 3;
  return 0;
}

void appendHex(unsigned number, int digits, string& line) {
  for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4) line += "0123456789ABCDEF"[number >> shift & 0xF];
}

// A character of `unsafeLength` bytes, escaped.
void appendEscaped(string_view character, string& line) {
  constexpr std::array<std::pair<char, char>, 4> kNames = {{{'\n', 'n'}, {'\r', 'r'}, {'\t', 't'}, {'\0', '0'}}};
  line += '\\';
  if (character.size() == 1) {
    for (const auto& [value, name] : kNames) {
      if (character[0] == value) {
        line += name;
        return;
      }
    }
    line += 'x';
    return appendHex(static_cast<unsigned char>(character[0]), 2, line);
  }
  const auto bits = [&](std::size_t i) { return static_cast<unsigned char>(character[i]) & 0x3FU; };
  line += 'u';
  appendHex(character.size() == 2 ? 0x80 | bits(1) : 0x2000 | bits(1) << 6 | bits(2), 4, line);
}

void appendText(string_view text, string& line) {
  while (true) {
    const std::size_t plain = plainLength(text);
    line.append(text, 0, plain);
    text.remove_prefix(plain);
    if (text.empty()) return;
    const std::size_t unsafe = unsafeLength(text);
    if (unsafe > 0) {
      appendEscaped(text.substr(0, unsafe), line);
    } else {
      line += text[0];
    }
    text.remove_prefix(std::max<std::size_t>(unsafe, 1));
  }
}

}  // namespace

void appendLogLine(const LogRecord& record, const LogOrigin& origin, string& line) {
  appendTime(origin.fileTime, line);
  line += ' ';
  appendNumber(origin.threadId, line);
  line += ' ';
  if (record.jobId != UNDEFINED_JOB_ID) {
    appendNumber(record.jobId, line);
  } else {
    line += '-';
  }
  line += ' ';
  if (record.level) {
    appendNumber(*record.level, line);
  } else {
    line += '-';
  }
  line += ' ';
  if (!record.function.empty()) {
    appendText(record.function, line);
    line += ": ";
  }
  appendText(record.text, line);
  if (!record.errorText.empty()) {
    line += " (";
    appendText(record.errorText, line);
    line += ')';
  }
  line += '\n';
}

}  // namespace kdx
