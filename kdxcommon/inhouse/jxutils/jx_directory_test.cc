#include "kdxcommon/inhouse/jxutils/jx_directory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "kdxcommon/os/operating_system_wrapper.h"

namespace kdx {
namespace {

using ::testing::ElementsAre;

// Reading its directory gives four entries and then `last`; null paths don't open.
struct FakeDisk : OperatingSystemWrapper {
  struct Stream : DirectoryStream {
    explicit Stream(int afterwards) : last(afterwards) {}
    int readdir(DirectoryEntry& entry) override {
      static constexpr DirectoryEntry kEntries[] = {{"D_3", false}, {"D_2", true}, {"E_1", true}, {"D_1", true}};
      if (reads == std::size(kEntries)) return last;
      entry = kEntries[reads++];
      return 1;
    }
    std::size_t reads = 0;
    int last;
  };
  std::unique_ptr<DirectoryStream> opendir(const char* path) override {
    return path ? std::make_unique<Stream>(last) : nullptr;
  }
  std::uint32_t GetLastError() override { return error; }

  int last = 0;
  std::uint32_t error = 5;
};

// The names that match, and behind them the error code that the listing ended with.
std::vector<string> list(const char* path, const char* pattern, bool filesOnly) {
  std::vector<string> result;
  CJxDirectory directory;
  CJxError error = directory.Open(path, pattern, filesOnly);
  SJxDirEntry entry;
  for (bool end = false; !error.IsErrorSet();) {
    entry.name = "untouched";
    error = directory.GetEntry(&entry, end);
    EXPECT_EQ(entry.name == "untouched", end || error.IsErrorSet());
    if (end) break;
    if (!error.IsErrorSet()) result.emplace_back(entry.name);
  }
  result.push_back(std::to_string(error.GetErrorCode()));
  return result;
}

TEST(JxDirectoryTest, ListsWhatMatchesUntilTheEndOrAFailure) {
  FakeDisk disk;
  const ScopedOperatingSystem scope(disk);
  EXPECT_THAT(list("any", "D_*", true), ElementsAre("D_2", "D_1", "0"));
  EXPECT_THAT(list("any", "D_*", false), ElementsAre("D_3", "D_2", "D_1", "0"));
  EXPECT_THAT(list("any", nullptr, true), ElementsAre("0"));
  EXPECT_THAT(list(nullptr, "*", true), ElementsAre("5"));
  disk.last = -1;
  EXPECT_THAT(list("any", "D_*", true), ElementsAre("D_2", "D_1", "5"));
  disk.error = 0;
  EXPECT_THAT(list("any", "D_*", true), ElementsAre("D_2", "D_1", std::to_string(CJxError::kNoSystemCode)));
  EXPECT_TRUE(CJxDirectory().Close().IsErrorSet());
}

}  // namespace
}  // namespace kdx
