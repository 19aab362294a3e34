#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <set>
#include <tuple>
#include <utility>

#include "kdxcommon/os/operating_system.h"
#include "kdxcommon/os/windows_file_kind.h"
#include "kdxcommon/testing/temporary_directory.h"

namespace kdx::os {
namespace {

bool write(const string& path, int flags, string_view content) {
  OperatingSystem& system = OperatingSystem::current();
  const int file = system._open(path.c_str(), flags, kModeWrite);
  if (file == -1) return false;
  const bool written = system._write(file, content.data(), content.size()) == std::ssize(content);
  EXPECT_EQ(system._close(file), 0);
  return written;
}

TEST(NativeOperatingSystem, OpensAsTheFlagsSay) {
  constexpr int kDumpFlags = kOpenReadWrite | kOpenCreate | kOpenTruncate;
  const struct {
    int flags;
    const char* text;
    bool succeeds;
    const char* content;
  } steps[] = {
      {kOpenWriteOnly, "none", false, ""},
      {kDumpFlags | kOpenExclusive, "first text", true, "first text"},
      {kDumpFlags | kOpenExclusive, "other", false, "first text"},
      {kOpenReadOnly, "other", false, "first text"},
      {kOpenReadWrite, "FIRST", true, "FIRST text"},
      {kOpenWriteOnly | kOpenAppend, "\r\n", true, "FIRST text\r\n"},
      {kDumpFlags, "x\n", true, "x\n"},
      {kDumpFlags | 0x3, "access of no meaning", false, "x\n"},
      {kDumpFlags | 0x8000, "unknown bit", false, "x\n"},
      {kOpenReadOnly | kOpenTruncate, "truncated unwritten", false, "x\n"},
      {kOpenWriteOnly | kOpenExclusive, "exclusive uncreated", false, "x\n"},
  };
  const testing::TemporaryDirectory directory;
  for (const auto& step : steps) {
    EXPECT_EQ(write(directory.path("file"), step.flags, step.text), step.succeeds) << step.text;
    EXPECT_EQ(directory.read("file"), step.content) << step.text;
  }
}

TEST(NativeOperatingSystem, ListsNamesInAnyScriptAndGivesFilesOtherNames) {
  OperatingSystem& system = OperatingSystem::current();
  const testing::TemporaryDirectory directory;
  const string name = "d\u00E9p\u00F4t \u8CC7\u6599 \U0001F4E6", path = directory.write(name), renamed = path + "2";
  std::filesystem::create_directory(testing::utf8Path(directory.path("folder")));
  std::set<std::pair<string, bool>> found;
  const auto stream = system.opendir(directory.path().c_str());
  for (DirectoryEntry entry; stream->readdir(entry) == 1;) found.emplace(entry.name, entry.regularFile);
  EXPECT_EQ(found, (std::set<std::pair<string, bool>>{{".", false}, {"..", false}, {name, true}, {"folder", false}}));

  const std::chrono::sys_seconds modified(std::chrono::seconds(1'100'000'000));
  std::filesystem::last_write_time(testing::utf8Path(path), std::chrono::file_clock::from_sys(modified));
  FileTimes times;
  EXPECT_EQ(system.rename(path.c_str(), renamed.c_str()), 0);
  EXPECT_EQ(system._stat64(renamed.c_str(), times), 0);
  EXPECT_EQ(times.modified, 1'100'000'000);
  EXPECT_EQ(system.remove(renamed.c_str()), 0);
  EXPECT_FALSE(directory.has(name) || directory.has(name + "2"));
}

TEST(WindowsFileKind, TakesNamesThatStandForOthersForNoFiles) {
  // Attributes, reparse tag, whether it is a regular file.
  const std::tuple<std::uint32_t, std::uint32_t, bool> rows[] = {
      {0x20, 0xA000000C, true},    // a tag without the attribute is ignored
      {0x10, 0, false},            // directory
      {0x40, 0, false},            // device
      {0x420, 0x80000013, true},   // deduplicated
      {0x420, 0x9000701A, true},   // in a cloud folder
      {0x410, 0x9000701A, false},  // the cloud folder
      {0x420, 0xA000000C, false},  // symbolic link
      {0x410, 0xA0000003, false},  // mount point
  };
  for (const auto& [attributes, tag, regular] : rows) {
    EXPECT_EQ(isRegularFile(attributes, tag), regular) << std::hex << attributes << ' ' << tag;
  }
}

}  // namespace
}  // namespace kdx::os
