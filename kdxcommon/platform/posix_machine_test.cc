// What the library tells about this very machine, beside what the system's own tools and files say.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <netdb.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <fstream>
#include <memory>
#include <sstream>
#include <thread>

#include "kdxcommon/inhouse/zqlib/last_error.h"
#include "kdxcommon/os/operating_system.h"
#include "kdxcommon/platform/files_and_clock.h"
#include "kdxcommon/platform/hardware.h"
#include "kdxcommon/platform/hosts.h"
#include "kdxcommon/platform/os_identity.h"

namespace kdx {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// What a command prints, without the last line's end.
string output(const string& command) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> pipe(::popen(command.c_str(), "r"), ::pclose);
  string text;
  for (int c; pipe && (c = std::fgetc(pipe.get())) != EOF;) text += static_cast<char>(c);
  if (!text.empty() && text.back() == '\n') text.pop_back();
  return text;
}

/// The numbers behind a key of a file of `/proc`, one a line that has it.
std::vector<std::uint64_t> numbersOf(const char* file, const string& key) {
  std::ifstream lines(file);
  std::vector<std::uint64_t> numbers;
  for (string line; std::getline(lines, line);) {
    const std::size_t colon = line.find(':');
    if (colon == string::npos || line.substr(0, line.find_last_not_of("\t ", colon - 1) + 1) != key) continue;
    numbers.push_back(std::stoull(line.substr(colon + 1)));
  }
  return numbers;
}

TEST(PosixMachine, HardwareIsWhatTheSystemsToolsSay) {
  int error = 7;
  std::uint32_t count = 0;
  std::uint64_t bytes = 0;
  EXPECT_TRUE(platformNumberOfCPUs(count, error) && platformSystemRAM(bytes, error));
  EXPECT_EQ(count, numbersOf("/proc/cpuinfo", "processor").size());
  EXPECT_GE(count, std::stoul(output("nproc")));  // fewer where the process may use fewer
  EXPECT_EQ(bytes, (numbersOf("/proc/meminfo", "MemTotal").at(0) / 1024 + 1) * 1048576);

  SYSTEM_INFO processor;
  OperatingSystem::current().GetSystemInfo(processor);
#if defined(__x86_64__)
  EXPECT_EQ(processor.wProcessorArchitecture, 9);
  EXPECT_EQ(processor.wProcessorLevel, numbersOf("/proc/cpuinfo", "cpu family").at(0));
  EXPECT_EQ(processor.wProcessorRevision >> 8, static_cast<int>(numbersOf("/proc/cpuinfo", "model").at(0)));
  EXPECT_EQ(processor.wProcessorRevision & 0xFF, static_cast<int>(numbersOf("/proc/cpuinfo", "stepping").at(0)));
#endif
  MEMORYSTATUSEX status{.dwLength = 63, .ullTotalPhys = 5};
  EXPECT_FALSE(OperatingSystem::current().GlobalMemoryStatusEx(status));
  EXPECT_EQ(status.ullTotalPhys, 5u);
}

TEST(PosixMachine, ItIsNoWindows) {
  const auto refused = static_cast<std::uint32_t>(ENOSYS);
  int errors[3] = {};
  LD_OSInformation_s information;
  LD_utsname_s uname;
  string name, servicePack, type;
  std::uint32_t major, minor, build;
  ZQLastError lastError;
  EXPECT_FALSE(platformOSInformation(information, errors[0]));
  EXPECT_FALSE(platformOSVersionNumeric(name, major, minor, build, servicePack, errors[1]));
  EXPECT_FALSE(platformTypeOfCPU(type, errors[2]));
  EXPECT_THAT(errors, ElementsAre(ENOSYS, ENOSYS, ENOSYS));
  EXPECT_FALSE(platformUname(uname, &lastError));
  EXPECT_EQ(lastError.number(), refused);
  EXPECT_EQ(uname.nodename, output("uname -n"));
  EXPECT_EQ(OperatingSystem::current().GetSystemMetrics(kSystemMetricServerR2), 0);
}

TEST(PosixMachine, NamesAndAddressesAreThoseOfHostnameAndGetent) {
  string computer, name, first, address;
  int error = 7;
  std::uint32_t hostid = 0;
  LD_hostent_s host;
  ZQLastError lastError;
  EXPECT_TRUE(platformComputerName(computer, error) && platformGethostname(name, nullptr));
  EXPECT_EQ(computer, output("hostname"));
  EXPECT_EQ(name, output("hostname"));
  ASSERT_TRUE(platformGethostbynameV2(name, host, &lastError) && platformHostid(hostid, error));
  EXPECT_EQ(host.addressType, 2);
  std::istringstream(output("getent ahostsv4 " + name)) >> first;
  EXPECT_EQ(host.addressText, first);
  EXPECT_EQ(hostid, host.addressNumber);
  std::istringstream(output("getent ahosts " + name)) >> first;
  EXPECT_TRUE(platformGetIPbyHostname(name, address, lastError));
  EXPECT_EQ(address, first);
  char small[2] = "x";
  std::uint32_t size = sizeof small;
  EXPECT_FALSE(OperatingSystem::current().GetComputerNameA(small, size = 1));
  EXPECT_EQ(size, name.size() + 1);
  EXPECT_STREQ(small, "x");
}

TEST(PosixMachine, ResolvesWhatItCanAndSaysWhyNot) {
  constexpr auto kNoName = static_cast<std::uint32_t>(EAI_NONAME), kInvalid = std::uint32_t{0x56000002};
  constexpr auto kOtherFamily = static_cast<std::uint32_t>(EAI_ADDRFAMILY);
  addrinfo* none = nullptr;
  // A machine that reaches no name server doesn't know that there is no such host.
  const auto unknown =
      static_cast<std::uint32_t>(OperatingSystem::current().getaddrinfo("no-such-host.invalid", nullptr, {}, none));
  EXPECT_TRUE(unknown == kNoName || unknown == static_cast<std::uint32_t>(EAI_AGAIN));
  const string letters(70000, 'a'), labels = string(35000, 'a') + '.' + string(35000, 'a');
  const struct {
    string name;
    const char *ipv4, *first;                    // empty where there is none
    std::uint32_t noIpv4, noAddress, noReverse;  // 0: there is
  } rows[] = {
      {"localhost", "127.0.0.1", nullptr, 0, 0, kInvalid}, {"127.0.0.1", "127.0.0.1", "127.0.0.1", 0, 0, 0},
      {"::1", "", "::1", kNoName, 0, kOtherFamily},        {"no-such-host.invalid", "", "", kNoName, kNoName, kNoName},
      {"", "", "", kInvalid, kInvalid, kInvalid},          {letters, "", "", kNoName, kNoName, kInvalid},
      {labels, "", "", kNoName, kNoName, kNoName}};
  for (const auto& row : rows) {
    const string shown = row.name.substr(0, 40);
    LD_hostent_s host;
    string address;
    std::set<string> names;
    ZQLastError byName, byLayer, reverse;
    EXPECT_EQ(platformGethostbynameV2(row.name, host, &byName), row.noIpv4 == 0) << shown;
    EXPECT_EQ(platformGetIPbyHostname(row.name, address, byLayer), row.noAddress == 0) << shown;
    EXPECT_EQ(platformGetHostnamesByIPAddr(row.name, names, reverse), row.noReverse == 0) << shown;
    EXPECT_THAT((std::vector{byName.number(), byLayer.number(), reverse.number()}),
                ElementsAre(row.noIpv4, row.noAddress, row.noReverse))
        << shown;
    EXPECT_EQ(host.addressText, row.ipv4) << shown;
    if (row.first) {
      EXPECT_EQ(address, row.first) << shown;
    }
    EXPECT_EQ(names.empty(), row.noReverse != 0) << shown;
    EXPECT_TRUE(row.noReverse != kNoName || reverse.message() == string(::gai_strerror(EAI_NONAME)));
  }
  string text = "before";
  EXPECT_FALSE(winGetOSErrorMessage(static_cast<std::uint32_t>(-77), text));
}

TEST(PosixMachineConcurrency, EachThreadHasAHostOfItsOwn) {
  std::atomic<int> wrong{0};
  const auto ask = [&wrong](const string& name) {
    for (int question = 0; question < 200; ++question) {
      const hostent* host = OperatingSystem::current().gethostbyname(name.c_str());
      std::this_thread::yield();
      if (!host || host->h_name != name) ++wrong;
    }
  };
  { const std::jthread first(ask, "127.0.0.1"), second(ask, "127.0.0.2"), third(ask, "127.1.2.3"); }
  EXPECT_EQ(wrong, 0);
}

}  // namespace
}  // namespace kdx
