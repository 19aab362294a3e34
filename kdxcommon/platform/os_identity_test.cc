#include "kdxcommon/platform/os_identity.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <sstream>

#include "kdxcommon/inhouse/zqlib/last_error.h"
#include "kdxcommon/testing/fake_machine.h"
#include "kdxcommon/testing/wide_text.h"

namespace kdx {
namespace {

constexpr LD_utsname_s kBefore = {"before", "before", "before", "before", "before", "before"};

struct OSIdentity : ::testing::Test {
  std::istream& readVersion(std::istream& row) {
    OSVERSIONINFOEXA& version = machine.version;
    return row >> version.dwPlatformId >> version.dwMajorVersion >> version.dwMinorVersion;
  }

  testing::FakeMachine machine;
  ScopedOperatingSystem scope{machine};
  int error = 7;
};

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

TEST_F(OSIdentity, EveryProductHasItsTextAndEdition) {
  std::istringstream rows(kProducts);
  rows.unsetf(std::ios::basefield);
  std::uint16_t type;
  std::int32_t edition, count = 0;
  for (string name; readVersion(rows) >> type >> machine.version.wSuiteMask >> edition; ++count) {
    std::getline(rows, name, ';');
    const std::size_t family = name.find(" family");
    machine.version.wProductType = static_cast<std::uint8_t>(type);
    machine.failing = {{type == 9 ? "GetVersionExA156" : "", 87}};
    for (const int release : {0, 1}) {
      machine.secondRelease = release;
      machine.asked.clear();
      LD_OSInformation_s information;
      EXPECT_TRUE(platformOSInformation(information, error));
      EXPECT_TRUE(information.name == "Windows" + name && information.edition == edition) << information.name << name;
      EXPECT_EQ(std::ranges::count(machine.asked, "GetSystemMetrics"), family < name.size() ? 1 : 0) << name;
      if (release == 0 && family < name.size()) name.insert(family, " R2");
    }
  }
  EXPECT_EQ(count, 38);
}

TEST_F(OSIdentity, TheSmallerRecordServesWhereTheLargerIsRefused) {
  machine.version.wServicePackMajor = 2;
  std::ranges::fill(machine.version.szCSDVersion, 'x');
  LD_OSInformation_s information;
  for (const std::uint32_t servicePack : {2u, 0u}) {
    ASSERT_TRUE(platformOSInformation(information, error));
    EXPECT_EQ(information.vendor + ", " + information.servicePack, "Microsoft Corporation, " + string(128, 'x'));
    EXPECT_TRUE(information.buildNumber == 2600 && information.servicePackMajor == servicePack);
    EXPECT_EQ(information.family, 1);
    machine.failing["GetVersionExA156"] = 87;
  }
  machine.failing["GetVersionExA148"] = 120;
  EXPECT_TRUE(!platformOSInformation(information, error) && error == 120);
  EXPECT_EQ(information.vendor + ", " + information.name, "Unknown Vendor Name, Unknown Operating System");
  EXPECT_TRUE(information.servicePack.empty() && information.buildNumber == 0);
  EXPECT_EQ(information.family + information.edition, 0);
}

// Platform, major, minor, system name and short name.
constexpr char kNames[] = R"(
1 4 0 Windows 95|95;     1 4 10 Windows 98|98;      1 4 90 Windows ME|ME;    1 4 3 Windows 9x???|???;  1 5 0 before|2000;
2 4 0 Windows NT|NT;     2 4 90 Windows NT|ME;      2 5 0 Windows 2000|2000; 2 5 1 Windows XP|XP;      3 5 1 ???|XP;
2 6 0 Windows NT ???|???; 2 3 51 Windows NT ???|???; 0 4 0 ???|95;           2 5 3 Windows 2000 ???|???;
2 5 2 Windows 2000 ???|Server 2003 family;)";

TEST_F(OSIdentity, UnameAndShortNameGoByRulesOfTheirOwn) {
  std::istringstream rows(kNames);
  string systemName, shortName, name, servicePack, distribution = "before";
  std::uint32_t major, minor, build;
  int count = 0;
  for (; std::getline(readVersion(rows) >> std::ws, systemName, '|') && std::getline(rows, shortName, ';'); ++count) {
    LD_utsname_s uname = kBefore;
    ASSERT_TRUE(platformUname(uname, error) && platformOSVersionNumeric(name, major, minor, build, servicePack, error));
    EXPECT_EQ(uname.sysname, systemName);
    EXPECT_EQ(uname.release, std::to_string(major) + '.' + std::to_string(minor));
    EXPECT_EQ(name + ", " + servicePack, "Windows " + shortName + ", Service Pack 2");
    EXPECT_TRUE(major == machine.version.dwMajorVersion && minor == machine.version.dwMinorVersion && build == 2600);
  }
  EXPECT_EQ(count, 15);
  machine.failing["GetVersionExA148"] = 120;
  EXPECT_FALSE(platformOSVersionNumeric(name, major, minor, build, servicePack, error));
  EXPECT_TRUE(platformOSDistribution(distribution, error) && error == 120);
  EXPECT_EQ(name + servicePack + distribution + std::to_string(major + minor + build), "0");
}

TEST_F(OSIdentity, UnameFitsItsFieldsAndKeepsWhatItFilledBeforeAFailure) {
  string cut;
  for (int i = 0; i < 81; ++i) cut += "\xE4\xB8\x80";  // one more would pass 257 bytes
  LD_utsname_s uname;
  machine.computerName = string(300, 'c');
  for (const auto& [servicePack, text] :
       {std::pair(std::u16string(1, 0xD83D), string("\xEF\xBF\xBD")), {std::u16string(128, u'\u4E00'), cut}}) {
    machine.wideServicePack = testing::wide(servicePack);
    std::memset(&uname, 'x', sizeof uname);
    ASSERT_TRUE(platformUname(uname, error));
    EXPECT_EQ(uname.version, "Build 2600: " + text);
    EXPECT_EQ(uname.nodename + string(uname.hostid), string(257, 'c') + "A010203");
  }
  for (const auto& [operation, nodename, severity] : {std::tuple("gethostbyname", string("before"), ZQLE_MINOR),
                                                      {"GetComputerNameA", "before", ZQLE_CRITICAL},
                                                      {"GetVersionExW276", string(257, 'c'), ZQLE_CRITICAL}}) {
    machine.failing = {{operation, 1722}};
    ZQLastError lastError(error = 5, ZQLE_MINOR);
    uname = kBefore;
    EXPECT_FALSE(platformUname(uname, &lastError) || platformUname(uname, nullptr) || platformUname(uname, error));
    EXPECT_TRUE(error == 1722 && lastError.number() == 1722 && lastError.severity() == severity) << operation;
    EXPECT_EQ(uname.nodename + string(uname.sysname) + uname.release, nodename + "beforebefore");
  }
}

}  // namespace
}  // namespace kdx
