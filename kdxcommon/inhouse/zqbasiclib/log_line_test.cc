#include "kdxcommon/inhouse/zqbasiclib/log_line.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <map>
#include <random>

#include "kdxcommon/base/job_id.h"

namespace kdx {
namespace {

std::string lineOf(const LogRecord& record, std::uint64_t fileTime) {
  std::string line;
  appendLogLine(record, {fileTime, 7}, line);
  return line;
}

TEST(LogLine, ShowsTheFieldsInOneOrder) {
  EXPECT_EQ(lineOf({-1, "Agent::run", 3456, "No such file", "can't open [x]"}, 134'083'206'051'239'999),
            "2025-11-22T21:30:05.123Z 7 3456 -1 Agent::run: can't open [x] (No such file)\n");
  EXPECT_EQ(lineOf({0, "f\ng", INT64_MIN, "h\ni", "j"}, 2'650'467'743'999'999'999),
            "9999-12-31T23:59:59.999Z 7 -9223372036854775808 0 f\\ng: j (h\\ni)\n");
}

// Every character that a line can't hold, with what it shows in its place.
std::map<std::string, std::string> escapes() {
  std::map<std::string, std::string> shown = {{{'\0'}, "\\0"}, {"\n", "\\n"}, {"\r", "\\r"}, {"\t", "\\t"}};
  char form[8];
  for (int value = 0; value < 0xA0; ++value) {
    const char byte = static_cast<char>(value);
    std::snprintf(form, sizeof form, value < 0x80 ? "\\x%02X" : "\\u%04X", static_cast<unsigned>(value));
    if (value < 0x20 || value == 0x7F) shown.try_emplace({byte}, form);  // those with names keep them
    if (value >= 0x80) shown[{'\xC2', byte}] = form;
  }
  for (int value = 0x2028; value <= 0x2069; ++value) {
    if (value > 0x202E && value < 0x2066) continue;
    std::snprintf(form, sizeof form, "\\u%04X", static_cast<unsigned>(value));
    shown[{'\xE2', static_cast<char>(value >> 6), static_cast<char>(0x80 | (value & 0x3F))}] = form;
  }
  return shown;
}

TEST(LogLine, EscapesAsTheSlowTwinDoes) {
  constexpr char kBytes[] =
      "ab\\\n\r\t\x01\x1B\x1F\x7F\x80\x80\x81\x85\x9F\xA0\xA5\xA6\xA8\xA9\xAA\xAE\xAF\xC2\xE2\xE2\xE3";  // and zero
  const std::map<std::string, std::string> shown = escapes();
  std::mt19937 random(1);
  for (int run = 0; run < 5000; ++run) {
    // Between plain bytes often enough, so that blocks without an escape come too.
    const std::size_t choices = run % 2 == 0 ? sizeof kBytes : sizeof kBytes * 20;
    std::string text(random() % 150, ' ');
    for (char& byte : text) {
      const std::size_t choice = random() % choices;
      if (choice < sizeof kBytes) byte = kBytes[choice];
    }
    std::string expected = "1601-01-01T00:00:00.000Z 7 - - ";
    for (std::size_t i = 0; i < text.size();) {
      std::size_t length = 3;
      while (length > 0 && !shown.contains(text.substr(i, length))) --length;
      expected += length > 0 ? shown.at(text.substr(i, length)) : text.substr(i, 1);
      i += std::max<std::size_t>(length, 1);
    }
    ASSERT_EQ(lineOf({std::nullopt, {}, UNDEFINED_JOB_ID, {}, text}, 0), expected + "\n");
  }
}

}  // namespace
}  // namespace kdx
