#include "kdxcommon/sinks/log_line.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cstddef>
#include <cstring>
#include <iterator>
#include <optional>

#include "kdxcommon/base/civil_date.h"
#include "kdxcommon/base/job_id.h"

namespace kdx {
namespace {

constexpr std::uint64_t kTicksPerMillisecond = 10'000;
constexpr std::uint64_t kMillisecondsPerDay = 86'400'000;
constexpr std::int32_t kDaysFrom1601To1970 = 134774;

using Byte = unsigned char;

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

// A space and a number of 64 bits or less, or `-` where there is none.
template <typename Number>
char* putField(std::optional<Number> number, char* out) {
  constexpr std::ptrdiff_t kMostDigits = 20;  // with the sign
  *out++ = ' ';
  if (number) return std::to_chars(out, out + kMostDigits, *number).ptr;
  *out++ = '-';
  return out;
}

constexpr Byte byteAt(string_view text, std::size_t position) {
  return static_cast<Byte>(text[position]);
}

constexpr bool isPrintableAscii(Byte byte) {
  return byte >= 0x20 && byte < 0x7F;
}

// How many bytes at the beginning of `text` are printable ASCII, as far as blocks and words of them go: up to seven
// more may follow at the end of the text. Tested without a branch for each byte, so that the compiler takes all of a
// block at a time.
std::size_t asciiLength(string_view text) {
  constexpr std::size_t kBlock = 32;
  constexpr std::uint64_t kEachByte = 0x0101010101010101;
  constexpr std::uint64_t kHighBits = 0x80 * kEachByte;
  std::size_t length = 0;
  for (; text.size() - length >= kBlock; length += kBlock) {
    Byte found = 0;
    for (std::size_t i = 0; i != kBlock; ++i) found |= !isPrintableAscii(byteAt(text, length + i));
    if (found) break;
  }
  std::uint64_t word;
  for (; text.size() - length >= sizeof word; length += sizeof word) {
    std::memcpy(&word, text.data() + length, sizeof word);
    const std::uint64_t low = word & ~kHighBits;
    // The high bit of each byte that is 0x80 or above, 0x7F, or below 0x20. No sum carries into the next byte.
    const std::uint64_t found = (word | (low + kEachByte) | ~(low + 0x60 * kEachByte)) & kHighBits;
    if (found == 0) continue;
    const int bit = std::endian::native == std::endian::little ? std::countr_zero(found) : std::countl_zero(found);
    return length + static_cast<std::size_t>(bit) / 8;
  }
  return length;
}

// The size of the characters of a leading byte, all of which can stand in a line as they are; 0 where some can't.
constexpr std::array<Byte, 256> kPlainSizes = [] {
  std::array<Byte, 256> sizes{};
  for (std::size_t lead = 0x20; lead < 0x7F; ++lead) sizes[lead] = 1;
  for (std::size_t lead = 0xC3; lead < 0xE0; ++lead) sizes[lead] = 2;
  for (std::size_t lead = 0xE1; lead < 0xEF; ++lead) sizes[lead] = 3;
  sizes[0xD8] = sizes[0xE2] = sizes[0xED] = 0;  // U+061C is among them, U+2028 and its like, the surrogates
  return sizes;
}();

bool isContinuation(string_view text, std::size_t position) {
  return position < text.size() && (byteAt(text, position) & 0xC0) == 0x80;
}

// How many bytes at the beginning of `text` can stand as they are by what their leading bytes tell. Steps are
// constants, so that the processor goes on to the next character before it knows the size of this one.
std::size_t plainLength(string_view text) {
  std::size_t length = 0;
  while (length != text.size()) {
    switch (kPlainSizes[byteAt(text, length)]) {
      case 1:
        length += std::max<std::size_t>(asciiLength(text.substr(length)), 1);
        break;
      case 2:
        if (!isContinuation(text, length + 1)) return length;
        length += 2;
        break;
      case 3:
        if (!isContinuation(text, length + 1) || !isContinuation(text, length + 2)) return length;
        length += 3;
        break;
      default:
        return length;
    }
  }
  return length;
}

struct Character {
  std::uint32_t value = 0;
  std::size_t size = 0;  // 0: the first byte begins no character
};

// The character that `text`, which is not empty, begins with: in its shortest form, no surrogate, up to U+10FFFF.
Character firstCharacter(string_view text) {
  static constexpr std::uint32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};  // of characters of so many bytes
  const Byte lead = byteAt(text, 0);
  if (lead < 0x80) return {lead, 1};
  if (lead < 0xC0 || lead >= 0xF8) return {};
  const std::size_t size = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  std::uint32_t value = lead & (0x7FU >> size);
  for (std::size_t i = 1; i != size; ++i) {
    if (!isContinuation(text, i)) return {};
    value = value << 6 | (byteAt(text, i) & 0x3FU);
  }
  const bool isSurrogate = value >= 0xD800 && value <= 0xDFFF;
  if (value < kLeast[size] || value > 0x10FFFF || isSurrogate) return {};
  return {value, size};
}

// What breaks a line or shows its reader something else than there is, in ascending order.
struct Range {
  std::uint32_t first;
  std::uint32_t last;
};
constexpr Range kEscaped[] = {
    {0x00, 0x1F},        // controls
    {0x7F, 0x9F},        // delete, and the controls of eight bits
    {0x061C, 0x061C},    // direction mark
    {0x200E, 0x200F},    // direction marks
    {0x2028, 0x202E},    // separators of lines and paragraphs, and what turns the direction
    {0x2066, 0x2069},    // what isolates a direction
    {0xFFF9, 0xFFFB},    // annotation marks
    {0xE0000, 0xE007F},  // tags
};

bool isEscaped(std::uint32_t character) {
  const Range* range = std::find_if(std::begin(kEscaped), std::end(kEscaped),
                                    [character](const Range& candidate) { return character <= candidate.last; });
  return range != std::end(kEscaped) && character >= range->first;
}

void appendHex(char form, std::uint32_t number, int digits, std::pmr::string& line) {
  line += '\\';
  line += form;
  for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4) line += "0123456789ABCDEF"[number >> shift & 0xF];
}

void appendEscaped(std::uint32_t character, std::pmr::string& line) {
  switch (character) {
    case '\0':
      line += "\\0";
      return;
    case '\t':
      line += "\\t";
      return;
    case '\n':
      line += "\\n";
      return;
    case '\r':
      line += "\\r";
      return;
  }
  if (character < 0x80) return appendHex('x', character, 2, line);
  if (character < 0x10000) return appendHex('u', character, 4, line);
  appendHex('U', character, 8, line);
}

void appendText(string_view text, std::pmr::string& line) {
  std::size_t appended = 0;
  for (std::size_t next = plainLength(text); next != text.size(); next += plainLength(text.substr(next))) {
    const Character character = firstCharacter(text.substr(next));
    if (character.size != 0 && !isEscaped(character.value)) {
      next += character.size;
      continue;
    }
    line.append(text, appended, next - appended);
    if (character.size == 0) {
      appendHex('x', byteAt(text, next), 2, line);
    } else {
      appendEscaped(character.value, line);
    }
    next += std::max<std::size_t>(character.size, 1);
    appended = next;
  }
  line.append(text, appended);
}

}  // namespace

void appendLogLine(const LogRecord& record, const LogOrigin& origin, std::pmr::string& line) {
  const std::optional<std::int64_t> noJob;
  char head[96];
  char* out = putTime(origin.fileTime, head);
  out = putField(std::optional(origin.threadId), out);
  out = putField(record.jobId == UNDEFINED_JOB_ID ? noJob : record.jobId, out);
  out = putField(record.level, out);
  *out++ = ' ';
  line.append(head, out);
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
