// What the machine's own POSIX system does at the edges, which no stand-in can tell.

#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <tuple>
#include <utility>

#include "kdxcommon/inhouse/zqlib/last_error.h"
#include "kdxcommon/platform/files_and_clock.h"
#include "kdxcommon/testing/scoped_time_zone.h"
#include "kdxcommon/testing/temporary_directory.h"
#include "kdxcommon/testing/wide_text.h"

namespace kdx {
namespace {

/// The superuser reads everything: for a scope the process is somebody else.
struct WithoutPrivileges {
  WithoutPrivileges() { EXPECT_EQ(::seteuid(user == 0 ? 65534 : user), 0); }
  ~WithoutPrivileges() { EXPECT_EQ(::seteuid(user), 0); }
  const uid_t user = ::geteuid();
};

struct PosixFilesAndClock : ::testing::Test {
  bool read(const string& path) { return platformReadEntireFileContents(path, contents, error); }

  testing::TemporaryDirectory directory;
  string contents = "before";
  int error = 0;
};

TEST_F(PosixFilesAndClock, FilesThatCannotBeOpenedTouchNothing) {
  const string locked = directory.write("locked"), huge = directory.write("huge");
  std::filesystem::permissions(locked, std::filesystem::perms::none);
  std::filesystem::resize_file(huge, std::uintmax_t{1} << 31);
  {
    const WithoutPrivileges scope;
    EXPECT_FALSE(read(locked) || platformWriteEntireFileContent(locked, "other", error));
  }
  EXPECT_FALSE(read(directory.path("missing")) || read(huge));
  EXPECT_FALSE(platformWriteEntireFileContent(directory.path(), "text", error));
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

TEST_F(PosixFilesAndClock, AccessFollowsTheFileSystem) {
  const string path = directory.path();
  const wstring folder(path.begin(), path.end());
  directory.write("d\xC3\xA9p\xC3\xB4t \xF0\x9F\x93\xA6");
  const std::u16string name = u"/d\u00E9p\u00F4t \U0001F4E6";
  const std::tuple<std::u16string, int, std::uint32_t> kRows[] = {
      {name, 0, 0},
      {name, 4, 0},
      {u"", 6, 0},
      {u"/depot", 0, 0x56000004},
      {name + u"/below", 0, ENOTDIR},
      {name, 0x1000, EINVAL},
      {u"/\xD83D", 0, EINVAL},  // half a pair
  };
  for (const auto& [below, mode, number] : kRows) {
    ZQLastError lastError;
    EXPECT_EQ(platformAccessW(folder + testing::wide(below), mode, &lastError), number == 0);
    EXPECT_EQ(lastError.number(), number);
  }
}

TEST_F(PosixFilesAndClock, ErrorsAndZoneAreThoseOfTheCLibrary) {
  EXPECT_TRUE(winGetOSErrorMessage(ENOENT, contents));
  EXPECT_EQ(contents, "No such file or directory");
  EXPECT_FALSE(winGetOSErrorMessage(0x56000004, contents));
  errno = EACCES;
  EXPECT_EQ(platformGetLastError(), static_cast<std::uint32_t>(EACCES));

  const testing::ScopedTimeZone scope("Asia/Kolkata");
  TimeZone_t zone;
  EXPECT_TRUE(platformGetTimeZone(zone, nullptr));
  EXPECT_EQ(zone.biasSeconds, -19800);
  EXPECT_EQ(zone.standardName + ',' + zone.daylightName, "IST,");
}

}  // namespace
}  // namespace kdx
