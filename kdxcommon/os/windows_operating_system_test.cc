// Compares each operation with direct calls of the system.

#include "kdxcommon/os/windows_operating_system.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <io.h>
#include <time.h>
#include <windows.h>

#include <cerrno>
#include <cstdlib>
#include <functional>
#include <random>
#include <thread>

#include "kdxcommon/testing/temporary_directory.h"

namespace kdx::os {
namespace {

constexpr int kDumpFlags = kOpenReadWrite | kOpenCreate | kOpenTruncate;

struct WindowsOperatingSystemTest : ::testing::Test {
  bool write(const string& path, int flags = kDumpFlags, int mode = kModeWrite) {
    const int file = system._open(path.c_str(), flags, mode);
    if (file == -1) return false;
    const bool written = system._write(file, "text", 4) == 4;
    return system._close(file) == 0 && written;
  }

  WindowsOperatingSystem system;
  testing::TemporaryDirectory directory;
};

TEST_F(WindowsOperatingSystemTest, FailuresLeaveTheReasonAndTouchNothing) {
  const string folder = directory.path(), file = directory.write("file", "kept"), other = directory.write("other");
  const string missing = directory.path("no/file"), unset = directory.path("none"), locked = directory.path("locked");
  EXPECT_TRUE(write(locked, kDumpFlags, 0));
  std::filesystem::resize_file(directory.write("huge"), std::uintmax_t{1} << 31);
  const auto reachable = [&](const string& path, int mode) {
    return system._waccess(testing::utf8Path(path).c_str(), mode) == 0;
  };
  FileTimes times{1, 2, 3};
  std::int32_t size = 5;
  char* text = nullptr;
  utsname names;
  OSVERSIONINFOEXA version{.dwOSVersionInfoSize = 100, .dwMajorVersion = 77};
  MEMORYSTATUSEX memory{.dwLength = 63, .ullTotalPhys = 5};
  const std::pair<std::function<bool()>, DWORD> cases[] = {
      {[&] { return write(unset, kOpenWriteOnly); }, ERROR_FILE_NOT_FOUND},
      {[&] { return write(missing); }, ERROR_PATH_NOT_FOUND},
      {[&] { return write(folder); }, ERROR_ACCESS_DENIED},
      {[&] { return write(file, kOpenReadOnly); }, ERROR_ACCESS_DENIED},
      {[&] { return write("NUL"); }, ERROR_CANT_ACCESS_FILE},
      {[&] { return write("\xFF"); }, ERROR_NO_UNICODE_TRANSLATION},
      {[&] { return system._write(1, nullptr, 1) != -1; }, ERROR_INVALID_PARAMETER},
      {[&] { return system._write(99, "x", 1) != -1; }, ERROR_INVALID_HANDLE},
      {[&] { return system._stat64(unset.c_str(), times) == 0; }, ERROR_FILE_NOT_FOUND},
      {[&] { return system._stat64i32(directory.path("huge").c_str(), size) == 0; }, ERROR_FILE_TOO_LARGE},
      {[&] { return reachable(locked, 2); }, ERROR_ACCESS_DENIED},
      {[&] { return system.fopen(missing.c_str(), "w") != nullptr; }, ERROR_PATH_NOT_FOUND},
      {[&] { return system.remove(folder.c_str()) == 0; }, ERROR_ACCESS_DENIED},
      {[&] { return system.rename(file.c_str(), other.c_str()) == 0; }, ERROR_ALREADY_EXISTS},
      {[&] { return system.rename(file.c_str(), nullptr) == 0; }, ERROR_INVALID_PARAMETER},
      {[&] { return system.opendir("") != nullptr; }, ERROR_PATH_NOT_FOUND},
      {[&] { return system.FormatMessageA(0x1300, nullptr, 0x56000002, 0, &text, 0) != 0; }, ERROR_MR_MID_NOT_FOUND},
      {[&] { return system.GetVersionExA(version); }, ERROR_INSUFFICIENT_BUFFER},
      {[&] { return system.GlobalMemoryStatusEx(memory); }, ERROR_INVALID_PARAMETER},
      {[&] { return system.gethostbyname(nullptr) != nullptr; }, WSAEFAULT},
      {[&] { return system.uname(names) == 0; }, ERROR_CALL_NOT_IMPLEMENTED},
      {[&] { return system.readOsRelease(names.release); }, ERROR_CALL_NOT_IMPLEMENTED},
      {[&] { return system.processorName(names.machine); }, ERROR_CALL_NOT_IMPLEMENTED},
  };
  for (const auto& [succeeds, error] : cases) {
    ::SetLastError(ERROR_FILE_NOT_FOUND);  // left by some earlier call
    EXPECT_FALSE(succeeds()) << &succeeds - &cases[0].first;
    EXPECT_EQ(system.GetLastError(), error) << &succeeds - &cases[0].first;
  }
  EXPECT_EQ(times.modified + 10 * times.accessed + 100 * times.attributes, 321);
  EXPECT_TRUE(size == 5 && !text && version.dwMajorVersion == 77 && memory.ullTotalPhys == 5);
  EXPECT_EQ(directory.read("file"), "kept");
  ::SetLastError(1234);
  EXPECT_TRUE(reachable(file, 6));
  EXPECT_EQ(::GetLastError(), 1234u);
  std::filesystem::permissions(locked, std::filesystem::perms::all);  // so that it can be removed
}

TEST_F(WindowsOperatingSystemTest, AppendsWhereverTheWriterMeansToWrite) {
  const string path = directory.write("log", "first ");
  const int file = system._open(path.c_str(), kOpenWriteOnly | kOpenAppend, kModeWrite);
  OVERLAPPED beginning{};
  DWORD written = 0;
  EXPECT_TRUE(::WriteFile(reinterpret_cast<HANDLE>(::_get_osfhandle(file)), "second", 6, &written, &beginning));
  EXPECT_EQ(system._close(file), 0);
  EXPECT_EQ(directory.read("log"), "first second");
}

TEST_F(WindowsOperatingSystemTest, ReportsToTheEventLog) {
  const auto log = system.openSystemLog("kdx\u00e9", nullptr);
  ASSERT_TRUE(log);
  EXPECT_EQ(log->report(kSeverityError, "\u8a9e"), 0);
  EXPECT_EQ(log->report(kSeverityDebug, "\xFF"), -1);
  EXPECT_EQ(system.GetLastError(), DWORD{ERROR_NO_UNICODE_TRANSLATION});
}

TEST_F(WindowsOperatingSystemTest, APathThatIsTooLongWorksOrIsRefusedWithAReason) {
  string deep = directory.path();
  while (deep.size() < 250) {
    deep += "\\twenty_letters_of_it";
    ASSERT_TRUE(::CreateDirectoryA(deep.c_str(), nullptr) || deep.size() > 247);
  }
  const string file = deep + "\\a name that leads beyond two hundred and sixty characters.txt";
  ::SetLastError(ERROR_SUCCESS);
  if (write(file)) {
    EXPECT_EQ(system.remove(file.c_str()), 0);
  } else {
    EXPECT_THAT(system.GetLastError(), ::testing::AnyOf(ERROR_PATH_NOT_FOUND, ERROR_FILENAME_EXCED_RANGE));
  }
}

TEST_F(WindowsOperatingSystemTest, AnswersWhatTheSystemAnswersDirectly) {
  char direct[512];
  char* text = nullptr;
  ::FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, ERROR_DISK_FULL, 0, direct,
                   sizeof direct, nullptr);
  EXPECT_EQ(system.FormatMessageA(0x1300, nullptr, ERROR_DISK_FULL, 0, &text, 0), std::string(direct).size());
  EXPECT_STREQ(text, direct);
  system.LocalFree(text);
  EXPECT_EQ(system.GetCurrentThreadId(), ::GetCurrentThreadId());

  FILETIME start;
  ::GetSystemTimeAsFileTime(&start);
  std::int64_t stored = 0;
  const std::int64_t seconds = system._time64(&stored);
  EXPECT_EQ(seconds, stored);
  const std::uint64_t now = system.GetSystemTimeAsFileTime();
  EXPECT_GE(now, std::uint64_t{start.dwHighDateTime} << 32 | start.dwLowDateTime);
  EXPECT_LE(std::abs(stored - static_cast<std::int64_t>(now / 10'000'000 - 11'644'473'600)), 1);

  ::TIME_ZONE_INFORMATION zone;
  TIME_ZONE_INFORMATION answer;
  EXPECT_EQ(system.GetTimeZoneInformation(answer), ::GetTimeZoneInformation(&zone));
  EXPECT_EQ(std::tuple(answer.Bias, answer.StandardBias, answer.DaylightBias),
            std::tuple(zone.Bias, zone.StandardBias, zone.DaylightBias));
  EXPECT_EQ(wstring(answer.StandardName) + answer.DaylightName, wstring(zone.StandardName) + zone.DaylightName);
  system._tzset();
  for (const int index : {0, 1}) {
    char name[64] = "x", small[1] = {'x'};
    EXPECT_EQ(system._get_tzname(name, sizeof name, index), 0);
    EXPECT_STREQ(name, _tzname[index]);
    EXPECT_EQ(system._get_tzname(small, *name ? 1 : 0, index), ERANGE);
    EXPECT_EQ(small[0], 'x');
    EXPECT_EQ(system._get_tzname(nullptr, 64, index) + system._get_tzname(name, 64, 2 + index), 2 * EINVAL);
  }
}

TEST_F(WindowsOperatingSystemTest, AChangedZoneIsNoticedAtAThreadsFirstLookOrAfterTzset) {
  const char* former = std::getenv("TZ");
  const string restored = string("TZ=") + (former ? former : "");
  const auto noon = [this] {
    BrokenDownTime local;
    EXPECT_TRUE(system._localtime64(12 * 3600, local));
    return std::pair(local.tm_hour, system._mktime64({.tm_hour = 12, .tm_mday = 1, .tm_year = 70}));
  };
  const auto expected = [](int hoursWest) { return std::pair(12 - hoursWest, std::int64_t{12 + hoursWest} * 3600); };
  noon();
  ASSERT_EQ(::_putenv("TZ=AAA5"), 0);
  system._tzset();
  EXPECT_EQ(noon(), expected(5));
  ASSERT_EQ(::_putenv("TZ=BBB7"), 0);
  std::thread([&] { EXPECT_EQ(noon(), expected(7)); }).join();
  ASSERT_EQ(::_putenv(restored.c_str()), 0);
  system._tzset();
}

TEST_F(WindowsOperatingSystemTest, BreaksTimesDownAndReadsThemBackAsStandardTime) {
  system._tzset();
  const std::int64_t offset = _timezone;  // of the C runtime, which TZ may have put into another zone than the system
  std::mt19937_64 random(6);
  std::uniform_int_distribution<std::int64_t> instants(2 * 86400, kLastConvertibleSecond - 2 * 86400);
  for (int i = 0; i < 20000; ++i) {
    const std::int64_t second = instants(random);
    const auto units = static_cast<std::uint64_t>(second + 11'644'473'600) * 10'000'000;
    const FILETIME fileTime{static_cast<DWORD>(units), static_cast<DWORD>(units >> 32)};
    SYSTEMTIME direct;
    ASSERT_TRUE(::FileTimeToSystemTime(&fileTime, &direct));
    BrokenDownTime utc, local;
    ASSERT_TRUE(system._gmtime64(second, utc) && system._localtime64(second, local));
    ASSERT_EQ(std::tuple(utc.tm_year + 1900, utc.tm_mon + 1, utc.tm_mday, utc.tm_wday),
              std::tuple(direct.wYear, direct.wMonth, direct.wDay, direct.wDayOfWeek));
    ASSERT_EQ(std::tuple(utc.tm_hour, utc.tm_min, utc.tm_sec),
              std::tuple(direct.wHour, direct.wMinute, direct.wSecond));
    ASSERT_EQ(system._mktime64(utc), second + offset) << second;
    const int daylight = std::exchange(local.tm_isdst, 0) > 0 ? -_dstbias : 0;
    ASSERT_EQ(system._mktime64(local), second + daylight) << second;
  }
  BrokenDownTime untouched{.tm_year = 7};
  for (const std::int64_t second : {std::int64_t{-1}, kLastConvertibleSecond + 1}) {
    EXPECT_FALSE(system._gmtime64(second, untouched) || system._localtime64(second, untouched)) << second;
  }
  EXPECT_EQ(untouched.tm_year, 7);
  EXPECT_EQ(system._mktime64({.tm_mday = 1, .tm_year = 60}), -1);
  EXPECT_EQ(system._mktime64({.tm_mday = 3, .tm_year = 1101}), -1);
  EXPECT_EQ(system._mktime64({.tm_mday = 1, .tm_year = 110, .tm_isdst = 1}), -1);
}

}  // namespace
}  // namespace kdx::os
