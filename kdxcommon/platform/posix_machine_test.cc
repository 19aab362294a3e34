// What the library tells about this very machine, beside what the system's own tools and files say.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <netdb.h>

#include <cerrno>
#include <cstdio>
#include <memory>

#include "kdxcommon/inhouse/zqlib/last_error.h"
#include "kdxcommon/os/operating_system.h"
#include "kdxcommon/platform/files_and_clock.h"
#include "kdxcommon/platform/hardware.h"
#include "kdxcommon/platform/hosts.h"
#include "kdxcommon/platform/os_identity.h"

namespace kdx {
namespace {

using ::testing::ElementsAre;

/// The first line that a command prints.
string output(const string& command) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> pipe(::popen(command.c_str(), "r"), ::pclose);
  string text;
  for (int c; (c = std::fgetc(pipe.get())) != EOF && c != '\n';) text += static_cast<char>(c);
  return text;
}

TEST(PosixMachine, HardwareIsWhatTheSystemsToolsSay) {
  int error = 7;
  std::uint32_t count = 0;
  std::uint64_t bytes = 0;
  EXPECT_TRUE(platformNumberOfCPUs(count, error) && platformSystemRAM(bytes, error));
  EXPECT_EQ(std::to_string(count), output("grep -c ^processor /proc/cpuinfo"));
  EXPECT_GE(count, std::stoul(output("nproc")));  // fewer where the process may use fewer
  EXPECT_EQ(std::to_string(bytes / 1048576 - 1), output("awk '/^MemTotal/{print int($2 / 1024)}' /proc/meminfo"));
  SYSTEM_INFO processor;
  OperatingSystem::current().GetSystemInfo(processor);
  const std::uint32_t level = processor.wProcessorLevel, revision = processor.wProcessorRevision;
  const string numbers = output("echo $(sed -nE '/^$/q; s/^(cpu family|model|stepping)\t+: //p' /proc/cpuinfo)");
  EXPECT_EQ(std::to_string(level) + ' ' + std::to_string(revision >> 8) + ' ' + std::to_string(revision & 0xFF),
            numbers.empty() ? "0 0 0" : numbers);
}

TEST(PosixMachine, ItIsNoWindows) {
  int errors[2] = {};
  LD_OSInformation_s information;
  LD_utsname_s uname;
  string type;
  ZQLastError lastError;
  EXPECT_FALSE(platformOSInformation(information, errors[0]) || platformTypeOfCPU(type, errors[1]) ||
               platformUname(uname, &lastError));
  EXPECT_TRUE(errors[0] == ENOSYS && errors[1] == ENOSYS && lastError.number() == ENOSYS);
  EXPECT_EQ(uname.nodename, output("uname -n"));
}

TEST(PosixMachine, NamesAndAddressesAreThoseOfHostnameAndGetent) {
  string computer, name, address;
  int error = 7;
  std::uint32_t hostid = 0, size = 1;
  LD_hostent_s host;
  ZQLastError lastError;
  EXPECT_TRUE(platformComputerName(computer, error) && platformGethostname(name, nullptr) &&
              platformGethostbynameV2(name, host, nullptr) && platformHostid(hostid, error) &&
              platformGetIPbyHostname(name, address, lastError));
  EXPECT_EQ(computer + ' ' + name, output("echo $(hostname) $(hostname)"));
  EXPECT_EQ(host.addressText, output("getent ahostsv4 " + name + " | cut -d ' ' -f 1"));
  EXPECT_EQ(address, output("getent ahosts " + name + " | cut -d ' ' -f 1"));
  EXPECT_TRUE(hostid == host.addressNumber && host.addressType == 2);
  char small = 'x';
  EXPECT_FALSE(OperatingSystem::current().GetComputerNameA(&small, size));
  EXPECT_TRUE(size == name.size() + 1 && small == 'x');
}

TEST(PosixMachine, ResolvesWhatItCanAndSaysWhyNot) {
  constexpr auto kNoName = static_cast<std::uint32_t>(EAI_NONAME), kInvalid = std::uint32_t{0x56000002};
  constexpr auto kFamily = static_cast<std::uint32_t>(EAI_ADDRFAMILY), kAgain = static_cast<std::uint32_t>(EAI_AGAIN);
  const string letters(70000, 'a');
  string labels = letters;
  labels[35000] = '.';
  OperatingSystem& system = OperatingSystem::current();
  addrinfo* chain = nullptr;
  EXPECT_TRUE(system.getaddrinfo("127.0.0.1", nullptr, {}, chain) == 0 && !chain->ai_next);
  system.freeaddrinfo(chain);
  // A machine that reaches no name server doesn't know that there is no such host.
  const auto unknown = static_cast<std::uint32_t>(system.getaddrinfo("no-such-host.invalid", nullptr, {}, chain));
  EXPECT_TRUE(unknown == kNoName || unknown == kAgain);
  const struct {
    string name;
    const char* ipv4;                            // empty where there is none
    std::uint32_t noIpv4, noAddress, noReverse;  // 0: there is one
  } rows[] = {{"localhost", "127.0.0.1", 0, 0, kInvalid}, {"127.0.0.1", "127.0.0.1", 0, 0, 0},
              {"::1", "", kNoName, 0, kFamily},           {"no-such-host.invalid", "", unknown, unknown, unknown},
              {"", "", kInvalid, kInvalid, kInvalid},     {letters, "", kNoName, kNoName, kInvalid},
              {labels, "", kNoName, kNoName, kNoName}};
  for (const auto& row : rows) {
    LD_hostent_s host;
    string address;
    std::set<string> names;
    ZQLastError byName, byLayer, reverse;
    const bool answers[] = {platformGethostbynameV2(row.name, host, &byName),
                            platformGetIPbyHostname(row.name, address, byLayer),
                            platformGetHostnamesByIPAddr(row.name, names, reverse)};
    EXPECT_THAT(answers, ElementsAre(row.noIpv4 == 0, row.noAddress == 0, row.noReverse == 0)) << row.name.size();
    EXPECT_THAT((std::vector{byName.number(), byLayer.number(), reverse.number()}),
                ElementsAre(row.noIpv4, row.noAddress, row.noReverse));
    EXPECT_EQ(host.addressText, row.ipv4);
    EXPECT_TRUE(answers[1] != address.empty() && answers[2] != names.empty());
    EXPECT_TRUE(row.noReverse != kNoName || reverse.message() == string(::gai_strerror(EAI_NONAME)));
  }
  string text;
  EXPECT_FALSE(winGetOSErrorMessage(static_cast<std::uint32_t>(-77), text));
}

}  // namespace
}  // namespace kdx
