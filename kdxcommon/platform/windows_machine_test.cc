// What the library tells about this very machine, beside what the system keeps elsewhere: in the environment, in the
// kernel's own version, behind other calls.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <winsock2.h>
#include <ws2tcpip.h>

#include <cstdlib>
#include <filesystem>

#include "kdxcommon/inhouse/zqlib/last_error.h"
#include "kdxcommon/os/operating_system.h"
#include "kdxcommon/platform/files_and_clock.h"
#include "kdxcommon/platform/hardware.h"
#include "kdxcommon/platform/hosts.h"
#include "kdxcommon/platform/os_identity.h"
#include "kdxcommon/testing/temporary_directory.h"

namespace kdx {
namespace {

using ::testing::ElementsAre;

string environment(const char* name) {
  const char* value = std::getenv(name);
  return value ? value : "";
}

/// The version that no manifest has a say in.
RTL_OSVERSIONINFOW kernelVersion() {
  using Ask = LONG(WINAPI*)(RTL_OSVERSIONINFOW*);
  const FARPROC ask = ::GetProcAddress(::GetModuleHandleA("ntdll.dll"), "RtlGetVersion");
  RTL_OSVERSIONINFOW version{};
  version.dwOSVersionInfoSize = sizeof version;
  EXPECT_EQ(reinterpret_cast<Ask>(reinterpret_cast<void*>(ask))(&version), 0);
  return version;
}

TEST(WindowsMachine, VersionIsTheKernelsSinceTheManifestNamesIt) {
  const RTL_OSVERSIONINFOW kernel = kernelVersion();
  int error = 7;
  LD_OSInformation_s information;
  string name, servicePack;
  std::uint32_t major = 0, minor = 0, build = 0;
  ASSERT_TRUE(platformOSInformation(information, error));
  ASSERT_TRUE(platformOSVersionNumeric(name, major, minor, build, servicePack, error));
  EXPECT_THAT((std::vector{major, minor, build}),
              ElementsAre(kernel.dwMajorVersion, kernel.dwMinorVersion, kernel.dwBuildNumber));
  EXPECT_THAT((std::vector{information.majorVersion, information.minorVersion, information.buildNumber}),
              ElementsAre(major, minor, build));
  LD_utsname_s uname;
  ASSERT_TRUE(platformUname(uname, nullptr));
  EXPECT_EQ(uname.release, std::to_string(major) + '.' + std::to_string(minor));
  EXPECT_EQ(uname.nodename, environment("COMPUTERNAME"));
  EXPECT_EQ(OperatingSystem::current().GetSystemMetrics(kSystemMetricServerR2), ::GetSystemMetrics(SM_SERVERR2));
}

TEST(WindowsMachine, HardwareIsWhatTheEnvironmentSays) {
  int error = 7;
  std::uint32_t count = 0;
  std::uint64_t bytes = 0;
  string name, type;
  EXPECT_TRUE(platformNumberOfCPUs(count, error) && platformSystemRAM(bytes, error));
  EXPECT_EQ(std::to_string(count), environment("NUMBER_OF_PROCESSORS"));
  EXPECT_TRUE(platformComputerName(name, error) && platformTypeOfCPU(type, error));
  EXPECT_EQ(name, environment("COMPUTERNAME"));
  EXPECT_THAT(type, ::testing::StartsWith("x64 Family " + environment("PROCESSOR_LEVEL")));
  ::MEMORYSTATUSEX memory{};
  memory.dwLength = sizeof memory;
  ASSERT_TRUE(::GlobalMemoryStatusEx(&memory));
  EXPECT_EQ(bytes, (memory.ullTotalPhys / 1048576 + 1) * 1048576);
  SYSTEM_INFO processor;
  OperatingSystem::current().GetSystemInfo(processor);
  EXPECT_EQ(processor.wProcessorRevision, std::stoul(environment("PROCESSOR_REVISION"), nullptr, 16));
}

TEST(WindowsMachine, NamesAndAddressesAreThoseOfOtherCalls) {
  string name, address;
  LD_hostent_s host;
  ZQLastError lastError;
  int error = 7;
  std::uint32_t hostid = 0;
  ASSERT_TRUE(platformGethostname(name, &lastError));
  char direct[256];
  DWORD size = sizeof direct;
  ASSERT_TRUE(::GetComputerNameExA(ComputerNameDnsHostname, direct, &size));
  EXPECT_EQ(name, direct);
  ASSERT_TRUE(platformGethostbynameV2(name, host, &lastError) && platformHostid(hostid, error));
  EXPECT_EQ(host.addressType, AF_INET);
  in_addr number;
  ASSERT_EQ(::inet_pton(AF_INET, host.addressText.c_str(), &number), 1);
  EXPECT_EQ(host.addressNumber, ::ntohl(number.s_addr));
  EXPECT_EQ(hostid, host.addressNumber);

  for (const char* literal : {"127.0.0.1", "::1"}) {
    EXPECT_TRUE(platformGetIPbyHostname(literal, address, lastError));
    EXPECT_EQ(address, literal);
  }
  EXPECT_FALSE(platformGethostbynameV2("::1", host, &lastError));  // which knows IPv4 alone
  EXPECT_EQ(lastError.number(), std::uint32_t{WSAHOST_NOT_FOUND});
  std::set<string> names;
  EXPECT_TRUE(platformGetHostnamesByIPAddr("127.0.0.1", names, lastError));
  EXPECT_EQ(names.size(), 1u);
}

TEST(WindowsMachine, FilesOfTextGetCarriageReturnsAndRefusalsTheirOwnNumbers) {
  const testing::TemporaryDirectory directory;
  const string path = directory.write("locked");
  std::filesystem::permissions(path, std::filesystem::perms::owner_read);
  const std::pair<string, std::uint32_t> rows[] = {
      {path, ERROR_ACCESS_DENIED}, {path + "2", 0x56000004}, {directory.path("no/file"), ERROR_PATH_NOT_FOUND}};
  for (const auto& [name, number] : rows) {
    ZQLastError lastError;
    ::SetLastError(ERROR_FILE_NOT_FOUND);  // left by some earlier call
    EXPECT_FALSE(platformAccessW(wstring(name.begin(), name.end()), 2, &lastError));
    EXPECT_EQ(lastError.number(), number);
  }
  std::filesystem::permissions(path, std::filesystem::perms::all);

  string contents = "before ";
  int error = 7;
  EXPECT_TRUE(platformWriteEntireFileContent(path, "one\ntwo\n", error));
  EXPECT_TRUE(platformReadEntireFileContents(path, contents, error));
  EXPECT_EQ(contents, "before one\r\ntwo\r\n");
}

}  // namespace
}  // namespace kdx
