#include "kdxcommon/inhouse/zqbasiclib/log_line.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <map>
#include <random>

#include "kdxcommon/base/job_id.h"

namespace kdx {
namespace {

using ::testing::EndsWith;
using ::testing::StartsWith;

constexpr std::uint64_t kTicksTo1970 = 116'444'736'000'000'000;
constexpr char kStart[] = "1970-01-01T00:00:00.000Z 7 - - ";

std::string lineOf(const LogRecord& record, std::uint64_t fileTime = kTicksTo1970) {
  std::string line;
  appendLogLine(record, {fileTime, 7}, line);
  return line;
}

std::string escaped(string_view text) {
  std::string line = lineOf({std::nullopt, {}, UNDEFINED_JOB_ID, {}, text});
  EXPECT_THAT(line, StartsWith(kStart));
  EXPECT_THAT(line, EndsWith("\n"));
  return line.substr(sizeof kStart - 1, line.size() - sizeof kStart);
}

TEST(LogLine, ShowsTheFieldsInOneOrder) {
  EXPECT_EQ(lineOf({-1, "Agent::run", 3456, "No such file", "can't open [x]"}, 134'083'206'051'239'999),
            "2025-11-22T21:30:05.123Z 7 3456 -1 Agent::run: can't open [x] (No such file)\n");
  EXPECT_EQ(lineOf({2, "f", 0, {}, {}}), "1970-01-01T00:00:00.000Z 7 0 2 f: \n");
  std::string lines = "before\n";
  appendLogLine({0, "f\ng", INT64_MIN, "h\ni", "j"}, {0, UINT32_MAX}, lines);
  EXPECT_EQ(lines, "before\n1601-01-01T00:00:00.000Z 4294967295 -9223372036854775808 0 f\\ng: j (h\\ni)\n");
}

TEST(LogLine, ShowsTheLastMomentOfADay) {
  EXPECT_THAT(lineOf({}, 125'963'423'999'999'999), StartsWith("2000-02-29T23:59:59.999Z "));
  EXPECT_THAT(lineOf({}, 2'650'467'743'999'999'999), StartsWith("9999-12-31T23:59:59.999Z "));
}

TEST(LogLine, EscapesWhatCouldBreakOrForgeALine) {
  const std::string nul("a\0b", 3);
  const struct {
    std::string text;
    const char* shown;
  } rows[] = {
      {"one\ntwo\r\tthree", "one\\ntwo\\r\\tthree"},
      {nul, "a\\0b"},
      {"\x1B[31m\x7F", "\\x1B[31m\\x7F"},
      {"\xC2\x85\xC2\x9F\xC2\xA0", "\\u0085\\u009F\xC2\xA0"},
      {"\xE2\x80\xA8\xE2\x80\xA9\xE2\x80\xAA", "\\u2028\\u2029\xE2\x80\xAA"},
      {"C:\\dumps\\n \xD0\xB6 \xFF\xC2\xE2\x80", "C:\\dumps\\n \xD0\xB6 \xFF\xC2\xE2\x80"},
  };
  for (const auto& row : rows) {
    for (const std::size_t before : {0U, 1U, 30U, 31U, 32U, 63U, 64U}) {  // across the blocks of the scan
      const std::string padding(before, '.');
      EXPECT_EQ(escaped(padding + row.text + padding), padding + row.shown + padding);
    }
  }
}

// Every character that a line can't hold, with what it shows in its place.
std::map<std::string, std::string> escapes() {
  std::map<std::string, std::string> shown;
  char form[8];
  for (int value = 0; value < 0xA0; ++value) {
    const char byte = static_cast<char>(value);
    std::snprintf(form, sizeof form, value < 0x80 ? "\\x%02X" : "\\u%04X", static_cast<unsigned>(value));
    if (value < 0x20 || value == 0x7F) shown[{byte}] = form;
    if (value >= 0x80) shown[{'\xC2', byte}] = form;
  }
  shown[std::string(1, '\0')] = "\\0";
  shown["\n"] = "\\n";
  shown["\r"] = "\\r";
  shown["\t"] = "\\t";
  shown["\xE2\x80\xA8"] = "\\u2028";
  shown["\xE2\x80\xA9"] = "\\u2029";
  return shown;
}

TEST(LogLine, EscapesAsTheSlowTwinDoes) {
  constexpr char kBytes[] = "ab\\\n\r\t\x01\x1B\x1F\x7F\x80\x85\x9F\xA0\xA8\xA9\xC2\xE2\xE3";  // its zero byte too
  const std::map<std::string, std::string> shown = escapes();
  std::mt19937 random(1);
  for (int run = 0; run < 3000; ++run) {
    // Between plain bytes often enough, so that blocks without an escape come too.
    const std::size_t choices = run % 2 == 0 ? sizeof kBytes : sizeof kBytes * 20;
    std::string text(random() % 150, ' ');
    for (char& byte : text) {
      const std::size_t choice = random() % choices;
      if (choice < sizeof kBytes) byte = kBytes[choice];
    }
    std::string expected;
    for (std::size_t i = 0; i < text.size();) {
      std::size_t length = 3;
      while (length > 0 && !shown.contains(text.substr(i, length))) --length;
      expected += length > 0 ? shown.at(text.substr(i, length)) : text.substr(i, 1);
      i += std::max<std::size_t>(length, 1);
    }
    ASSERT_EQ(escaped(text), expected);
  }
}

}  // namespace
}  // namespace kdx
