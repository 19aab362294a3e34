#include "kdxcommon/sinks/line_sink.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <map>

#include "kdxcommon/base/job_id.h"
#include "kdxcommon/base/transcoder.h"
#include "kdxcommon/os/operating_system_wrapper.h"
#include "kdxcommon/sinks/log_line.h"

namespace kdx {
namespace {

std::string lineOf(const LogRecord& record, std::uint64_t fileTime = 0) {
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

TEST(LogLine, EscapesWhateverBreaksItOrTurnsItsDirection) {
  const std::map<unsigned, std::string> names = {{0, "\\0"}, {'\n', "\\n"}, {'\r', "\\r"}, {'\t', "\\t"}};
  for (unsigned unit = 0; unit < 0xD800; ++unit) {
    std::string character;
    utf16ToUtf8(wstring(1, static_cast<wchar>(unit)), character);
    std::string shown = character;
    if (unit < 0x20 || (unit >= 0x7F && unit < 0xA0) || (unit >= 0x2028 && unit < 0x202F) ||
        (unit >= 0x2066 && unit < 0x206A)) {
      char form[8];
      std::snprintf(form, sizeof form, unit < 0x80 ? "\\x%02X" : "\\u%04X", unit);
      shown = names.contains(unit) ? names.at(unit) : form;
    }
    // At any place in a block of plain bytes, alone and twice; what is less than a character stands as it is.
    const std::string plain(unit % 67, 'x');
    const std::string pieces = character.substr(1) + plain + character.substr(0, character.size() - 1);
    const std::string text = plain + character + plain + character + character + pieces;
    ASSERT_EQ(lineOf({std::nullopt, {}, UNDEFINED_JOB_ID, {}, text}),
              "1601-01-01T00:00:00.000Z 7 - - " + plain + shown + plain + shown + shown + pieces + "\n");
  }
}

// Takes at most `most` bytes of each write; takes none and fails where that is 0.
struct SlowDisk : os::OperatingSystemWrapper {
  std::int64_t _write(int, const void* data, std::size_t count) override {
    written.append(static_cast<const char*>(data), std::min(count, most));
    return most == 0 ? -1 : static_cast<std::int64_t>(std::min(count, most));
  }
  std::uint64_t GetSystemTimeAsFileTime() override { return 0; }
  std::uint32_t GetCurrentThreadId() override { return 7; }
  std::size_t most = 0;
  std::string written;
};

TEST(LineSinks, WriteOnWhereTheSystemTookAPart) {
  const LogRecord record = {2, "f", 1, {}, "text"};
  for (const std::size_t most : {0U, 10U, 1000U}) {
    SlowDisk disk;
    const os::ScopedOperatingSystem scope(disk);
    disk.most = most;
    DescriptorLineSink(9).write(record);
    DescriptorLineSink(-1).write(record);
    EXPECT_EQ(disk.written, most > 0 ? lineOf(record) : "");
  }
}

}  // namespace
}  // namespace kdx
