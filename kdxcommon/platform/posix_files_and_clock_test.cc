// What the machine's own POSIX system does at the edges, which no stand-in can tell.

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>

#include "kdxcommon/inhouse/zqlib/last_error.h"
#include "kdxcommon/platform/files_and_clock.h"
#include "kdxcommon/testing/scoped_time_zone.h"
#include "kdxcommon/testing/temporary_directory.h"
#include "kdxcommon/testing/wide_text.h"

namespace kdx {
namespace {

/// The superuser reads everything: for a scope the process is somebody else.
class WithoutPrivileges {
 public:
  WithoutPrivileges() { EXPECT_EQ(::seteuid(privileged_ ? kNobody : ::geteuid()), 0); }
  ~WithoutPrivileges() { EXPECT_EQ(::seteuid(privileged_ ? 0 : ::geteuid()), 0); }

 private:
  static constexpr uid_t kNobody = 65534;
  bool privileged_ = ::geteuid() == 0;
};

struct PosixFilesAndClock : ::testing::Test {
  bool read(const string& path) { return platformReadEntireFileContents(path, contents, error); }

  testing::TemporaryDirectory directory;
  string contents = "before";
  int error = 0;
};

TEST_F(PosixFilesAndClock, FilesThatCannotBeOpenedTouchNothing) {
  const string unreadable = directory.write("unreadable", "secret");
  ASSERT_EQ(::chmod(unreadable.c_str(), 0), 0);
  const string huge = directory.write("huge");
  std::filesystem::resize_file(huge, std::uintmax_t{1} << 31);
  {
    const WithoutPrivileges scope;
    EXPECT_FALSE(read(unreadable));
    EXPECT_FALSE(platformWriteEntireFileContent(unreadable, "other", error));
  }
  EXPECT_FALSE(read(directory.path("missing")));
  EXPECT_FALSE(read(huge));
  EXPECT_FALSE(platformWriteEntireFileContent(directory.path(), "text", error));
  EXPECT_FALSE(platformWriteEntireFileContent(directory.path("missing/file"), "text", error));
  EXPECT_EQ(error, 0);
  EXPECT_EQ(contents, "before");
}

TEST_F(PosixFilesAndClock, ReadAndWriteErrorsAreTold) {
  EXPECT_FALSE(read(directory.path()));  // a directory can be opened, but not read
  EXPECT_NE(std::exchange(error, 0), 0);
  EXPECT_EQ(contents, "before");
  for (const std::size_t size : {1u, 100000u}) {  // however little it is, a full disk shows
    EXPECT_FALSE(platformWriteEntireFileContent("/dev/full", string(size, 'x'), error));
    EXPECT_NE(std::exchange(error, 0), 0);
  }
  EXPECT_TRUE(platformWriteEntireFileContent("/dev/full", "", error));
}

TEST_F(PosixFilesAndClock, AFileWithoutASizeIsReadToItsEnd) {
  EXPECT_TRUE(read("/proc/self/comm"));
  string name;
  std::getline(std::ifstream("/proc/self/comm"), name);
  EXPECT_EQ(contents, "before" + name + "\n");
}

TEST_F(PosixFilesAndClock, AccessFollowsTheFileSystem) {
  const string path = directory.path();
  const wstring folder(path.begin(), path.end());
  const string file = directory.write("d\xC3\xA9p\xC3\xB4t \xF0\x9F\x93\xA6");
  ASSERT_EQ(::chmod(file.c_str(), 0400), 0);
  const struct {
    std::u16string_view name;
    int mode;
    std::uint32_t number;
  } kRows[] = {
      {u"/d\u00E9p\u00F4t \U0001F4E6", 0, 0},
      {u"/d\u00E9p\u00F4t \U0001F4E6", 4, 0},
      {u"", 6, 0},
      {u"/depot", 0, 0x56000004},
      {u"/missing/depot", 4, 0x56000004},
      {u"/d\u00E9p\u00F4t \U0001F4E6/below", 0, ENOTDIR},
      {u"/d\u00E9p\u00F4t \U0001F4E6", 0x1000, EINVAL},
  };
  for (const auto& row : kRows) {
    ZQLastError lastError;
    EXPECT_EQ(platformAccessW(folder + testing::wide(row.name), row.mode, &lastError), row.number == 0);
    EXPECT_EQ(lastError.number(), row.number);
  }
  ZQLastError lastError;
  EXPECT_FALSE(platformAccessW(folder + wchar{0xD83D}, 0, &lastError));
  EXPECT_EQ(lastError.number(), static_cast<std::uint32_t>(EINVAL));
}

TEST_F(PosixFilesAndClock, ErrorNumbersHaveTexts) {
  string message;
  EXPECT_TRUE(winGetOSErrorMessage(ENOENT, message));
  EXPECT_EQ(message, "No such file or directory");
  EXPECT_FALSE(winGetOSErrorMessage(0x56000004, message));
  errno = EACCES;
  EXPECT_EQ(platformGetLastError(), static_cast<std::uint32_t>(EACCES));
}

TEST_F(PosixFilesAndClock, TheZoneIsThatOfTheEnvironment) {
  const testing::ScopedTimeZone scope("Asia/Kolkata");
  TimeZone_t zone;
  EXPECT_TRUE(platformGetTimeZone(zone, nullptr));
  EXPECT_EQ(zone.biasSeconds, -19800);
  EXPECT_FALSE(zone.daylightActive);
  EXPECT_EQ(zone.daylightBiasSeconds, 0);
  EXPECT_EQ(zone.standardName, "IST");
  EXPECT_EQ(zone.daylightName, "");
  EXPECT_EQ(platformTimezone(), 19800);
}

}  // namespace
}  // namespace kdx
