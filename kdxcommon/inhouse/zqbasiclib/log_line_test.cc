#include "kdxcommon/inhouse/zqbasiclib/log_line.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cwchar>
#include <map>
#include <random>

#include "kdxcommon/base/job_id.h"
#include "kdxcommon/inhouse/embedded_site.h"
#include "kdxcommon/inhouse/zqlib/ev_event.h"
#include "kdxcommon/os/operating_system_wrapper.h"
#include "kdxcommon/testing/recording_line_sink.h"
#include "kdxcommon/testing/temporary_directory.h"

namespace kdx {
namespace {

using ::testing::ElementsAre;
using ::testing::EndsWith;
using testing::LoggedLine;
using testing::ScopedLog;
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
    for (const std::size_t before : {0, 1, 29, 30, 31, 32, 63}) {  // across the blocks of the scan
      const std::string padding(before, '.');
      EXPECT_EQ(escaped(padding + row.text + padding), padding + row.shown + padding);
    }
  }
  EXPECT_EQ(lineOf({0, "f\ng", 1, "h\ni", "j"}), "1970-01-01T00:00:00.000Z 7 1 0 f\\ng: j (h\\ni)\n");
}

// The rule without blocks: every character that a line can't hold, and what stands for it.
std::map<std::string, std::string> escapes() {
  std::map<std::string, std::string> escapes;
  for (int control = 0; control < 0xA0; ++control) {
    if (control >= 0x20 && control < 0x7F) continue;
    const bool ascii = control < 0x80;
    const char last = static_cast<char>(control);
    char shown[16];
    std::snprintf(shown, sizeof shown, ascii ? "\\x%02X" : "\\u%04X", static_cast<unsigned>(control));
    escapes[ascii ? std::string({last}) : std::string({'\xC2', last})] = shown;
  }
  escapes["\n"] = "\\n", escapes["\r"] = "\\r", escapes["\t"] = "\\t", escapes[std::string(1, '\0')] = "\\0";
  escapes["\xE2\x80\xA8"] = "\\u2028", escapes["\xE2\x80\xA9"] = "\\u2029";
  return escapes;
}

std::string slowlyEscaped(const std::string& text) {
  static const std::map<std::string, std::string> kEscapes = escapes();
  std::string shown;
  for (std::size_t i = 0; i < text.size();) {
    std::size_t length = 3;
    while (length > 0 && !kEscapes.contains(text.substr(i, length))) --length;
    shown += length > 0 ? kEscapes.at(text.substr(i, length)) : text.substr(i, 1);
    i += std::max<std::size_t>(length, 1);
  }
  return shown;
}

TEST(LogLine, EscapesLikeItsSlowTwin) {
  std::mt19937 random(1);
  constexpr unsigned char kBytes[] = {'\n', 0x00, 0x1F, 0x7F, 0x80, 0x85, 0x9F, 0xA0, 0xA8, 0xAA, 0xC2, 0xE2, 0xE3};
  for (int run = 0; run < 20000; ++run) {
    std::string text(random() % 150, 'a');
    const auto rarity = 1 + random() % 100;
    for (char& byte : text) {
      if (random() % rarity == 0) byte = static_cast<char>(kBytes[random() % std::size(kBytes)]);
    }
    ASSERT_EQ(escaped(text), slowlyEscaped(text));
  }
}

// Takes at most `most` bytes of each write.
class SlowDisk : public OperatingSystemWrapper {
 public:
  std::int64_t _write(int, const void* data, std::size_t count) override {
    ++writes;
    if (writes > failAfter) return -1;
    const std::size_t taken = std::min(count, most);
    written.append(static_cast<const char*>(data), taken);
    return static_cast<std::int64_t>(taken);
  }
  std::uint64_t GetSystemTimeAsFileTime() override { return kTicksTo1970; }
  std::uint32_t GetCurrentThreadId() override { return 7; }

  std::size_t most = SIZE_MAX;
  int failAfter = 100;
  int writes = 0;
  std::string written;
};

TEST(LineSinks, WriteEachLineWithOneCall) {
  SlowDisk disk;
  const ScopedOperatingSystem scope(disk);
  DescriptorLineSink sink(9);
  sink.write({2, "f", 1, {}, std::string(5000, 'x')});
  EXPECT_EQ(disk.writes, 1);
  disk.most = 10;
  sink.write({2, "f", 1, {}, "goes on where the system took a part"});
  EXPECT_THAT(disk.written, EndsWith("7 1 2 f: goes on where the system took a part\n"));
  disk.failAfter = 0;
  sink.write({2, "f", 1, {}, "lost"});
  DescriptorLineSink(-1).write({2, "f", 1, {}, "nowhere"});
  EXPECT_EQ(disk.written.find("lost"), std::string::npos);
}

TEST(LineSinks, AppendToAFile) {
  const testing::TemporaryDirectory directory;
  directory.write("agent.log", "before\n");
  for (const char* text : {"one", "two"}) {
    FileLineSink sink(directory.path("agent.log").c_str());
    ASSERT_TRUE(sink.opened());
    sink.write({2, "f", 1, {}, text});
  }
  const std::string log = directory.read("agent.log");
  EXPECT_THAT(log, StartsWith("before\n"));
  EXPECT_THAT(log, EndsWith(" 1 2 f: two\n"));
  EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), 3);
  FileLineSink none(directory.path("missing/agent.log").c_str());
  EXPECT_FALSE(none.opened());
  none.write({2, "f", 1, {}, "nowhere"});
}

TEST(EvDebugTest, FormatsAnyLengthAndFollowsTheConfiguredLevel) {
  const ScopedLog log(2);
  EvEvent event;
  event.setJobId(9);
  for (const int length : {0, 1022, 1023, 1024, 1025, 100'000}) {
    event.DebugLvl("f", 2, "%*s", length, "");
    EXPECT_EQ(log->take(),
              std::vector<LoggedLine>({{2, "f", 9, "", std::string(static_cast<std::size_t>(length), ' ')}}));
  }
  event.DebugLvl("f", 2, "%lc", static_cast<std::wint_t>(0x20AC));  // no such character in the C locale
  EXPECT_THAT(log->takeTexts(2), ElementsAre("%lc"));
  event.DebugLvl("f", 3, "dropped %d", 1);
  EmbeddedSite::current().setDebugLevel(3);
  event.DebugLvl(nullptr, 3, "100%%");
  char finished[] = "100%s";
  event.logMessage(finished);
  event.logMessage(nullptr);
  EXPECT_THAT(log->take(), ElementsAre(LoggedLine{3, "", 9, "", "100%"}, LoggedLine{std::nullopt, "", 9, "", "100%s"},
                                       LoggedLine{std::nullopt, "", 9, "", ""}));
}

TEST(EvDebugTest, OutlivesASinkThatThrows) {
  struct Throws : LineSink {
    void write(const LogRecord&) override { throw 1; }
  };
  const ScopedLog log(0);
  EmbeddedSite::current().setLineSink(std::make_shared<Throws>());
  EXPECT_NO_THROW(EvEvent().DebugLvl("f", 0, "lost"));
}

}  // namespace
}  // namespace kdx
