#include "kdxcommon/platform/files_and_clock.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <memory>
#include <string>
#include <utility>

#include "kdxcommon/inhouse/zqlib/last_error.h"
#include "kdxcommon/os/operating_system_wrapper.h"
#include "kdxcommon/testing/temporary_directory.h"
#include "kdxcommon/testing/wide_text.h"

namespace kdx {
namespace {

using ::testing::_;
using ::testing::DoAll;
using ::testing::Return;
using ::testing::SetArgPointee;
using ::testing::SetArgReferee;

struct MockSystem : OperatingSystemWrapper {
  MOCK_METHOD(std::uint32_t, GetLastError, (), (override));
  MOCK_METHOD(std::uint32_t, FormatMessageA,
              (std::uint32_t, const void*, std::uint32_t, std::uint32_t, char**, std::uint32_t), (override));
  MOCK_METHOD(void, LocalFree, (void*), (override));
  MOCK_METHOD(std::int64_t, _time64, (std::int64_t*), (override));
  MOCK_METHOD(int, _waccess, (const wchar*, int), (override));
  MOCK_METHOD(std::unique_ptr<FileStream>, fopen, (const char*, const char*), (override));
  MOCK_METHOD(int, _stat64i32, (const char*, std::int32_t&), (override));
  MOCK_METHOD(std::uint32_t, GetTimeZoneInformation, (TIME_ZONE_INFORMATION&), (override));
  MOCK_METHOD(void, _tzset, (), (override));
  MOCK_METHOD(int, _get_tzname, (char*, std::size_t, int), (override));
};

struct FilesAndClock : ::testing::Test {
  ::testing::NiceMock<MockSystem> system;
  ScopedOperatingSystem scope{system};
  ZQLastError lastError;
};

TEST_F(FilesAndClock, AccessIsTestedAndItsErrorTranslated) {
  const wstring path = testing::wide(u"/d\u00E9p\u00F4t");
  const std::pair<std::uint32_t, std::uint32_t> kErrors[] = {{2, 0x56000004}, {3, 3}, {13, 13}, {5, 5}};
  for (const auto& [reason, number] : kErrors) {
    EXPECT_CALL(system, _waccess(_, 6)).Times(2).WillRepeatedly([&path](const wchar* asked, int) {
      EXPECT_EQ(asked, path);
      return -1;
    });
    EXPECT_CALL(system, GetLastError()).WillRepeatedly(Return(reason));
    EXPECT_FALSE(platformAccessW(path, 6, nullptr));
    EXPECT_FALSE(platformAccessW(path, 6, &lastError));
    EXPECT_TRUE(lastError.isCritical());
    EXPECT_EQ(lastError.number(), number);
  }
  EXPECT_CALL(system, _waccess).Times(0);
  EXPECT_FALSE(platformAccessW({}, 0, nullptr));
  EXPECT_FALSE(platformAccessW({}, 0, &lastError));
  EXPECT_EQ(lastError.number(), 0x56000002);

  EXPECT_CALL(system, _waccess(_, 77)).WillOnce(Return(0));
  lastError.clear();
  EXPECT_TRUE(platformAccessW(path, 77, &lastError));
  EXPECT_EQ(lastError.number(), 0u);
}

TEST_F(FilesAndClock, ErrorTextsAreTakenAsTheyCome) {
  string message = "before";
  EXPECT_CALL(system, FormatMessageA(0x1300, nullptr, 5, 0, _, 0)).WillOnce(Return(0));
  EXPECT_FALSE(winGetOSErrorMessage(5, message));
  EXPECT_EQ(message, "before");

  char text[] = "Access is denied: %1.\r\n";
  EXPECT_CALL(system, FormatMessageA(0x1300, nullptr, 5, 0, _, 0)).WillOnce(DoAll(SetArgPointee<4>(text), Return(24)));
  EXPECT_CALL(system, LocalFree(text)).Times(1);
  EXPECT_TRUE(winGetOSErrorMessage(5, message));
  EXPECT_EQ(message, text);

  EXPECT_CALL(system, FormatMessageA).WillOnce(Return(1));
  EXPECT_TRUE(winGetOSErrorMessage(5, message));
  EXPECT_EQ(message, "");
  EXPECT_CALL(system, GetLastError()).WillOnce(Return(1234));
  EXPECT_EQ(platformGetLastError(), 1234u);
}

/// A file in memory that passes on a few bytes at a time and fails behind `limit` bytes.
struct ReluctantFile : FileStream {
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
  int ferror() override { return (position == limit || text.size() == limit) ? 32 : 0; }

  explicit ReluctantFile(string& shared) : text(shared) {}
  string& text;
  std::size_t position = 0;
  std::size_t limit = std::numeric_limits<std::size_t>::max();
};

TEST_F(FilesAndClock, WritesGoOnUntilAllIsWrittenOrOneFails) {
  string disk;
  int error = 7;
  EXPECT_CALL(system, fopen(::testing::StrEq("name"), ::testing::StrEq("w")))
      .WillOnce([&](auto...) { return std::make_unique<ReluctantFile>(disk); })
      .WillOnce([&](auto...) {
        auto file = std::make_unique<ReluctantFile>(disk);
        file->limit = 12;
        return file;
      })
      .WillOnce([](auto...) { return nullptr; });
  EXPECT_TRUE(platformWriteEntireFileContent("name", string("1234567\0009\n12", 12), error));
  EXPECT_EQ(disk, string("1234567\0009\n12", 12));
  EXPECT_EQ(error, 7);
  disk.clear();
  EXPECT_FALSE(platformWriteEntireFileContent("name", "1234567890abcdef", error));
  EXPECT_EQ(disk, "1234567890ab");
  EXPECT_EQ(error, 32);
  EXPECT_FALSE(platformWriteEntireFileContent("name", "text", error = 7));
  EXPECT_EQ(error, 7);
}

TEST_F(FilesAndClock, ReadsKeepTheChunksAheadOfAFailure) {
  string disk(100000, 'x'), contents = "before ";
  int error = 7;
  EXPECT_CALL(system, _stat64i32).WillOnce(Return(-1)).WillRepeatedly(DoAll(SetArgReferee<1>(100000), Return(0)));
  EXPECT_CALL(system, fopen(_, ::testing::StrEq("rb")))
      .WillOnce([](auto...) { return nullptr; })
      .WillOnce([&](auto...) {
        auto file = std::make_unique<ReluctantFile>(disk);
        file->limit = 40000;
        return file;
      });
  EXPECT_FALSE(platformReadEntireFileContents("missing", contents, error));
  EXPECT_FALSE(platformReadEntireFileContents("locked", contents, error));
  EXPECT_EQ(contents, "before ");
  EXPECT_EQ(error, 7);
  EXPECT_FALSE(platformReadEntireFileContents("torn", contents, error));
  EXPECT_EQ(contents, "before " + string(40000, 'x'));
  EXPECT_EQ(error, 32);
}

TEST(WholeFiles, ComeBackBehindWhatIsThere) {
  const testing::TemporaryDirectory directory;
  const string path = directory.path("file");
  int error = 7;
  for (const std::size_t size : {0u, 1u, 4096u, 32767u, 32768u, 32769u, 65536u, 100000u}) {
    string text(size, '\0');
    for (std::size_t i = 0; i < size; ++i) text[i] = static_cast<char>('a' + i % 23);
    string contents = "before ";
    EXPECT_TRUE(platformWriteEntireFileContent(path, text, error));
    EXPECT_TRUE(platformReadEntireFileContents(path, contents, error));
    EXPECT_EQ(contents, "before " + text);
  }
  EXPECT_EQ(error, 7);
}

TEST(WholeFiles, ANulByteDropsTheRestOfItsChunk) {
  const testing::TemporaryDirectory directory;
  int error = 7;
  string small(20, 's'), large(70000, 'l');
  small[10] = '\0';
  large[100] = '\0';
  large[32768] = '\0';
  const std::pair<string, std::size_t> kFiles[] = {{small, 10}, {large, 100 + 0 + 70000 - 2 * 32768}};
  for (const auto& [text, length] : kFiles) {
    string contents;
    EXPECT_TRUE(platformReadEntireFileContents(directory.write("file", text), contents, error));
    EXPECT_EQ(contents, string(length, text[0]));
    EXPECT_TRUE(platformWriteEntireFileContent(directory.path("copy"), text, error));
    EXPECT_EQ(directory.read("copy"), text);
  }
}

TEST_F(FilesAndClock, TimeIsTheSystems) {
  EXPECT_CALL(system, _time64).WillRepeatedly([](std::int64_t* seconds) {
    if (seconds) *seconds = 5'000'000'000;
    return 5'000'000'000;
  });
  std::int64_t seconds = 0;
  EXPECT_EQ(platformTime(nullptr), 5'000'000'000);
  EXPECT_EQ(platformTime(&seconds), 5'000'000'000);
  EXPECT_EQ(seconds, 5'000'000'000);
}

TEST_F(FilesAndClock, ZonesAreGivenInSeconds) {
  EXPECT_CALL(system, _get_tzname(_, 250, _)).WillRepeatedly([](char* buffer, std::size_t, int index) {
    std::strcpy(buffer, index == 0 ? "EST" : "");
    return 0;
  });
  const struct {
    std::int32_t bias, daylightBias;
    std::uint32_t id;
    bool active;
    std::int32_t seconds, daylightSeconds;
  } kRows[] = {
      {300, -60, 2, true, 18000, -3600}, {300, -60, 1, false, 18000, 0}, {-630, -30, 2, true, -37800, -1800},
      {-330, 0, 0, false, -19800, 0},    {0, -60, 0, false, 0, 0},
  };
  for (const auto& row : kRows) {
    TIME_ZONE_INFORMATION answer;
    answer.Bias = row.bias;
    answer.StandardBias = 99;
    answer.DaylightBias = row.daylightBias;
    EXPECT_CALL(system, GetTimeZoneInformation).WillRepeatedly(DoAll(SetArgReferee<0>(answer), Return(row.id)));
    EXPECT_CALL(system, _tzset()).Times(1);
    TimeZone_t zone;
    zone.daylightName = "before";
    EXPECT_TRUE(platformGetTimeZone(zone, &lastError));
    EXPECT_EQ(zone.biasSeconds, row.seconds);
    EXPECT_EQ(zone.daylightActive, row.active);
    EXPECT_EQ(zone.daylightBiasSeconds, row.daylightSeconds);
    EXPECT_EQ(zone.standardName, "EST");
    EXPECT_EQ(zone.daylightName, "");
    EXPECT_EQ(platformTimezone(), -row.seconds);
  }
  EXPECT_EQ(lastError.number(), 0u);
}

TEST_F(FilesAndClock, AZoneThatCannotBeReadTouchesNothing) {
  EXPECT_CALL(system, GetTimeZoneInformation).WillRepeatedly(Return(0xFFFFFFFF));
  EXPECT_CALL(system, GetLastError()).WillRepeatedly(Return(1459));
  TimeZone_t zone{.standardName = "A", .daylightName = "B", .biasSeconds = 1, .daylightActive = true};
  EXPECT_FALSE(platformGetTimeZone(zone, nullptr));
  EXPECT_FALSE(platformGetTimeZone(zone, &lastError));
  EXPECT_TRUE(lastError.isCritical());
  EXPECT_EQ(lastError.number(), 1459u);
  EXPECT_EQ(zone.standardName + zone.daylightName, "AB");
  EXPECT_EQ(zone.biasSeconds, 1);
  EXPECT_TRUE(zone.daylightActive);
}

TEST_F(FilesAndClock, NamesStayWhenEitherIsRefused) {
  for (const int refused : {0, 1}) {
    EXPECT_CALL(system, _get_tzname).WillRepeatedly([refused](char* buffer, std::size_t, int index) {
      if (index == refused) return 22;
      std::strcpy(buffer, "new");
      return 0;
    });
    string standardName = "A", daylightName = "B";
    platformTZName(standardName, daylightName);
    EXPECT_EQ(standardName + daylightName, "AB");
    TimeZone_t zone;
    EXPECT_CALL(system, GetTimeZoneInformation).WillOnce(Return(1));
    EXPECT_TRUE(platformGetTimeZone(zone, nullptr));
  }
}

}  // namespace
}  // namespace kdx
