#include "kdxcommon/platform/os_identity.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <limits>

#include "kdxcommon/inhouse/zqlib/last_error.h"
#include "kdxcommon/testing/fake_machine.h"
#include "kdxcommon/testing/wide_text.h"

namespace kdx {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;

constexpr std::uint32_t kHuge = std::numeric_limits<std::uint32_t>::max();
constexpr LD_utsname_s kBefore = {"before", "before", "before", "before", "before", "before"};

struct OSIdentity : ::testing::Test {
  OSIdentity() {
    machine.hostName = "host";
    static const char* const kAddresses[] = {"\x0A\x01\x02\x03", nullptr};
    machine.host = {.h_name = "host", .h_addrtype = 2, .h_length = 4, .h_addr_list = kAddresses};
    std::strcpy(machine.version.szCSDVersion, "Service Pack 2");
  }
  void setVersion(std::uint32_t platform, std::uint32_t major, std::uint32_t minor) {
    machine.version.dwPlatformId = platform;
    machine.version.dwMajorVersion = major;
    machine.version.dwMinorVersion = minor;
  }

  testing::FakeMachine machine;
  ScopedOperatingSystem scope{machine};
  int error = 7;
};

TEST_F(OSIdentity, EveryProductHasItsTextAndEdition) {
  const struct {
    std::uint32_t major, minor, platform;
    bool extended;
    std::uint8_t type;
    std::uint16_t suite;
    const char* name;
    std::int32_t edition;
    const char* secondRelease = nullptr;  // the name then, where that is asked
  } rows[] = {
      {4, 0, 1, true, 1, 0, "Windows 95", 8},
      {4, 0, 3, false, 0, 0, "Windows 95", 8},
      {4, 0, 2, false, 1, 0, "Windows NT", 1},
      {4, 0, 2, true, 1, 0, "Windows NT Workstation", 12},
      {4, 0, 2, true, 2, 0, "Windows NT Domain Controller", 19},
      {4, 0, 2, true, 3, 0, "Windows NT Server", 11},
      {4, 0, 2, true, 4, 0, "Windows NT", 1},
      {4, 10, 1, true, 1, 0, "Windows 98", 9},
      {4, 90, 1, false, 0, 0, "Windows ME", 7},
      {4, 3, 2, true, 1, 0, "Windows 4.3", 10},
      {5, 0, 2, false, 3, 2, "Windows 2000", 2},
      {5, 0, 2, true, 1, 2, "Windows 2000 Professional", 13},
      {5, 0, 2, true, 2, 2, "Windows 2000 Domain Controller", 20},
      {5, 0, 2, true, 3, 0x0082, "Windows 2000 Advanced Server", 15},
      {5, 0, 2, true, 3, 0x0180, "Windows 2000 Datacenter Server", 16},
      {5, 0, 2, true, 3, 0x0400, "Windows 2000 Server", 14},
      {5, 0, 2, true, 0, 2, "Windows 2000", 2},
      {5, 1, 2, false, 1, 0x0200, "Windows 5.1", 10},
      {5, 1, 2, true, 1, 0x0200, "Windows XP Home Edition", 17},
      {5, 1, 2, true, 1, 0x0300, "Windows XP Professional", 18},
      {5, 1, 2, true, 3, 0x0200, "Windows 5.1", 10},
      {5, 2, 2, false, 3, 2, "Windows 5.2", 10},
      {5, 2, 2, true, 1, 0x0482, "Windows Server 2003 family Enterprise Edition", 21,
       "Windows Server 2003 R2 family Enterprise Edition"},
      {5, 2, 2, true, 3, 0x0480, "Windows Server 2003 family Datacenter Edition", 22,
       "Windows Server 2003 R2 family Datacenter Edition"},
      {5, 2, 2, true, 3, 0x0400, "Windows Server 2003 family Web Edition", 24,
       "Windows Server 2003 R2 family Web Edition"},
      {5, 2, 2, true, 2, 0x0200, "Windows Server 2003 family", 23, "Windows Server 2003 R2 family"},
      {5, 3, 2, true, 1, 0, "Windows 5.3", 10},
      {6, 0, 2, false, 1, 0, "Windows Vista Or Windows Server 2008", 0},
      {6, 0, 2, true, 1, 0, "Windows Vista", 28},
      {6, 0, 2, true, 3, 0, "Windows Server 2008", 29},
      {6, 1, 2, false, 1, 0, "Windows 7 Or Windows Server 2008 R2", 0},
      {6, 1, 2, true, 1, 0, "Windows 7", 28},
      {6, 1, 2, true, 2, 0, "Windows Server 2008 R2", 29},
      {6, 2, 2, true, 1, 0, "Windows", 0},
      {7, 0, 2, true, 1, 0, "Windows 7.0", 10},
      {10, 0, 2, false, 0, 0, "Windows 10.0", 10},
      {3, 51, 2, true, 1, 0, "Windows 3.51", 10},
      {kHuge, kHuge, 2, true, 1, 0, "Windows -1.-1", 10},
  };
  for (const auto& row : rows) {
    setVersion(row.platform, row.major, row.minor);
    machine.version.wProductType = row.type;
    machine.version.wSuiteMask = row.suite;
    machine.failing.clear();
    if (!row.extended) machine.failing["GetVersionExA156"] = 87;
    for (const int release : {0, 1}) {
      machine.secondRelease = release;
      machine.asked.clear();
      LD_OSInformation_s information;
      information.edition = 77;
      ASSERT_TRUE(platformOSInformation(information, error));
      EXPECT_EQ(information.name, release && row.secondRelease ? row.secondRelease : row.name);
      EXPECT_EQ(information.edition, row.edition) << row.name;
      EXPECT_EQ(std::ranges::count(machine.asked, "GetSystemMetrics"), row.secondRelease ? 1 : 0) << row.name;
    }
  }
  EXPECT_EQ(error, 7);
}

TEST_F(OSIdentity, TheSmallerRecordServesWhereTheLargerIsRefused) {
  setVersion(2, 5, 1);
  machine.version.dwBuildNumber = 2600;
  machine.version.wServicePackMajor = 2;
  machine.version.wServicePackMinor = 9;
  std::memset(machine.version.szCSDVersion, 'x', sizeof machine.version.szCSDVersion);
  for (const int major : {2, 0}) {
    LD_OSInformation_s information;
    ASSERT_TRUE(platformOSInformation(information, error));
    EXPECT_EQ(information.vendor + ", " + information.servicePack, "Microsoft Corporation, " + string(128, 'x'));
    EXPECT_THAT((std::vector<std::uint32_t>{information.majorVersion, information.minorVersion, information.buildNumber,
                                            information.servicePackMajor, information.servicePackMinor}),
                ElementsAre(5, 1, 2600, major, major ? 9 : 0));
    EXPECT_EQ(information.family, 1);
    machine.failing["GetVersionExA156"] = 87;
  }
  EXPECT_THAT(machine.asked, ElementsAre("GetVersionExA156", "GetVersionExA156", "GetVersionExA148"));

  machine.failing["GetVersionExA148"] = 120;
  LD_OSInformation_s information{"v", "n", 1, 2, 3, "s", 4, 5, 6, 7};
  EXPECT_FALSE(platformOSInformation(information, error));
  EXPECT_EQ(error, 120);
  EXPECT_EQ(information.vendor + ", " + information.name, "Unknown Vendor Name, Unknown Operating System");
  EXPECT_EQ(information.servicePack, "");
  EXPECT_EQ(information.majorVersion + information.servicePackMinor, 0u);
  EXPECT_EQ(information.family + information.edition, 0);
}

TEST_F(OSIdentity, ShortNamesAreOfTheirOwn) {
  const struct {
    std::uint32_t platform, major, minor;
    const char* name;
  } rows[] = {{2, 4, 0, "NT"},  {1, 4, 0, "95"},   {1, 4, 10, "98"}, {2, 4, 90, "ME"},
              {2, 4, 1, "???"}, {1, 5, 0, "2000"}, {2, 5, 1, "XP"},  {2, 5, 2, "Server 2003 family"},
              {2, 5, 3, "???"}, {2, 6, 0, "???"},  {2, 3, 0, "???"}};
  string name, servicePack;
  std::uint32_t major, minor, build;
  for (const auto& row : rows) {
    setVersion(row.platform, row.major, row.minor);
    machine.version.dwBuildNumber = 99;
    ASSERT_TRUE(platformOSVersionNumeric(name, major, minor, build, servicePack, error));
    EXPECT_EQ(name, string("Windows ") + row.name);
    EXPECT_THAT((std::vector{major, minor, build}), ElementsAre(row.major, row.minor, 99));
    EXPECT_EQ(servicePack, "Service Pack 2");
  }
  machine.failing["GetVersionExA148"] = 120;
  EXPECT_FALSE(platformOSVersionNumeric(name, major, minor, build, servicePack, error));
  EXPECT_EQ(error, 120);
  EXPECT_EQ(name + servicePack, "");
  EXPECT_EQ(major + minor + build, 0u);
  EXPECT_TRUE(platformOSDistribution(name = "before", error));
  EXPECT_EQ(name, "");
}

TEST_F(OSIdentity, UnameHasItsSystemNames) {
  const struct {
    std::uint32_t platform, major, minor;
    const char* name;
  } rows[] = {{1, 4, 0, "Windows 95"},
              {1, 4, 10, "Windows 98"},
              {1, 4, 90, "Windows ME"},
              {1, 4, 3, "Windows 9x???"},
              {1, 5, 0, "before"},
              {2, 4, 10, "Windows NT"},
              {2, 5, 0, "Windows 2000"},
              {2, 5, 1, "Windows XP"},
              {2, 5, 2, "Windows 2000 ???"},
              {2, 6, 1, "Windows NT ???"},
              {2, 3, 51, "Windows NT ???"},
              {0, 4, 0, "???"},
              {3, 5, 1, "???"}};
  for (const auto& row : rows) {
    LD_utsname_s uname = kBefore;
    setVersion(row.platform, row.major, row.minor);
    ASSERT_TRUE(platformUname(uname, error));
    EXPECT_STREQ(uname.sysname, row.name) << row.platform << ' ' << row.major << '.' << row.minor;
    EXPECT_EQ(uname.release, std::to_string(row.major) + '.' + std::to_string(row.minor));
  }
}

TEST_F(OSIdentity, UnameHasItsMachines) {
  const struct {
    std::uint16_t architecture;
    std::uint32_t major, type, count;
    const char* text;
  } rows[] = {{0, 4, 586, 1, "Intel: x86 Family 6 Model 15 Stepping 11"},
              {0, 6, 586, 2, "Intel: x86 Family 6 Model 15 Stepping 11: CPUs 2"},
              {0, 3, 586, 2, "Intel: x86 Family"},
              {0, 3, 486, 2, "Intel: "},
              {1, 4, 0, 2, "MIPS"},
              {2, 4, 0, 1, "Alpha 6"},
              {2, 3, 0, 4, "Alpha 6: CPUs 4"},
              {3, 4, 0, 2, "PPC"},
              {6, 5, 0, 2, "Intel: Itanium Family 6: CPUs 2"},
              {6, 4, 0, 2, "Intel: : CPUs 2"},
              {6, 4, 0, 1, "Intel: "},
              {9, 6, 8664, 8, "??? ???"},
              {4, 6, 0, 2, "??? ???"},
              {0xFFFF, 6, 0, 2, "??? ???"}};
  for (const auto& row : rows) {
    LD_utsname_s uname;
    setVersion(2, row.major, 0);
    machine.processor = {row.architecture, row.count, row.type, 6, 0x0F0B};
    ASSERT_TRUE(platformUname(uname, nullptr));
    EXPECT_STREQ(uname.machine, row.text) << row.architecture << ' ' << row.major;
  }
}

TEST_F(OSIdentity, UnameFitsItsFields) {
  string cut;
  for (int i = 0; i < 81; ++i) cut += "\xE4\xB8\x80";
  const struct {
    std::u16string servicePack;
    string version;
  } rows[] = {{u"Service Pack 2", "Build 2600: Service Pack 2"},
              {u"", "Build 2600: "},
              {u"\xD83D", "Build 2600: \xEF\xBF\xBD"},
              {std::u16string(128, u'\u4E00'), "Build 2600: " + cut}};  // one more would pass 257 bytes
  machine.version.dwBuildNumber = 2600;
  machine.computerName = string(300, 'c');
  for (const auto& row : rows) {
    machine.wideServicePack = testing::wide(row.servicePack);
    LD_utsname_s uname;
    ASSERT_TRUE(platformUname(uname, error));
    EXPECT_EQ(uname.version, row.version);
    EXPECT_EQ(uname.nodename, string(257, 'c'));
    EXPECT_STREQ(uname.hostid, "A010203");
  }
}

TEST_F(OSIdentity, UnameKeepsWhatItFilledBeforeAFailure) {
  machine.computerName = "BOX";
  const struct {
    const char* operation;
    const char* nodename;
    ZQLE_SeverityLevel severity;
  } rows[] = {{"gethostbyname", "before", ZQLE_MINOR},  // the number alone
              {"GetComputerNameA", "before", ZQLE_CRITICAL},
              {"GetVersionExW276", "BOX", ZQLE_CRITICAL}};
  for (const auto& row : rows) {
    machine.failing = {{row.operation, 1722}};
    for (const bool withError : {true, false}) {
      LD_utsname_s uname = kBefore;
      ZQLastError lastError(5, ZQLE_MINOR);
      error = 7;
      EXPECT_FALSE(withError ? platformUname(uname, &lastError) : platformUname(uname, error));
      EXPECT_EQ(withError ? lastError.number() : static_cast<std::uint32_t>(error), 1722u) << row.operation;
      if (withError) {
        EXPECT_EQ(lastError.severity(), row.severity) << row.operation;
      }
      EXPECT_STREQ(uname.nodename, row.nodename);
      for (const char* field : {uname.sysname, uname.release, uname.version, uname.machine, uname.hostid}) {
        EXPECT_STREQ(field, "before");
      }
    }
    LD_utsname_s uname;
    EXPECT_FALSE(platformUname(uname, nullptr));
  }
}

}  // namespace
}  // namespace kdx
