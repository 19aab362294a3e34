#include "kdxcommon/platform/os_identity.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <sstream>
#include <utility>

#include "kdxcommon/testing/fake_machine.h"

namespace kdx {
namespace {

using OSIdentity = testing::FakeMachine;

constexpr LD_utsname_s kBefore = {"before", "before", "before", "before", "before", "before"};

// Platform, major, minor, product type (9: the larger record is refused), suite, edition and text.
constexpr char kProducts[] = R"(
1 4 0 1 0 8 95;              3 4 0 9 0 8 95;               2 4 0 9 0 1 NT;                    2 4 0 1 0 12 NT Workstation;
2 4 0 2 0 19 NT Domain Controller;                         2 4 0 3 0 11 NT Server;            2 4 0 4 0 1 NT;
1 4 10 1 0 9 98;             1 4 90 9 0 7 ME;              2 4 3 1 0 10 4.3;                  2 5 0 9 2 2 2000;
2 5 0 1 2 13 2000 Professional;                            2 5 0 2 2 20 2000 Domain Controller;
2 5 0 3 0x82 15 2000 Advanced Server;                      2 5 0 3 0x180 16 2000 Datacenter Server;
2 5 0 3 0x400 14 2000 Server;                              2 5 0 0 2 2 2000;                  2 5 1 9 0x200 10 5.1;
2 5 1 1 0x200 17 XP Home Edition;                          2 5 1 1 0x300 18 XP Professional;  2 5 1 3 0x200 10 5.1;
2 5 2 1 0x482 21 Server 2003 family Enterprise Edition;    2 5 2 9 2 10 5.2;
2 5 2 3 0x480 22 Server 2003 family Datacenter Edition;    2 5 3 1 0 10 5.3;
2 5 2 3 0x400 24 Server 2003 family Web Edition;           2 5 2 2 0x200 23 Server 2003 family;
2 6 0 9 0 0 Vista Or Windows Server 2008;                  2 6 0 1 0 28 Vista;                2 6 0 3 0 29 Server 2008;
2 6 1 9 0 0 7 Or Windows Server 2008 R2;                   2 6 1 1 0 28 7;                    2 6 1 2 0 29 Server 2008 R2;
2 6 2 1 0 0;                 2 7 0 1 0 10 7.0;             2 10 0 9 0 10 10.0;                2 3 51 1 0 10 3.51;
2 0xFFFFFFFF 0 1 0 10 -1.0;)";

// All of them, for a comparison.
auto fields(const LD_OSInformation_s& record) {
  return std::tie(record.vendor, record.name, record.majorVersion, record.minorVersion, record.buildNumber,
                  record.servicePack, record.servicePackMajor, record.servicePackMinor, record.family, record.edition);
}

TEST_F(OSIdentity, EveryProductHasItsTextAndEdition) {
  std::istringstream rows(kProducts);
  rows.unsetf(std::ios::basefield);
  std::ranges::fill(version.szCSDVersion, 'x');  // without a NUL
  LD_OSInformation_s information;
  std::uint16_t type;
  std::int32_t edition, count = 0;
  for (string name; rows >> version.dwPlatformId >> version.dwMajorVersion >> version.dwMinorVersion >> type >>
                    version.wSuiteMask >> edition;
       ++count) {
    std::getline(rows, name, ';');
    const std::size_t family = name.find(" family");
    const bool extended = type != 9, asksForRelease = family < name.size();
    version.wProductType = static_cast<std::uint8_t>(type);
    failing = {{extended ? "" : "GetVersionExA156", 87}};
    for (secondRelease = 0; secondRelease < 2; ++secondRelease) {
      releaseAsked = 0;
      EXPECT_TRUE(platformOSInformation(information, error));
      EXPECT_EQ(fields(information),
                fields({"Microsoft Corporation", "Windows" + name, version.dwMajorVersion, version.dwMinorVersion, 2600,
                        string(128, 'x'), extended ? 2u : 0, extended ? 3u : 0, 1, edition}));
      EXPECT_EQ(releaseAsked, asksForRelease ? 1 : 0) << name;
      if (asksForRelease) name.insert(family, " R2");
    }
  }
  EXPECT_TRUE(count == 38 && error == 7);
}

// Platform, major, minor, system name and short name.
constexpr char kNames[] = R"(
1 4 0 Windows 95|95;     1 4 10 Windows 98|98;      1 4 90 Windows ME|ME;    1 4 3 Windows 9x???|???;  1 5 0 before|2000;
2 4 0 Windows NT|NT;     2 4 90 Windows NT|ME;      2 5 0 Windows 2000|2000; 2 5 1 Windows XP|XP;      3 5 1 ???|XP;
2 6 0 Windows NT ???|???; 2 3 51 Windows NT ???|???; 0 4 0 ???|95;           2 5 3 Windows 2000 ???|???;
2 5 2 Windows 2000 ???|Server 2003 family;)";

TEST_F(OSIdentity, UnameAndShortNameGoByRulesOfTheirOwn) {
  std::istringstream rows(kNames);
  string systemName, name, servicePack, distribution = "before";
  std::uint32_t major, minor, build;
  int count = 0;
  for (string shortName; rows >> version.dwPlatformId >> version.dwMajorVersion >> version.dwMinorVersion >> std::ws &&
                         std::getline(rows, systemName, '|') && std::getline(rows, shortName, ';');
       ++count) {
    LD_utsname_s uname = kBefore;
    ASSERT_TRUE(platformUname(uname, error) && platformOSVersionNumeric(name, major, minor, build, servicePack, error));
    EXPECT_EQ(uname.sysname, systemName);
    EXPECT_EQ(uname.release, std::to_string(major) + '.' + std::to_string(minor));
    EXPECT_EQ(name + ", " + servicePack, "Windows " + shortName + ", Service Pack 2");
    EXPECT_TRUE(major == version.dwMajorVersion && minor == version.dwMinorVersion && build == 2600);
  }
  EXPECT_TRUE(count == 15 && error == 7);
}

// The kernel's release, and what becomes of it.
constexpr char kKernels[] =
    "6.1.0-18-amd64 6.1.0,-18-amd64;    4.18.0-513.el8.x86_64 4.18.0,-513.el8.x86_64;    6.9-rc1 6.9.0,-rc1; "
    "2.6.32.59-0.7-default 2.6.32,.59-0.7-default;    5..3 5.0.0,..3;    7. 7.0.0,.;    v5 0.0.0,v5; "
    "4294967296.4294967295 0.4294967295.0,;";

TEST_F(OSIdentity, OnLinuxTheDistributionAndTheKernelAnswer) {
  const auto allEnd = [](int number) {
    return std::map<string, int>{
        {"GetVersionExA156", number}, {"GetVersionExA148", number}, {"GetVersionExW276", number}};
  };
  failing = allEnd(ENOSYS);
  LD_OSInformation_s information;
  LD_utsname_s uname;
  string name, servicePack, distribution;
  std::uint32_t major, minor, build;
  kernel = {"Linux", "node", string(300, 'r'), "#1 SMP", "x86_64"};
  ASSERT_TRUE(platformUname(uname, error));
  EXPECT_EQ(uname.sysname + string(uname.nodename) + uname.version + uname.machine + uname.hostid,
            "Linuxnode#1 SMPx86_64A010203");
  EXPECT_EQ(uname.release, string(257, 'r'));
  kernel.machine = string(300, '\x80');  // of which no character begins
  EXPECT_TRUE(platformUname(uname, error) && uname.machine == string());
  std::istringstream rows(kKernels);
  for (string texts; rows >> kernel.release >> std::ws && std::getline(rows, texts, ';');) {
    ASSERT_TRUE(platformOSVersionNumeric(name, major, minor, build, servicePack, error));
    EXPECT_EQ(
        name + std::to_string(major) + '.' + std::to_string(minor) + '.' + std::to_string(build) + ',' + servicePack,
        "Linux" + texts);
  }
  osRelease = "PRETTY_NAME='Debian 12'\nNAME=Debian\nVERSION_ID=12.3\nVERSION_CODENAME=bookworm\nBUILD_ID=4";
  ASSERT_TRUE(platformOSInformation(information, error) && platformOSDistribution(distribution, error));
  EXPECT_EQ(fields(information), fields({"Debian", "Debian 12", 12, 3, 4, "bookworm", 0, 0, 2, 0}));
  EXPECT_EQ(distribution, "Debian 12");
  failing["os-release"] = 2;
  ASSERT_TRUE(platformOSInformation(information, error) && platformOSDistribution(distribution, error));
  EXPECT_EQ(fields(information), fields({"Unknown Vendor Name", "Linux", 0, 0, 0, "", 0, 0, 2, 0}));
  EXPECT_TRUE(distribution.empty() && error == 7);
  failing["uname"] = 14;
  EXPECT_TRUE(!platformUname(uname, error) && error == 14);
}

TEST_F(OSIdentity, UnameFitsItsFieldsAndKeepsWhatItFilledBeforeAFailure) {
  string text;
  for (int i = 0; i < 81; ++i) text += i == 0 ? "\xEF\xBF\xBD" : "\xE4\xB8\x80";  // one more would pass 257 bytes
  const string nodeName(257, 'c');
  ownName = string(300, 'c');
  wideServicePack = wstring(128, wchar{0x4E00});
  wideServicePack[0] = 0xD83D;  // half a pair
  LD_utsname_s uname;
  std::memset(static_cast<void*>(&uname), 'x', sizeof uname);
  ASSERT_TRUE(platformUname(uname, error));
  EXPECT_EQ(uname.version, "Build 2600: " + text);
  EXPECT_EQ(uname.nodename, nodeName);
  EXPECT_STREQ(uname.hostid, "A010203");
  EXPECT_TRUE(platformOSDistribution(text, error) && text.empty());
  for (const auto& [operation, node, severity] : {std::tuple("gethostbyname", string("before"), ZQLE_MINOR),
                                                  {"GetComputerNameA", "before", ZQLE_CRITICAL},
                                                  {"GetVersionExW276", nodeName, ZQLE_CRITICAL}}) {
    failing = {{operation, 1722}};
    lastError = ZQLastError(error = 5, ZQLE_MINOR);
    uname = kBefore;
    EXPECT_FALSE(platformUname(uname, &lastError) || platformUname(uname, nullptr) || platformUname(uname, error));
    EXPECT_TRUE(error == 1722 && lastError.number() == 1722 && lastError.severity() == severity) << operation;
    EXPECT_EQ(uname.nodename + string(uname.sysname) + uname.release, node + "beforebefore");
  }
}

}  // namespace
}  // namespace kdx
