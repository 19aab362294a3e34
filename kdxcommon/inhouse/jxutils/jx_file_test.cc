#include "kdxcommon/inhouse/jxutils/jx_file.h"

#include <gtest/gtest.h>

#include "kdxcommon/inhouse/jxutils/jx_directory.h"
#include "kdxcommon/os/operating_system_wrapper.h"

namespace kdx {
namespace {

constexpr std::uint32_t kDiskFull = 28;

// Writes three bytes at a time until its space is used up, then fails with `error`, or writes nothing if that is 0.
struct SmallDisk : os::OperatingSystemWrapper {
  SmallDisk(std::size_t bytes, std::uint32_t failure) : room(bytes), error(failure) {}
  int _open(const char*, int, int) override { return 100; }
  std::int64_t _write(int, const void* data, std::size_t count) override {
    const std::size_t taken = std::min({count, room - content.size(), std::size_t{3}});
    content.append(static_cast<const char*>(data), taken);
    return taken == 0 && error != 0 ? -1 : static_cast<std::int64_t>(taken);
  }
  int _close(int) override { return ++closed, error == 0 ? 0 : -1; }
  std::uint32_t GetLastError() override { return error; }

  std::size_t room;
  std::uint32_t error;
  string content;
  int closed = 0;
};

TEST(JxDirectoryTest, IsReadOnlyWhileItIsOpen) {
  CJxDirectory directory;
  SJxDirEntry entry;
  bool end = false;
  EXPECT_FALSE(directory.Open(".", "*", false).IsErrorSet() || directory.Close().IsErrorSet());
  EXPECT_TRUE(directory.GetEntry(&entry, end).IsErrorSet() && directory.Close().IsErrorSet());
}

TEST(JxFileTest, CountsExactlyWhatTheSystemTookAndClosesOnce) {
  const std::uint32_t cases[][4] = {{20, 0, 10, 0}, {8, kDiskFull, 8, kDiskFull}, {5, 0, 5, CJxError::kNoSystemCode}};
  for (const auto& [room, systemError, expected, error] : cases) {
    SmallDisk disk(room, systemError);
    const os::ScopedOperatingSystem scope(disk);
    {
      CJxFile file;
      file.Open("closed by the next", os::kOpenReadWrite, os::kModeWrite);
      file.Open("written to", os::kOpenReadWrite, os::kModeWrite);
      EXPECT_TRUE(CJxFile(file).Close().IsErrorSet());  // an open file remains with the source
      std::uint32_t written = 99;
      EXPECT_EQ(file.Write("0123456789", 10, &written).GetErrorCode(), error) << room;
      EXPECT_EQ(written, expected);
      EXPECT_EQ(disk.content, string("0123456789", written));
      EXPECT_EQ(file.Close().GetErrorCode(), systemError);
      EXPECT_EQ(disk.closed, 2);
      file.Open("closed by an assignment", os::kOpenReadWrite, os::kModeWrite);
      file = CJxFile();
      EXPECT_EQ(disk.closed, 3);
      file.Open("closed at the end", os::kOpenReadWrite, os::kModeWrite);
    }
    EXPECT_EQ(disk.closed, 4);
  }
}

}  // namespace
}  // namespace kdx
