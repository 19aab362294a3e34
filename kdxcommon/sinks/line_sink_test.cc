#include "kdxcommon/sinks/line_sink.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <sstream>
#include <thread>
#include <vector>

#include "kdxcommon/base/job_id.h"
#include "kdxcommon/os/operating_system_wrapper.h"
#include "kdxcommon/sinks/log_line.h"
#include "kdxcommon/sinks/rotating_file_sink.h"
#include "kdxcommon/testing/temporary_directory.h"

namespace kdx {
namespace {

// The line of a record that thread 7 wrote at the beginning of 1601, or at another time.
string lineOf(const LogRecord& record, std::uint64_t fileTime = 0) {
  ScratchText line;
  appendLogLine(record, {fileTime, 7}, line);
  return string(line);
}

// What else is escaped is in fuzz/log_line_fuzz.cc.
TEST(LogLine, ShowsTheFieldsInOneOrder) {
  EXPECT_EQ(lineOf({-1, "Agent::run", 3456, "No such file", "can't open [x]"}, 134'083'206'051'239'999),
            "2025-11-22T21:30:05.123Z 7 3456 -1 Agent::run: can't open [x] (No such file)\n");
  EXPECT_EQ(lineOf({0, "f\ng", INT64_MIN, "h\ni", "\x9Bj \xC2\x85 \xF3\xA0\x81\x81 C:\\n"}, 2'650'467'743'999'999'999),
            "9999-12-31T23:59:59.999Z 7 -9223372036854775808 0 f\\ng: \\x9Bj \\u0085 \\U000E0041 C:\\n (h\\ni)\n");
}

constexpr int kAll = 1000;

// Writes at most the number of bytes that `takes` has for each call; -1 is a failure, 0 takes nothing. After one of the
// calls, another thread writes.
struct FullDisk : os::OperatingSystemWrapper {
  std::int64_t writeWithoutSignal(int, const void* data, std::size_t count) override {
    const int most = call < takes.size() ? takes[call] : kAll;
    if (most > 0)
      written.append(static_cast<const char*>(data), count = std::min(count, static_cast<std::size_t>(most)));
    if (++call == otherAfter) writeNext();
    return most > 0 ? static_cast<std::int64_t>(count) : most;
  }
  std::uint64_t GetSystemTimeAsFileTime() override { return 0; }
  std::uint32_t GetCurrentThreadId() override { return 7; }
  void writeNext() { sink.write({2, "f", 1, {}, std::to_string(++lines)}); }

  std::vector<int> takes;
  std::size_t otherAfter = 0, call = 0;
  int lines = 0;
  std::string written;
  DescriptorLineSink sink{9};
};

TEST(LineSinks, BeginALineOfTheirOwnBehindOneThatWasCut) {
  const auto line = [](int number, std::size_t begin = 0, std::size_t length = kAll) {
    return lineOf({2, "f", 1, {}, std::to_string(number)}).substr(begin, length);
  };
  const struct {
    std::vector<int> takes;
    std::size_t otherAfter;
    std::string written;
  } rows[] = {
      {{}, 0, line(1) + line(2) + line(3) + line(4)},
      {{10}, 0, line(1) + line(2) + line(3) + line(4)},
      {{-1}, 0, line(2) + line(3) + line(4)},
      {{10, -1}, 0, line(1, 0, 10) + '\n' + line(2) + line(3) + line(4)},
      {{10, 0, -1}, 0, line(1, 0, 10) + '\n' + line(3) + line(4)},
      {{10, -1, 1, -1}, 0, line(1, 0, 10) + "\n\n" + line(3) + line(4)},
      {{10, 10}, 2, line(1, 0, 20) + '\n' + line(2) + line(1, 20) + line(3) + line(4)},
      {{10, -1, kAll, 5, -1}, 3, line(1, 0, 10) + '\n' + line(2) + '\n' + line(3, 0, 4) + '\n' + line(4)},
  };
  for (const auto& row : rows) {
    FullDisk disk;
    const os::ScopedOperatingSystem scope(disk);
    disk.takes = row.takes;
    disk.otherAfter = row.otherAfter;
    while (disk.lines < 4) disk.writeNext();
    EXPECT_EQ(disk.written, row.written);
  }
}

// A line of JSON is read back by any reader of JSON, except bytes that aren't UTF-8.
TEST(LogLine, IsAnObjectInJson) {
  const auto json = [](const LogRecord& record) {
    ScratchText line;
    appendJsonLine(record, {0, 7}, line);
    return string(line);
  };
  EXPECT_EQ(json({-1, "Agent::run", 3456, "No such file", "can't open [x]"}),
            R"({"time":"1601-01-01T00:00:00.000Z","thread":7,"job":3456,"level":-1,"function":"Agent::run",)"
            R"("text":"can't open [x]","error":"No such file"})"
            "\n");
  EXPECT_EQ(
      json({{}, "", UNDEFINED_JOB_ID, {}, "\x9B\"\\\\\" \t\n\r\x01\x7F\xC2\x85 \xF3\xA0\x81\x81 \xF0\x9F\x98\x80\""}),
      "{\"time\":\"1601-01-01T00:00:00.000Z\",\"thread\":7,\"text\":\"\xEF\xBF\xBD"
      R"(\"\\\\\" \t\n\r\u0001\u007F\u0085 \uDB40\uDC41 )"
      "\xF0\x9F\x98\x80\\\"\"}\n");
}

constexpr int kProcesses = 4, kThreads = 8, kLines = 400;

string textOf(int number) {
  return std::to_string(number) + ' ' + string(static_cast<std::size_t>(number % 300), 'x');
}

void hammer(LineSink& sink) {
  std::vector<std::jthread> threads;
  for (int thread = 0; thread < kThreads; ++thread) {
    threads.emplace_back([&sink] {
      for (int i = 0; i < kLines; ++i) sink.write({2, "f", 1, {}, textOf(i)});
    });
  }
}

// The program starts itself four times, with this test alone and in a directory with a file that tells the sink.
TEST(LineSinks, LoseNoLineOfFourProcesses) {
  constexpr char kPlain[] = "plain", kRotated[] = "rotated";
  constexpr Rotation kOften = {.maxBytes = 65536, .olderFiles = 1000};
  if (std::filesystem::exists(kPlain)) {
    FileLineSink sink("log", LogFileUse::kSeveralProcesses);
    return hammer(sink);
  }
  if (std::filesystem::exists(kRotated)) {
    RotatingFileLineSink sink("log", kOften, LogFileUse::kSeveralProcesses);
    return hammer(sink);
  }
  const std::string program = std::filesystem::absolute(::testing::internal::GetArgvs().front()).string();
  const std::string command = '"' + program + "\" --gtest_brief=1 --gtest_filter=LineSinks.LoseNoLineOfFourProcesses";
  const std::filesystem::path before = std::filesystem::current_path();
  for (const char* kind : {kPlain, kRotated}) {
    const testing::TemporaryDirectory directory;
    directory.write(kind);
    std::filesystem::current_path(testing::utf8Path(directory.path()));
    {
      std::vector<std::jthread> processes;
      const auto run = [&] { EXPECT_EQ(std::system(command.c_str()), 0); };
      for (int i = 0; i < kProcesses; ++i) processes.emplace_back(run);
    }
    std::filesystem::current_path(before);
    std::map<std::string, int> counts;
    int files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(testing::utf8Path(directory.path()))) {
      ++files;
      EXPECT_TRUE(kind == kPlain || entry.file_size() <= kOften.maxBytes);
      std::istringstream lines(directory.read(testing::utf8Text(entry.path().filename())));
      for (std::string line; std::getline(lines, line);) ++counts[line.substr(line.find(" f: ") + 4)];
    }
    EXPECT_EQ(counts.size(), std::size_t{kLines}) << kind;
    for (int i = 0; i < kLines; ++i) EXPECT_EQ(counts[textOf(i)], kProcesses * kThreads) << kind;
    EXPECT_GT(files, kind == kPlain ? 1 : 30);
  }
}

}  // namespace
}  // namespace kdx
