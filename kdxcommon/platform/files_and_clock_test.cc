#include "kdxcommon/platform/files_and_clock.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <tuple>
#include <utility>

#include "kdxcommon/inhouse/zqlib/last_error.h"
#include "kdxcommon/os/operating_system_wrapper.h"
#include "kdxcommon/testing/temporary_directory.h"

namespace kdx {
namespace {

/// A file in memory that takes five bytes at a time and fails behind `limit` bytes.
struct ReluctantFile : FileStream {
  ReluctantFile(string& shared, std::size_t bytes) : text(shared), limit(bytes) {}
  std::size_t fread(void* data, std::size_t count) override {
    count = std::min({count, text.size() - position, limit - position});
    std::memcpy(data, text.data() + position, count);
    position += count;
    return count;
  }
  std::size_t fwrite(const void* data, std::size_t count) override {
    count = std::min({count, std::size_t{5}, limit - text.size()});
    text.append(static_cast<const char*>(data), count);
    return count;
  }
  int feof() override { return position == text.size(); }
  int ferror() override { return position == limit || text.size() == limit ? 32 : 0; }

  string& text;
  std::size_t position = 0, limit;
};

/// Answers as its fields say.
struct FakeSystem : OperatingSystemWrapper {
  std::uint32_t GetLastError() override { return lastError; }
  std::uint32_t FormatMessageA(std::uint32_t flags, const void*, std::uint32_t, std::uint32_t, char** buffer,
                               std::uint32_t) override {
    EXPECT_EQ(flags, 0x1300u);
    *buffer = text;
    return length;
  }
  void LocalFree(void* memory) override { released += memory == text; }
  int _waccess(const wchar*, int mode) override { return mode == 77 ? 0 : -1; }
  std::int64_t _time64(std::int64_t* seconds) override { return seconds ? *seconds = 5'000'000'000 : 5'000'000'000; }
  std::uint32_t GetTimeZoneInformation(TIME_ZONE_INFORMATION& answer) override {
    if (zoneId != kTimeZoneIdInvalid) answer = zone;
    return zoneId;
  }
  void _tzset() override { ++zonesRead; }
  int _get_tzname(char* buffer, std::size_t size, int index) override {
    EXPECT_GT(zonesRead, 0);
    if (index == refusedName) return 22;
    EXPECT_EQ(size, 250u);
    std::strcpy(buffer, index == 0 ? "EST" : "");
    return 0;
  }
  int _stat64i32(const char*, std::int32_t& size) override {
    size = static_cast<std::int32_t>(disk.size());
    return 0;
  }
  std::unique_ptr<FileStream> fopen(const char* path, const char* mode) override {
    modes += mode;
    return *path ? std::make_unique<ReluctantFile>(disk, limit) : nullptr;
  }

  std::uint32_t lastError = 0, length = 0, zoneId = 0;
  char* text = nullptr;
  int released = 0, refusedName = -1, zonesRead = 0;
  TIME_ZONE_INFORMATION zone;
  string disk, modes;
  std::size_t limit = 0;
};

struct FilesAndClock : ::testing::Test {
  FakeSystem system;
  ScopedOperatingSystem scope{system};
  ZQLastError lastError;
  int error = 7;
};

TEST_F(FilesAndClock, AccessTranslatesTheErrorOfAMissingFileAlone) {
  const wstring path(3, wchar{'p'});
  for (const auto& [reason, number] : {std::pair(2u, 0x56000004u), {3u, 3u}, {13u, 13u}}) {
    system.lastError = reason;
    EXPECT_FALSE(platformAccessW(path, 4, nullptr));
    EXPECT_FALSE(platformAccessW(path, 4, &lastError));
    EXPECT_TRUE(lastError.isCritical());
    EXPECT_EQ(lastError.number(), number);
  }
  EXPECT_FALSE(platformAccessW({}, 77, nullptr));
  EXPECT_FALSE(platformAccessW({}, 77, &lastError));
  EXPECT_EQ(lastError.number(), 0x56000002);
  EXPECT_TRUE(platformAccessW(path, 77, &lastError));
}

TEST_F(FilesAndClock, ErrorTextsAreTakenAsTheyCome) {
  char text[] = "Access is denied: %1.\r\n";
  string message = "before";
  EXPECT_FALSE(winGetOSErrorMessage(5, message));
  EXPECT_EQ(message, "before");
  system.length = 24;
  system.text = text;
  EXPECT_TRUE(winGetOSErrorMessage(5, message));
  EXPECT_EQ(message, text);
  EXPECT_EQ(system.released, 1);
}

TEST_F(FilesAndClock, WritesGoOnUntilAllIsWrittenOrOneFails) {
  system.limit = 13;
  EXPECT_TRUE(platformWriteEntireFileContent("name", string("1234567\0009\n12", 12), error));
  EXPECT_EQ(system.disk, string("1234567\0009\n12", 12));
  EXPECT_FALSE(platformWriteEntireFileContent("", "text", error));
  EXPECT_EQ(error, 7);
  EXPECT_FALSE(platformWriteEntireFileContent("name", "abcd", error));
  EXPECT_EQ(system.disk, string("1234567\0009\n12a", 13));
  EXPECT_EQ(error, 32);
  EXPECT_EQ(system.modes, "www");
}

TEST_F(FilesAndClock, ReadsKeepTheChunksAheadOfAFailure) {
  string contents = "before ";
  system.disk.assign(100000, 'x');
  EXPECT_FALSE(platformReadEntireFileContents("", contents, error));
  EXPECT_EQ(contents, "before ");
  EXPECT_EQ(error, 7);
  system.limit = 40000;
  EXPECT_FALSE(platformReadEntireFileContents("torn", contents, error));
  EXPECT_EQ(contents, "before " + string(40000, 'x'));
  EXPECT_EQ(error, 32);
  EXPECT_EQ(system.modes, "rbrb");
}

TEST_F(FilesAndClock, ZonesAreGivenInSeconds) {
  const std::int32_t kRows[][5] = {
      {300, -60, 2, 18000, -3600}, {300, -60, 1, 18000, 0}, {-630, -30, 2, -37800, -1800}, {-330, -60, 0, -19800, 0}};
  for (const auto& [bias, daylightBias, id, seconds, daylightSeconds] : kRows) {
    system.zone.Bias = bias;
    system.zone.DaylightBias = daylightBias;
    system.zoneId = static_cast<std::uint32_t>(id);
    TimeZone_t zone;
    zone.daylightName = "before";
    EXPECT_TRUE(platformGetTimeZone(zone, &lastError));
    EXPECT_EQ(zone.biasSeconds, seconds);
    EXPECT_EQ(zone.daylightActive, id == 2);
    EXPECT_EQ(zone.daylightBiasSeconds, daylightSeconds);
    EXPECT_EQ(zone.standardName + ',' + zone.daylightName, "EST,");
    EXPECT_EQ(platformTimezone(), -seconds);
  }
  std::int64_t now = 0;
  EXPECT_EQ(platformTime(nullptr), platformTime(&now));
  EXPECT_EQ(now, 5'000'000'000);
}

TEST_F(FilesAndClock, WhatCannotBeReadTouchesNothing) {
  TimeZone_t zone{"A", "B", 1, true, 2};
  for (const int refused : {0, 1}) {
    system.refusedName = refused;
    platformTZName(zone.standardName, zone.daylightName);
  }
  TimeZone_t withoutNames;
  EXPECT_TRUE(platformGetTimeZone(withoutNames, nullptr) && withoutNames.standardName.empty());
  system.zoneId = kTimeZoneIdInvalid;
  system.lastError = 1459;
  EXPECT_FALSE(platformGetTimeZone(zone, nullptr));
  EXPECT_FALSE(platformGetTimeZone(zone, &lastError));
  EXPECT_TRUE(lastError.isCritical());
  EXPECT_EQ(lastError.number(), 1459u);
  EXPECT_EQ(zone.standardName + zone.daylightName, "AB");
  EXPECT_EQ(zone.biasSeconds, 1);
  EXPECT_TRUE(zone.daylightActive);
}

TEST(WholeFiles, ComeBackBehindWhatIsThereWithoutTheRestOfAChunkBehindANul) {
  const testing::TemporaryDirectory directory;
  const string path = directory.path("file");
  int error = 7;
  // Size; where a NUL stands, if at all; the bytes that come back.
  for (const auto& [size, nul, kept] : {std::tuple(0u, 0u, 0u),
                                        {1u, 1u, 1u},
                                        {32767u, 32767u, 32767u},
                                        {32768u, 32768u, 32768u},
                                        {32769u, 32769u, 32769u},
                                        {100000u, 100000u, 100000u},
                                        {20u, 10u, 10u},
                                        {70000u, 32868u, 70000u - 32768u + 100u}}) {
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
