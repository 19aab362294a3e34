#include "kdxcommon/inhouse/zqbasiclib/line_sink.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "kdxcommon/os/operating_system_wrapper.h"
#include "kdxcommon/testing/temporary_directory.h"

namespace kdx {
namespace {

using ::testing::EndsWith;
using ::testing::StartsWith;

// Takes at most `most` bytes of each write, and none after `failAfter` writes.
class SlowDisk : public OperatingSystemWrapper {
 public:
  std::int64_t _write(int, const void* data, std::size_t count) override {
    if (++writes > failAfter) return -1;
    const std::size_t taken = std::min(count, most);
    written.append(static_cast<const char*>(data), taken);
    return static_cast<std::int64_t>(taken);
  }
  std::uint64_t GetSystemTimeAsFileTime() override { return 0; }
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
  const std::string text(5000, 'x');
  sink.write({2, "f", 1, {}, text});
  EXPECT_EQ(disk.writes, 1);
  EXPECT_EQ(disk.written, "1601-01-01T00:00:00.000Z 7 1 2 f: " + text + "\n");
  disk.most = 10;
  sink.write({2, "f", 1, {}, "goes on where the system took a part"});
  EXPECT_THAT(disk.written, EndsWith("\n1601-01-01T00:00:00.000Z 7 1 2 f: goes on where the system took a part\n"));
  const std::string before = disk.written;
  disk.failAfter = 0;
  sink.write({2, "f", 1, {}, "lost"});
  DescriptorLineSink(-1).write({2, "f", 1, {}, "nowhere"});
  EXPECT_EQ(disk.written, before);
}

TEST(LineSinks, AppendToAFileOfTheirOwner) {
  const testing::TemporaryDirectory directory;
  const std::string path = directory.path("agent.log");
  for (const char* text : {"one", "two"}) {
    FileLineSink sink(path.c_str());
    ASSERT_TRUE(sink.opened());
    sink.write({2, "f", 1, {}, text});
  }
  const std::string log = directory.read("agent.log");
  EXPECT_NE(log.find(" 1 2 f: one\n"), std::string::npos);
  EXPECT_THAT(log, EndsWith(" 1 2 f: two\n"));
  EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), 2);
  using enum std::filesystem::perms;
  EXPECT_EQ(std::filesystem::status(path).permissions() & ~group_read, owner_read | owner_write);
  FileLineSink nowhere(directory.path("missing/agent.log").c_str());
  EXPECT_FALSE(nowhere.opened());
  nowhere.write({2, "f", 1, {}, "nowhere"});
}

}  // namespace
}  // namespace kdx
