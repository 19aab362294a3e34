// What the library tells about this very machine, beside what the system's own tools and files say, and what its files
// do at the edges, which no stand-in can tell.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <netdb.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <memory>
#include <tuple>
#include <utility>

#include "kdxcommon/inhouse/zqlib/last_error.h"
#include "kdxcommon/os/operating_system.h"
#include "kdxcommon/platform/files_and_clock.h"
#include "kdxcommon/platform/hardware.h"
#include "kdxcommon/platform/hosts.h"
#include "kdxcommon/platform/os_identity.h"
#include "kdxcommon/testing/temporary_directory.h"
#include "kdxcommon/testing/wide_text.h"

namespace kdx {
namespace {

struct PosixMachine : ::testing::Test {
  os::OperatingSystem& system = os::OperatingSystem::current();
  int error = 0;
  ZQLastError lastError;
};

/// The words that a command prints.
string output(const string& command) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> pipe(::popen(("echo $(" + command + ")").c_str(), "r"),
                                                             ::pclose);
  string text;
  for (int c; (c = std::fgetc(pipe.get())) != EOF && c != '\n';) text += static_cast<char>(c);
  return text;
}

string firstAddress(const string& database, const string& name) {
  return output("getent " + database + ' ' + name + " | cut -d ' ' -f 1 | head -1");
}

TEST_F(PosixMachine, HardwareIsWhatTheSystemsToolsSay) {
  std::uint32_t count = 0;
  std::uint64_t bytes = 0;
  os::SYSTEM_INFO processor;
  EXPECT_TRUE(platformNumberOfCPUs(count, error) && platformSystemRAM(bytes, error));
  EXPECT_EQ(std::to_string(count), output("grep -c ^processor /proc/cpuinfo"));
  EXPECT_GE(count, std::stoul(output("nproc")));  // fewer where the process may use fewer
  EXPECT_EQ(std::to_string(bytes / 1048576 - 1), output("awk '/^MemTotal/{print int($2 / 1024)}' /proc/meminfo"));
  system.GetSystemInfo(processor);
  const int level = processor.wProcessorLevel, revision = processor.wProcessorRevision;
  const string numbers = output("sed -nE '/^$/q; s/^(cpu family|model|stepping)\t+: //p' /proc/cpuinfo");
  EXPECT_EQ(std::to_string(level) + ' ' + std::to_string(revision >> 8) + ' ' + std::to_string(revision & 0xFF),
            numbers.empty() ? "0 0 0" : numbers);
}

TEST_F(PosixMachine, NamesAndAddressesAreThoseOfHostnameAndGetent) {
  string computer, name, address;
  std::uint32_t hostid = 5;
  LD_hostent_s host;
  EXPECT_TRUE(platformComputerName(computer, error) && platformGethostname(name, nullptr));
  EXPECT_EQ(computer + ' ' + name, output("hostname; hostname"));
  // Some machines' own names have no address.
  const string address4 = firstAddress("ahostsv4", name), anyAddress = firstAddress("ahosts", name);
  EXPECT_EQ(platformGethostbynameV2(name, host, &lastError), !address4.empty());
  EXPECT_EQ(platformHostid(hostid, error), !address4.empty());
  EXPECT_TRUE(hostid == host.addressNumber && static_cast<std::uint32_t>(error) == lastError.number());
  EXPECT_EQ(host.addressText, address4);
  EXPECT_EQ(platformGetIPbyHostname(name, address, lastError), !anyAddress.empty());
  EXPECT_EQ(address, anyAddress);
  string buffer(name.size() + 1, 'x');
  auto size = static_cast<std::uint32_t>(name.size());
  EXPECT_FALSE(system.GetComputerNameA(buffer.data(), size));
  EXPECT_TRUE(size == buffer.size() && buffer == string(size, 'x'));
  EXPECT_TRUE(system.GetComputerNameA(buffer.data(), size));
  EXPECT_TRUE(size == name.size() && buffer == name + '\0');
}

TEST_F(PosixMachine, ResolvesWhatItCanAndSaysWhyNot) {
  constexpr auto kNoName = static_cast<std::uint32_t>(EAI_NONAME), kInvalid = std::uint32_t{0x56000002};
  constexpr auto kFamily = static_cast<std::uint32_t>(EAI_ADDRFAMILY), kAgain = static_cast<std::uint32_t>(EAI_AGAIN);
  const string letters(70000, 'a'), labels = letters.substr(35000) + '.' + letters.substr(35000);
  std::vector<os::addrinfo> found;
  EXPECT_TRUE(system.getaddrinfo("127.0.0.1", nullptr, {}, found) == 0 && found.size() == 1);
  // A machine that reaches no name server doesn't know that there is no such host.
  const auto unknown = static_cast<std::uint32_t>(system.getaddrinfo("no-such-host.invalid", nullptr, {}, found));
  EXPECT_TRUE(unknown == kNoName || unknown == kAgain);
  const std::uint32_t local = firstAddress("ahostsv4", "localhost").empty() ? unknown : 0;
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
