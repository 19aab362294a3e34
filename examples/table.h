// Output for people and programs: tables, CSV, and texts, sizes and durations as people write them.
//
//   Table table({{.title = "SIZE", .right = true}, {.title = "NAME"}});
//   table.add(sizeText(1234567), printable(name));
//   std::cout << table.text(terminalWidth());

#ifndef KDXCOMMON_EXAMPLES_TABLE_H_
#define KDXCOMMON_EXAMPLES_TABLE_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

class Table {
 public:
  struct Column {
    const char* title = "";  ///< a table without titles has no title line
    bool right = false;      ///< aligned to the right
  };

  explicit Table(std::vector<Column> columns);

  /// Adds a row, a cell for each column, of printable text.
  template <typename... Cells>
  void add(Cells&&... cells) {
    std::size_t column = 0;
    (put(column++, std::forward<Cells>(cells)), ...);
  }

  /// Returns the table, each line after `indent` blanks. If it is wider than `width`, the last column is wrapped
  /// between words; a width of 0 is unlimited.
  std::string text(std::size_t width, std::size_t indent = 0) const;

 private:
  void put(std::size_t column, std::string cell);
  void appendRow(const std::string* cells, std::size_t width, std::size_t indent, std::string& text) const;

  std::vector<Column> columns_;
  std::vector<std::size_t> widths_;
  std::vector<std::string> cells_;  // row by row, the titles first if there are any
};

/// Returns the number of columns of the terminal at the standard output, or 0 if there is none. The environment's
/// COLUMNS replaces what the system reports.
std::size_t terminalWidth();

/// Returns `text` as valid UTF-8 that can't break a line or disturb a terminal: control characters, invisible ones,
/// those that change the direction of a text, and bytes that aren't UTF-8 are escaped, as \x1B or \u202E.
std::string printable(std::string_view text);

/// Returns one field of CSV: in quotes if it contains a comma or a quote.
std::string csvField(const std::string& field);

/// Return a size as "1.2 MiB", a time span as "3 days" or, if it is below 0, "3 days ahead", and a count as "1 dump" or
/// "2 dumps".
std::string sizeText(std::int64_t bytes);
std::string ageText(std::int64_t seconds);
std::string countText(std::int64_t count, const std::string& noun);

#endif  // KDXCOMMON_EXAMPLES_TABLE_H_
