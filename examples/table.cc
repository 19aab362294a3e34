#include "table.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <span>

#include "kdxcommon/os/operating_system.h"

namespace {

struct Range {
  char32_t first, last;
};

// Controls, and characters that are invisible or change the direction of a text.
constexpr Range kHidden[] = {{0x00, 0x1F},     {0x7F, 0x9F},     {0xAD, 0xAD},      {0x61C, 0x61C},
                             {0x180E, 0x180E}, {0x200B, 0x200F}, {0x2028, 0x202E},  {0x2060, 0x206F},
                             {0xFEFF, 0xFEFF}, {0xFFF9, 0xFFFB}, {0xE0000, 0xE0FFF}};
// Characters that a terminal shows over the one before, and those that take two columns.
constexpr Range kCombining[] = {{0x300, 0x36F}, {0x1AB0, 0x1AFF}, {0x20D0, 0x20FF}, {0xFE00, 0xFE0F}, {0xFE20, 0xFE2F}};
constexpr Range kWide[] = {{0x1100, 0x115F},   {0x2E80, 0x303E},   {0x3041, 0xA4CF},  {0xAC00, 0xD7A3},
                           {0xF900, 0xFAFF},   {0xFE30, 0xFE6F},   {0xFF00, 0xFF60},  {0xFFE0, 0xFFE6},
                           {0x1F300, 0x1F64F}, {0x1F900, 0x1F9FF}, {0x20000, 0x3FFFD}};

bool isIn(std::span<const Range> ranges, char32_t character) {
  return std::ranges::any_of(ranges,
                             [&](const Range& range) { return character >= range.first && character <= range.last; });
}

bool isPlain(char byte) {
  return byte >= ' ' && byte <= '~';
}

// Returns the first character of a text, with its length in bytes; nothing if it isn't UTF-8.
struct Character {
  char32_t code;
  std::size_t length;
};
std::optional<Character> firstOf(std::string_view text) {
  const auto byte = [text](std::size_t at) { return static_cast<unsigned char>(text[at]); };
  const unsigned first = byte(0);
  if (first < 0x80) return Character{first, 1};
  const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
  constexpr char32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
  if (first < 0xC2 || first > 0xF4 || text.size() < length) return {};
  char32_t code = first & (0x7Fu >> length);
  for (std::size_t at = 1; at < length; ++at) {
    if ((byte(at) & 0xC0) != 0x80) return {};
    code = code << 6 | (byte(at) & 0x3F);
  }
  const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
  return code < kSmallest[length] || surrogate || code > 0x10FFFF ? std::nullopt
                                                                  : std::optional(Character{code, length});
}

std::size_t columnsOf(std::string_view text) {
  if (std::ranges::all_of(text, isPlain)) return text.size();
  std::size_t columns = 0;
  while (!text.empty()) {
    const Character character = firstOf(text).value_or(Character{0, 1});
    columns += isIn(kCombining, character.code) ? 0 : isIn(kWide, character.code) ? 2 : 1;
    text.remove_prefix(character.length);
  }
  return columns;
}

// Appends `text`, wrapped between words: each line but the first begins with `start` blanks and ends before `width`.
void appendWrapped(std::string_view text, std::size_t start, std::size_t width, std::string& output) {
  std::size_t column = start;
  for (bool first = true; !text.empty(); first = false) {
    const std::string_view word = text.substr(0, text.find(' '));
    const std::size_t columns = columnsOf(word);
    if (!first && column + 1 + columns > width) {
      output.append(1, '\n').append(start, ' ');
      column = start;
    } else if (!first) {
      output += ' ';
      ++column;
    }
    output += word;
    column += columns;
    text.remove_prefix(std::min(text.size(), word.size() + 1));
  }
}

}  // namespace

Table::Table(std::vector<Column> columns) : columns_(std::move(columns)), widths_(columns_.size()) {
  const bool titled = std::ranges::any_of(columns_, [](const Column& column) { return *column.title != '\0'; });
  for (std::size_t i = 0; titled && i < columns_.size(); ++i) put(i, columns_[i].title);
}

void Table::put(std::size_t column, std::string cell) {
  widths_[column] = std::max(widths_[column], columnsOf(cell));
  cells_.push_back(std::move(cell));
}

std::string Table::text(std::size_t width, std::size_t indent) const {
  std::string text;
  for (std::size_t row = 0; row < cells_.size(); row += columns_.size()) appendRow(&cells_[row], width, indent, text);
  return text;
}

void Table::appendRow(const std::string* cells, std::size_t width, std::size_t indent, std::string& text) const {
  constexpr std::size_t kGap = 2, kNarrowest = 16;
  std::size_t start = indent;
  text.append(indent, ' ');
  const std::size_t last = columns_.size() - 1;
  for (std::size_t i = 0; i < last; ++i) {
    const std::size_t blanks = widths_[i] - columnsOf(cells[i]);
    if (columns_[i].right) text.append(blanks, ' ');
    text += cells[i];
    text.append((columns_[i].right ? 0 : blanks) + kGap, ' ');
    start += widths_[i] + kGap;
  }
  if (width < start + kNarrowest) {
    text += cells[last];
  } else {
    appendWrapped(cells[last], start, width, text);
  }
  text += '\n';
}

std::size_t terminalWidth() {
  constexpr int kStandardOutput = 1;
  const int width = kdx::os::OperatingSystem::current().terminalWidth(kStandardOutput);
  if (width <= 0) return 0;
  const char* columns = std::getenv("COLUMNS");  // NOLINT(concurrency-mt-unsafe): nothing changes the environment
  const int wanted = columns ? std::atoi(columns) : 0;
  return static_cast<std::size_t>(wanted > 0 ? wanted : width);
}

std::string printable(std::string_view text) {
  if (std::ranges::all_of(text, isPlain)) return std::string(text);
  std::string result;
  while (!text.empty()) {
    const std::optional<Character> character = firstOf(text);
    const std::size_t length = character ? character->length : 1;
    if (character && !isIn(kHidden, character->code)) {
      result += text.substr(0, length);
    } else {
      const auto code = static_cast<unsigned>(character ? character->code : static_cast<unsigned char>(text[0]));
      std::array<char, 16> escape{};
      std::snprintf(escape.data(), escape.size(), length > 1 ? "\\u%04X" : "\\x%02X", code);
      result += escape.data();
    }
    text.remove_prefix(length);
  }
  return result;
}

std::string csvField(const std::string& field) {
  if (field.find_first_of(",\"") == field.npos) return field;
  std::string quoted = "\"";
  for (const char c : field) quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
  return quoted + '"';
}

std::string sizeText(std::int64_t bytes) {
  if (bytes < 1024) return std::to_string(bytes) + " B";
  constexpr const char* kUnits[] = {"KiB", "MiB", "GiB", "TiB", "PiB", "EiB"};
  auto size = static_cast<double>(bytes) / 1024;
  std::size_t unit = 0;
  while (size >= 1023.95) {  // less is at most 1023.9 in the text
    size /= 1024;
    ++unit;
  }
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%.1f %s", size, kUnits[unit]);
  return text.data();
}

std::string ageText(std::int64_t seconds) {
  constexpr std::pair<std::int64_t, const char*> kUnits[] = {
      {86400, "day"}, {3600, "hour"}, {60, "minute"}, {1, "second"}};
  for (const auto& [length, noun] : kUnits) {
    const std::int64_t count = seconds / length;
    if (count > 0 || length == 1) return countText(count, noun);
    if (count < 0) return countText(-count, noun) + " ahead";
  }
  return {};
}

std::string countText(std::int64_t count, const std::string& noun) {
  return std::to_string(count) + ' ' + noun + (count == 1 ? "" : "s");
}
