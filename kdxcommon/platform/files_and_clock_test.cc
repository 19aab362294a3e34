#include "kdxcommon/platform/files_and_clock.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <tuple>

#include "kdxcommon/inhouse/zqlib/last_error.h"
#include "kdxcommon/os/operating_system_wrapper.h"
#include "kdxcommon/testing/temporary_directory.h"

namespace kdx {
namespace {

/// Takes and gives (the letter x) five bytes at a time, and fails behind 13 bytes.
struct ReluctantFile : FileStream {
  explicit ReluctantFile(string& bytes) : disk(bytes) {}
  std::size_t fread(void* data, std::size_t count) override {
    std::memset(data, 'x', std::min(count, std::size_t{5}));
    return fwrite(data, count);
  }
  std::size_t fwrite(const void* data, std::size_t count) override {
    count = std::min({count, std::size_t{5}, 13 - disk.size()});
    disk.append(static_cast<const char*>(data), count);
    return count;
  }
  int feof() override { return 0; }
  int ferror() override { return disk.size() == 13 ? 32 : 0; }

  string& disk;
};

/// A zone five hours west of Greenwich, and a reluctant file.
struct FilesAndClock : ::testing::Test, OperatingSystemWrapper {
  std::uint32_t GetLastError() override { return 1459; }
  std::uint32_t GetTimeZoneInformation(TIME_ZONE_INFORMATION& zone) override {
    zone.Bias = 300;
    zone.DaylightBias = -30;
    return zoneId;
  }
  void _tzset() override { zoneRead = true; }
  int _get_tzname(char* buffer, std::size_t, int index) override {
    std::strcpy(buffer, index == 0 ? "EST" : "");
    return index == refusedName || !zoneRead ? 22 : 0;
  }
  int _stat64i32(const char*, std::int32_t& size) override { return size = 0; }
  std::unique_ptr<FileStream> fopen(const char*, const char*) override { return std::make_unique<ReluctantFile>(disk); }

  std::uint32_t zoneId = 0;
  int refusedName = -1, error = 7;
  bool zoneRead = false;
  string disk;
  const ScopedOperatingSystem scope{*this};
};

TEST_F(FilesAndClock, WritesGoOnUntilAllIsWrittenOrOneFails) {
  EXPECT_TRUE(platformWriteEntireFileContent("name", string("1234567\0009\n12", 12), error));
  EXPECT_EQ(error, 7);
  EXPECT_FALSE(platformWriteEntireFileContent("name", "abcd", error));
  EXPECT_EQ(error, 32);
  EXPECT_EQ(disk, string("1234567\0009\n12a", 13));
}

TEST_F(FilesAndClock, ReadsKeepTheChunksAheadOfAFailure) {
  string contents = "before ";
  EXPECT_FALSE(platformReadEntireFileContents("name", contents, error));
  EXPECT_EQ(error, 32);
  EXPECT_EQ(contents, "before xxxxxxxxxxxxx");
}

auto fields(const TimeZone_t& zone) {
  return std::tie(zone.standardName, zone.daylightName, zone.biasSeconds, zone.daylightActive,
                  zone.daylightBiasSeconds);
}

TEST_F(FilesAndClock, ZonesAreGivenInSecondsAndWhatCannotBeReadTouchesNothing) {
  // The system's answer, the name that it refuses, the zone.
  const std::tuple<std::uint32_t, int, TimeZone_t> rows[] = {{kTimeZoneIdStandard, -1, {"EST", "", 18000, false, 0}},
                                                             {kTimeZoneIdDaylight, -1, {"EST", "", 18000, true, -1800}},
                                                             {kTimeZoneIdUnknown, 0, {"A", "B", 18000, false, 0}},
                                                             {kTimeZoneIdUnknown, 1, {"A", "B", 18000, false, 0}},
                                                             {kTimeZoneIdInvalid, -1, {"A", "B", 1, true, 2}}};
  for (const auto& [id, refused, expected] : rows) {
    zoneId = id;
    refusedName = refused;
    TimeZone_t zone{"A", "B", 1, true, 2};
    ZQLastError lastError;
    for (ZQLastError* reason : {&lastError, static_cast<ZQLastError*>(nullptr)}) {
      EXPECT_EQ(platformGetTimeZone(zone, reason), id != kTimeZoneIdInvalid);
    }
    EXPECT_EQ(lastError.number(), id == kTimeZoneIdInvalid ? 1459u : 0);
    EXPECT_EQ(lastError.isCritical(), id == kTimeZoneIdInvalid);
    EXPECT_EQ(fields(zone), fields(expected));
    EXPECT_EQ(platformTimezone(), -18000);
  }
}

TEST(WholeFiles, ComeBackBehindWhatIsThereWithoutTheRestOfAChunkBehindANul) {
  const testing::TemporaryDirectory directory;
  const string path = directory.path("file");
  int error = 7;
  // Size; where a NUL stands, if at all; the bytes that come back.
  const std::size_t rows[][3] = {
      {0, 0, 0}, {32768, 32768, 32768}, {20, 10, 10}, {100000, 100000, 100000}, {100000, 32868, 100000 - 32768 + 100}};
  for (const auto& [size, nul, kept] : rows) {
    string text(size, 'x'), contents = "before ";
    if (nul < size) text[nul] = '\0';
    EXPECT_TRUE(platformWriteEntireFileContent(path, text, error));
    EXPECT_EQ(directory.read("file"), text);
    EXPECT_TRUE(platformReadEntireFileContents(path, contents, error));
    EXPECT_EQ(contents, "before " + string(kept, 'x'));
  }
}

}  // namespace
}  // namespace kdx
