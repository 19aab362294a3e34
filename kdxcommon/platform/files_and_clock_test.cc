#include "kdxcommon/platform/files_and_clock.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>
#include <tuple>
#include <utility>

#include "kdxcommon/inhouse/zqlib/last_error.h"
#include "kdxcommon/os/operating_system_wrapper.h"
#include "kdxcommon/testing/fake_zone.h"
#include "kdxcommon/testing/temporary_directory.h"

namespace kdx {
namespace {

/// Takes and gives (the letter x) five bytes at a time, and fails behind 13 bytes.
struct ReluctantFile : os::FileStream {
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

struct ReluctantDisk : os::OperatingSystemWrapper {
  int _stat64i32(const char*, std::int32_t& size) override { return size = 0; }
  std::unique_ptr<os::FileStream> fopen(const char*, const char*) override {
    return std::make_unique<ReluctantFile>(bytes);
  }

  string bytes;
  const os::ScopedOperatingSystem scope{*this};
};

TEST(WholeFiles, GoOnUntilAllIsDoneOrItFails) {
  ReluctantDisk disk;
  string contents = "before ";
  int errors[] = {7, 7, 7};
  EXPECT_TRUE(platformWriteEntireFileContent("name", string("1234567\0009\n12", 12), errors[0]));
  EXPECT_FALSE(platformWriteEntireFileContent("name", "abcd", errors[1]));
  EXPECT_EQ(std::exchange(disk.bytes, ""), string("1234567\0009\n12a", 13));
  EXPECT_FALSE(platformReadEntireFileContents("name", contents, errors[2]));
  EXPECT_EQ(contents, "before xxxxxxxxxxxxx");
  EXPECT_THAT(errors, ::testing::ElementsAre(7, 32, 32));
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

TEST(WholeFiles, AreNotReadWhereThereIsNoMemory) {
  struct FullMemory : ReluctantDisk {
    std::unique_ptr<os::FileStream> fopen(const char*, const char*) override { throw std::bad_alloc(); }
  } machine;
  string contents = "before";
  int error = 7;
  EXPECT_FALSE(platformReadEntireFileContents("name", contents, error));
  EXPECT_EQ(contents + std::to_string(error), "before7");
}

/// Five hours west of Greenwich.
struct NamedZone : testing::FakeZone {
  NamedZone(std::uint32_t inForce, int refused) : FakeZone(300, inForce), refusedName(refused) {}
  std::uint32_t GetLastError() override { return 1459; }
  void _tzset() override { looked = true; }
  int _get_tzname(char* buffer, std::size_t, int index) override {
    std::strcpy(buffer, index == 0 ? "EST" : "");
    return index == refusedName || !looked ? 22 : 0;
  }

  const int refusedName;
  bool looked = false;
};

auto fields(const TimeZone_t& zone) {
  return std::tie(zone.standardName, zone.daylightName, zone.biasSeconds, zone.daylightActive,
                  zone.daylightBiasSeconds);
}

TEST(Zones, AreGivenInSecondsAndWhatCannotBeReadTouchesNothing) {
  // What is in force, the name that can't be had, the zone.
  const std::tuple<std::uint32_t, int, TimeZone_t> rows[] = {
      {os::kTimeZoneIdStandard, -1, {"EST", "", 18000, false, 0}},
      {os::kTimeZoneIdDaylight, -1, {"EST", "", 18000, true, -3600}},
      {os::kTimeZoneIdUnknown, 0, {"A", "B", 18000, false, 0}},
      {os::kTimeZoneIdUnknown, 1, {"A", "B", 18000, false, 0}},
      {os::kTimeZoneIdInvalid, -1, {"A", "B", 1, true, 2}}};
  for (const auto& [inForce, refusedName, expected] : rows) {
    NamedZone system(inForce, refusedName);
    const bool readable = inForce != os::kTimeZoneIdInvalid;
    TimeZone_t zone{"A", "B", 1, true, 2};
    ZQLastError lastError;
    EXPECT_TRUE(platformGetTimeZone(zone, nullptr) == readable && platformGetTimeZone(zone, &lastError) == readable);
    EXPECT_EQ(lastError.number(), readable ? 0 : 1459u);
    EXPECT_EQ(lastError.isCritical(), !readable);
    EXPECT_EQ(fields(zone), fields(expected));
    EXPECT_EQ(platformTimezone(), -18000);
  }
}

}  // namespace
}  // namespace kdx
