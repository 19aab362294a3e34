// What the library tells about this very machine, beside what the system's own tools and files say, and what its files
// do at the edges, which no stand-in can tell.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <netdb.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <tuple>
#include <utility>

#include "kdxcommon/inhouse/zqlib/last_error.h"
#include "kdxcommon/os/operating_system.h"
#include "kdxcommon/platform/files_and_clock.h"
#include "kdxcommon/platform/hosts.h"
#include "kdxcommon/testing/scoped_time_zone.h"
#include "kdxcommon/testing/temporary_directory.h"
#include "kdxcommon/testing/wide_text.h"

namespace kdx {
namespace {

struct PosixMachine : ::testing::Test {
  os::OperatingSystem& system = os::OperatingSystem::current();
  int error = 0;
  ZQLastError lastError;
};

TEST_F(PosixMachine, ResolvesWhatItCanAndSaysWhyNot) {
  constexpr auto kNoName = static_cast<std::uint32_t>(EAI_NONAME), kInvalid = std::uint32_t{0x56000002};
  constexpr auto kFamily = static_cast<std::uint32_t>(EAI_ADDRFAMILY), kAgain = static_cast<std::uint32_t>(EAI_AGAIN);
  const string letters(70000, 'a'), labels = letters.substr(35000) + '.' + letters.substr(35000);
  std::vector<os::addrinfo> found;
  EXPECT_TRUE(system.getaddrinfo("127.0.0.1", nullptr, {}, found) == 0 && found.size() == 1);
  // A machine that reaches no name server doesn't know that there is no such host.
  const auto unknown = static_cast<std::uint32_t>(system.getaddrinfo("no-such-host.invalid", nullptr, {}, found));
  EXPECT_TRUE(unknown == kNoName || unknown == kAgain);
  // Nor is a machine bound to know its localhost.
  const std::uint32_t local = ::gethostbyname("localhost") ? 0 : unknown;
  const struct {
    string name;
    std::uint32_t byName, byLayer, reverse;  // why it is not found; 0 where it is
  } rows[] = {{"localhost", local, local, kInvalid}, {"127.0.0.1", 0, 0, 0},
              {"::1", kNoName, 0, kFamily},          {"no-such-host.invalid", unknown, unknown, unknown},
              {"", kInvalid, kInvalid, kInvalid},    {letters, kNoName, kNoName, kInvalid},
              {labels, kNoName, kNoName, kNoName}};
  for (const auto& row : rows) {
    LD_hostent_s host;
    string address;
    std::set<string> names = {"before"};
    ZQLastError byName, byLayer, reverse;
    EXPECT_EQ(platformGethostbynameV2(row.name, host, &byName), row.byName == 0);
    EXPECT_EQ(platformGetIPbyHostname(row.name, address, byLayer), row.byLayer == 0);
    EXPECT_EQ(platformGetHostnamesByIPAddr(row.name, names, reverse), row.reverse == 0);
    EXPECT_THAT((std::vector{byName.number(), byLayer.number(), reverse.number()}),
                ::testing::ElementsAre(row.byName, row.byLayer, row.reverse));
    EXPECT_TRUE((row.byName == 0 || byName.isCritical()) && (row.byLayer == 0 || byLayer.isCritical()));
    EXPECT_EQ(reverse.isMajor(), row.reverse != 0 && row.reverse != kInvalid);
    EXPECT_EQ(names.empty(), row.reverse != 0);
    EXPECT_EQ(host.addressText, row.byName == 0 ? "127.0.0.1" : "");
    EXPECT_TRUE(row.reverse != kNoName || reverse.message() == string(::gai_strerror(EAI_NONAME)));
  }
}

/// The superuser reads everything: for a scope the process is somebody else.
struct WithoutPrivileges {
  WithoutPrivileges() { EXPECT_EQ(::seteuid(user == 0 ? 65534 : user), 0); }
  ~WithoutPrivileges() { EXPECT_EQ(::seteuid(user), 0); }
  const uid_t user = ::geteuid();
};

TEST_F(PosixMachine, FilesThatFailTouchNothingButTheErrorOfAnOpenOne) {
  const testing::TemporaryDirectory directory;
  const string locked = directory.write("locked"), huge = directory.write("huge"), folder = directory.path();
  string text = "before";
  const auto read = [&](const string& path) { return platformReadEntireFileContents(path, text, error); };
  const auto write = [&](const string& path) { return platformWriteEntireFileContent(path, "x", error); };
  std::filesystem::permissions(locked, std::filesystem::perms::none);
  std::filesystem::resize_file(huge, std::uintmax_t{1} << 31);
  {
    const WithoutPrivileges scope;
    EXPECT_FALSE(read(locked) || write(locked));
  }
  EXPECT_FALSE(read(directory.path("missing")) || read(huge) || write(folder));
  EXPECT_EQ(error, 0);
  EXPECT_FALSE(read(folder));  // which can be opened, but not read
  EXPECT_NE(std::exchange(error, 0), 0);
  EXPECT_FALSE(write("/dev/full"));  // however little it is, a full disk shows
  EXPECT_NE(error, 0);
  EXPECT_FALSE(winGetOSErrorMessage(0x56000004, text) || winGetOSErrorMessage(0xFFFFFFB3, text));
  EXPECT_EQ(text, "before");
  EXPECT_TRUE(winGetOSErrorMessage(ENOENT, text));
  EXPECT_EQ(text, "No such file or directory");
}

TEST_F(PosixMachine, ReadsNamesAndBiasOfOneZoneAlsoRightAfterAChange) {
  const testing::ScopedTimeZone before("America/New_York");
  TimeZone_t zone;
  EXPECT_TRUE(platformGetTimeZone(zone, nullptr) && zone.biasSeconds == 18000);
  ::setenv("TZ", "Asia/Kolkata", 1);
  EXPECT_TRUE(platformGetTimeZone(zone, nullptr) && zone.biasSeconds == -19800 && zone.standardName == "IST");
}

TEST_F(PosixMachine, AccessFollowsTheFileSystem) {
  const testing::TemporaryDirectory directory;
  const string path = directory.path();
  const std::u16string folder(path.begin(), path.end()), name = folder + u"/d\u00E9p\u00F4t \U0001F4E6";
  directory.write("d\xC3\xA9p\xC3\xB4t \xF0\x9F\x93\xA6");
  for (const auto& [wanted, mode, number] : {std::tuple(name, 4, 0),
                                             {u"", 4, 0x56000002},
                                             {folder + u"/depot", 0, 0x56000004},
                                             {name + u"/below", 0, ENOTDIR},
                                             {name, 0x1000, EINVAL},
                                             {folder + u"/\xD83D", 0, EINVAL}}) {  // half a pair
    for (ZQLastError* reason : {&(lastError = {}), static_cast<ZQLastError*>(nullptr)}) {
      EXPECT_EQ(platformAccessW(testing::wide(wanted), mode, reason), number == 0);
    }
    EXPECT_EQ(lastError.number(), static_cast<std::uint32_t>(number));
    EXPECT_EQ(lastError.isCritical(), number != 0);
  }
}

}  // namespace
}  // namespace kdx
