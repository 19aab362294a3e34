#include "kdxcommon/inhouse/zqbasiclib/line_sink.h"

#include <gtest/gtest.h>

#include "kdxcommon/os/operating_system_wrapper.h"

namespace kdx {
namespace {

// Takes at most `most` bytes of each write; takes none and fails where that is 0.
struct SlowDisk : OperatingSystemWrapper {
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
  SlowDisk disk;
  const ScopedOperatingSystem scope(disk);
  const std::string line = "1601-01-01T00:00:00.000Z 7 1 2 f: text\n";
  for (const std::size_t most : {std::size_t{0}, std::size_t{10}, line.size()}) {
    disk.most = most;
    disk.written.clear();
    DescriptorLineSink(9).write({2, "f", 1, {}, "text"});
    DescriptorLineSink(-1).write({2, "f", 1, {}, "nowhere"});
    EXPECT_EQ(disk.written, most > 0 ? line : "");
  }
}

}  // namespace
}  // namespace kdx
