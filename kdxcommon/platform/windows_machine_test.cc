// What the library tells about this very machine, beside what the system keeps elsewhere: in the environment, in the
// kernel's own version, behind other calls.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <winsock2.h>
#include <ws2tcpip.h>

#include <cstdlib>

#include "kdxcommon/inhouse/zqlib/last_error.h"
#include "kdxcommon/os/operating_system.h"
#include "kdxcommon/platform/files_and_clock.h"
#include "kdxcommon/platform/hardware.h"
#include "kdxcommon/platform/hosts.h"
#include "kdxcommon/platform/os_identity.h"
#include "kdxcommon/testing/temporary_directory.h"

namespace kdx {
namespace {

struct WindowsMachine : ::testing::Test {
  int error = 7;
  ZQLastError lastError;
};

TEST_F(WindowsMachine, VersionIsTheKernelsSinceTheManifestNamesIt) {
  using Ask = LONG(WINAPI*)(RTL_OSVERSIONINFOW*);  // no manifest has a say in its answer
  const FARPROC ask = ::GetProcAddress(::GetModuleHandleA("ntdll.dll"), "RtlGetVersion");
  RTL_OSVERSIONINFOW kernel{};
  kernel.dwOSVersionInfoSize = sizeof kernel;
  ASSERT_EQ(reinterpret_cast<Ask>(reinterpret_cast<void*>(ask))(&kernel), 0);
  LD_OSInformation_s information;
  LD_utsname_s uname;
  ASSERT_TRUE(platformOSInformation(information, error) && platformUname(uname, nullptr));
  EXPECT_THAT((std::vector{information.majorVersion, information.minorVersion, information.buildNumber}),
              ::testing::ElementsAre(kernel.dwMajorVersion, kernel.dwMinorVersion, kernel.dwBuildNumber));
  EXPECT_EQ(uname.release, std::to_string(kernel.dwMajorVersion) + '.' + std::to_string(kernel.dwMinorVersion));
  EXPECT_EQ(os::OperatingSystem::current().GetSystemMetrics(os::kSystemMetricServerR2),
            ::GetSystemMetrics(SM_SERVERR2));
}

TEST_F(WindowsMachine, HardwareIsWhatTheEnvironmentSays) {
  std::uint32_t count = 0;
  std::uint64_t bytes = 0;
  string name, type;
  os::SYSTEM_INFO processor;
  ::MEMORYSTATUSEX memory{};
  memory.dwLength = sizeof memory;
  EXPECT_TRUE(platformNumberOfCPUs(count, error) && platformSystemRAM(bytes, error));
  EXPECT_TRUE(platformComputerName(name, error) && platformTypeOfCPU(type, error));
  ASSERT_TRUE(::GlobalMemoryStatusEx(&memory));
  os::OperatingSystem::current().GetSystemInfo(processor);
  EXPECT_EQ(bytes, (memory.ullTotalPhys / 1048576 + 1) * 1048576);
  EXPECT_EQ(name, std::getenv("COMPUTERNAME"));
  EXPECT_EQ(std::to_string(count), std::getenv("NUMBER_OF_PROCESSORS"));
  EXPECT_THAT(type, ::testing::StartsWith(string("x64 Family ") + std::getenv("PROCESSOR_LEVEL")));
  EXPECT_EQ(processor.wProcessorRevision, std::stoul(std::getenv("PROCESSOR_REVISION"), nullptr, 16));
}

TEST_F(WindowsMachine, NamesAndAddressesAreThoseOfOtherCalls) {
  string name, address;
  LD_hostent_s host;
  std::uint32_t hostid = 0;
  char direct[256];
  DWORD size = sizeof direct;
  ASSERT_TRUE(platformGethostname(name, &lastError) && ::GetComputerNameExA(ComputerNameDnsHostname, direct, &size));
  EXPECT_EQ(name, direct);
  ASSERT_TRUE(platformGethostbynameV2(name, host, &lastError) && platformHostid(hostid, error));
  EXPECT_EQ(hostid, ::ntohl(::inet_addr(host.addressText.c_str())));
  EXPECT_TRUE(host.addressNumber == hostid && host.addressType == AF_INET);

  EXPECT_TRUE(platformGetIPbyHostname("::1", address, lastError));
  EXPECT_EQ(address, "::1");
  EXPECT_FALSE(platformGethostbynameV2("::1", host, &lastError));  // which knows IPv4 alone
  EXPECT_EQ(lastError.number(), std::uint32_t{WSAHOST_NOT_FOUND});
  std::set<string> names;
  EXPECT_TRUE(platformGetHostnamesByIPAddr("127.0.0.1", names, lastError) && names.size() == 1);
}

TEST_F(WindowsMachine, FilesOfTextGetCarriageReturnsAndMissingOnesTheirOwnNumber) {
  const testing::TemporaryDirectory directory;
  const string path = directory.path("file");
  const wstring widePath(path.begin(), path.end());
  string contents = "before ";
  EXPECT_FALSE(platformAccessW(widePath, 0, &lastError));
  EXPECT_EQ(lastError.number(), 0x56000004u);
  EXPECT_TRUE(platformWriteEntireFileContent(path, "one\ntwo\n", error));
  EXPECT_TRUE(platformReadEntireFileContents(path, contents, error));
  EXPECT_EQ(contents, "before one\r\ntwo\r\n");
  EXPECT_TRUE(platformAccessW(widePath, 4, nullptr));
}

}  // namespace
}  // namespace kdx
