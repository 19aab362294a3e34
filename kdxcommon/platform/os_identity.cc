#include "kdxcommon/platform/os_identity.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <span>

#include "kdxcommon/base/transcoder.h"
#include "kdxcommon/inhouse/zqlib/last_error.h"
#include "kdxcommon/os/operating_system.h"
#include "kdxcommon/platform/expected_fact.h"
#include "kdxcommon/platform/failure.h"
#include "kdxcommon/platform/hosts.h"
#include "kdxcommon/platform/linux_facts.h"
#include "kdxcommon/platform/processor_text.h"

namespace kdx {
namespace {

using enum ProcessorDetail;

constexpr std::uint32_t kPlatformNt = 2;

// In every table the first matching row applies, and the last row matches everything. A row names only the facts that
// it tests.

// The products of `platformOSInformation`.

struct SuiteTest {
  std::uint32_t mask = 0, value = 0;
};
constexpr SuiteTest kEnterprise = {0x0002, 0x0002}, kDatacenter = {0x0080, 0x0080}, kBlade = {0x0400, 0x0400},
                    kPersonalAlone = {0xFFFF, 0x0200};

constexpr std::uint32_t kWorkstation = 1, kDomainController = 2, kServer = 3;
constexpr const char* kVersionNumbers = nullptr;  // " 5.1"

struct Product {
  ExpectedFact major = kAny, minor = kAny;
  bool plain = false;        // matches only if the system didn't fill the fields of the larger record
  bool otherThanNt = false;  // matches only platforms other than NT
  ExpectedFact type = kAny;
  SuiteTest suite = {};
  const char* name = kVersionNumbers;
  const char* server2003 = nullptr;  // replaces `name`: the edition of Server 2003, which may be R2
  std::int32_t edition = 0;
};

constexpr Product kProducts[] = {
    {.major = 4, .minor = 0, .otherThanNt = true, .name = " 95", .edition = 8},
    {.major = 4, .minor = 0, .plain = true, .name = " NT", .edition = 1},
    {.major = 4, .minor = 0, .type = kWorkstation, .name = " NT Workstation", .edition = 12},
    {.major = 4, .minor = 0, .type = kDomainController, .name = " NT Domain Controller", .edition = 19},
    {.major = 4, .minor = 0, .type = kServer, .name = " NT Server", .edition = 11},
    {.major = 4, .minor = 0, .name = " NT", .edition = 1},
    {.major = 4, .minor = 10, .name = " 98", .edition = 9},
    {.major = 4, .minor = 90, .name = " ME", .edition = 7},
    {.major = 5, .minor = 0, .plain = true, .name = " 2000", .edition = 2},
    {.major = 5, .minor = 0, .type = kWorkstation, .name = " 2000 Professional", .edition = 13},
    {.major = 5, .minor = 0, .type = kDomainController, .name = " 2000 Domain Controller", .edition = 20},
    {.major = 5, .minor = 0, .type = kServer, .suite = kEnterprise, .name = " 2000 Advanced Server", .edition = 15},
    {.major = 5, .minor = 0, .type = kServer, .suite = kDatacenter, .name = " 2000 Datacenter Server", .edition = 16},
    {.major = 5, .minor = 0, .type = kServer, .name = " 2000 Server", .edition = 14},
    {.major = 5, .minor = 0, .name = " 2000", .edition = 2},
    {.major = 5, .minor = 1, .plain = true, .edition = 10},
    {.major = 5, .minor = 1, .type = kWorkstation, .suite = kPersonalAlone, .name = " XP Home Edition", .edition = 17},
    {.major = 5, .minor = 1, .type = kWorkstation, .name = " XP Professional", .edition = 18},
    {.major = 5, .minor = 2, .plain = true, .edition = 10},
    {.major = 5, .minor = 2, .suite = kEnterprise, .server2003 = " Enterprise Edition", .edition = 21},
    {.major = 5, .minor = 2, .suite = kDatacenter, .server2003 = " Datacenter Edition", .edition = 22},
    {.major = 5, .minor = 2, .suite = kBlade, .server2003 = " Web Edition", .edition = 24},
    {.major = 5, .minor = 2, .server2003 = "", .edition = 23},
    {.major = 6, .minor = 0, .plain = true, .name = " Vista Or Windows Server 2008"},
    {.major = 6, .minor = 0, .type = kWorkstation, .name = " Vista", .edition = 28},
    {.major = 6, .minor = 0, .name = " Server 2008", .edition = 29},
    {.major = 6, .minor = 1, .plain = true, .name = " 7 Or Windows Server 2008 R2"},
    {.major = 6, .minor = 1, .type = kWorkstation, .name = " 7", .edition = 28},
    {.major = 6, .minor = 1, .name = " Server 2008 R2", .edition = 29},
    {.major = 6, .name = ""},
    {.edition = 10},
};

const Product& productOf(const os::OSVERSIONINFOEXA& version, bool extended) {
  return *std::find_if(std::begin(kProducts), std::end(kProducts), [&](const Product& row) {
    return fits(row.major, version.dwMajorVersion) && fits(row.minor, version.dwMinorVersion) &&
           !(row.plain && extended) && !(row.otherThanNt && version.dwPlatformId == kPlatformNt) &&
           fits(row.type, version.wProductType) && (version.wSuiteMask & row.suite.mask) == row.suite.value;
  });
}

// The texts of `platformUname` and of `platformOSVersionNumeric`.

struct VersionRow {
  ExpectedFact platformId = kAny, major = kAny, minor = kAny;
  const char* text;
};

constexpr const char* kNotWritten = nullptr;

constexpr VersionRow kSystemNames[] = {
    {.platformId = 1, .major = 4, .minor = 0, .text = "Windows 95"},
    {.platformId = 1, .major = 4, .minor = 10, .text = "Windows 98"},
    {.platformId = 1, .major = 4, .minor = 90, .text = "Windows ME"},
    {.platformId = 1, .major = 4, .text = "Windows 9x???"},
    {.platformId = 1, .text = kNotWritten},
    {.platformId = 2, .major = 4, .text = "Windows NT"},
    {.platformId = 2, .major = 5, .minor = 0, .text = "Windows 2000"},
    {.platformId = 2, .major = 5, .minor = 1, .text = "Windows XP"},
    {.platformId = 2, .major = 5, .text = "Windows 2000 ???"},
    {.platformId = 2, .text = "Windows NT ???"},
    {.text = "???"},
};

constexpr VersionRow kShortNames[] = {
    {.platformId = kPlatformNt, .major = 4, .minor = 0, .text = "NT"},
    {.major = 4, .minor = 0, .text = "95"},
    {.major = 4, .minor = 10, .text = "98"},
    {.major = 4, .minor = 90, .text = "ME"},
    {.major = 5, .minor = 0, .text = "2000"},
    {.major = 5, .minor = 1, .text = "XP"},
    {.major = 5, .minor = 2, .text = "Server 2003 family"},
    {.text = "???"},
};

template <typename Version>
const char* textOf(std::span<const VersionRow> rows, const Version& version) {
  return std::find_if(rows.begin(), rows.end(),
                      [&](const VersionRow& row) {
                        return fits(row.platformId, version.dwPlatformId) && fits(row.major, version.dwMajorVersion) &&
                               fits(row.minor, version.dwMinorVersion);
                      })
      ->text;
}

// `platformTypeOfCPU` has its own table, with other texts and with x64.
constexpr ProcessorRow kMachines[] = {
    {.architecture = 0, .leastMajor = 4, .text = "Intel: x86 Family", .detail = kLevelModelStepping, .counted = true},
    {.architecture = 0, .type = 586, .text = "Intel: x86 Family"},
    {.architecture = 0, .text = "Intel: "},
    {.architecture = 1, .text = "MIPS"},
    {.architecture = 2, .text = "Alpha", .detail = kLevel, .counted = true},
    {.architecture = 3, .text = "PPC"},
    {.architecture = 6, .leastMajor = 5, .text = "Intel: Itanium Family", .detail = kLevel, .counted = true},
    {.architecture = 6, .text = "Intel: ", .counted = true},
    {.text = "??? ???"},
};

// Returns the text in `field`, which doesn't need a terminating NUL.
template <typename Unit, std::size_t size>
std::basic_string_view<Unit> textIn(const Unit (&field)[size]) {
  return {field, static_cast<std::size_t>(std::find(field, field + size, Unit{}) - field)};
}

// Sets `field` to `text`, truncated between two UTF-8 characters if it doesn't fit, and terminates it.
template <std::size_t size>
void put(char (&field)[size], string_view text) {
  std::size_t length = std::min(text.size(), size - 1);
  const auto insideCharacter = [&] { return length < text.size() && (text[length] & 0xC0) == 0x80; };
  while (length > 0 && insideCharacter()) --length;
  *std::copy_n(text.data(), length, field) = '\0';
}

// The texts show version numbers as signed 32-bit numbers, the `long` of Windows.
int signedNumber(std::uint32_t number) {
  return static_cast<std::int32_t>(number);
}

void describe(const os::OSVERSIONINFOEXA& version, bool extended, LD_OSInformation_s& information) {
  const Product& product = productOf(version, extended);
  information.edition = product.edition;
  if (product.server2003) {
    const bool secondRelease = os::OperatingSystem::current().GetSystemMetrics(os::kSystemMetricServerR2) > 0;
    information.name += (secondRelease ? " Server 2003 R2 family" : " Server 2003 family") + string(product.server2003);
  } else if (product.name == kVersionNumbers) {
    information.name += ' ' + std::to_string(signedNumber(version.dwMajorVersion)) + '.' +
                        std::to_string(signedNumber(version.dwMinorVersion));
  } else {
    information.name += product.name;
  }
}

bool fillFromWindows(LD_utsname_s& uname) {
  os::OperatingSystem& system = os::OperatingSystem::current();
  os::OSVERSIONINFOW version{.dwOSVersionInfoSize = os::kVersionInfoSizeW};
  if (!system.GetVersionExW(version)) return false;
  const int major = signedNumber(version.dwMajorVersion), minor = signedNumber(version.dwMinorVersion);
  std::snprintf(uname.release, sizeof uname.release, "%d.%d", major, minor);
  string servicePack;
  utf16ToUtf8Replacing(textIn(version.szCSDVersion), servicePack);
  put(uname.version, "Build " + std::to_string(signedNumber(version.dwBuildNumber)) + ": " + servicePack);
  if (const char* name = textOf(kSystemNames, version); name != kNotWritten) put(uname.sysname, name);
  os::SYSTEM_INFO processor;
  system.GetSystemInfo(processor);
  put(uname.machine, processorText(kMachines, version.dwMajorVersion, processor));
  return true;
}

bool fillFromKernel(LD_utsname_s& uname) {
  os::utsname kernel;
  if (os::OperatingSystem::current().uname(kernel) != 0) return false;
  put(uname.sysname, kernel.sysname);
  put(uname.nodename, kernel.nodename);
  put(uname.release, kernel.release);
  put(uname.version, kernel.version);
  put(uname.machine, kernel.machine);
  return true;
}

enum class Uname { kFilled, kNoHostId, kSystemFailed };

// Sets `error` unless the result is kFilled.
Uname fillUname(LD_utsname_s& uname, int& error) {
  std::uint32_t hostid = 0;
  if (!platformHostid(hostid, error)) return Uname::kNoHostId;
  std::uint32_t size = sizeof uname.nodename - 1;
  const bool named = os::OperatingSystem::current().GetComputerNameA(uname.nodename, size);
  if (named) *(std::end(uname.nodename) - 1) = '\0';
  if (!named || !(fillFromWindows(uname) || (isOtherThanWindows() && fillFromKernel(uname)))) {
    failWithSystemError(error);
    return Uname::kSystemFailed;
  }
  std::snprintf(uname.hostid, sizeof uname.hostid, "%X", hostid);
  return Uname::kFilled;
}

}  // namespace

bool platformOSInformation(LD_OSInformation_s& information, int& error) {
  information = {};
  information.vendor = "Unknown Vendor Name";
  information.name = "Unknown Operating System";
  os::OSVERSIONINFOEXA version;
  const bool extended = readWindowsVersion(os::kVersionInfoSizeExA, version);
  if (!extended && !readWindowsVersion(os::kVersionInfoSizeA, version)) {
    if (!isOtherThanWindows()) return failWithSystemError(error);
    describeLinux(distributionRelease(), information);
    return true;
  }
  if (extended) {
    information.servicePackMajor = version.wServicePackMajor;
    information.servicePackMinor = version.wServicePackMinor;
  }
  information.vendor = "Microsoft Corporation";
  information.majorVersion = version.dwMajorVersion;
  information.minorVersion = version.dwMinorVersion;
  information.buildNumber = version.dwBuildNumber;
  information.servicePack = textIn(version.szCSDVersion);
  information.name = "Windows";
  information.family = 1;
  describe(version, extended, information);
  return true;
}

bool platformUname(LD_utsname_s& uname, int& error) {
  return fillUname(uname, error) == Uname::kFilled;
}

bool platformUname(LD_utsname_s& uname, ZQLastError* lastError) {
  int error = 0;
  const Uname result = fillUname(uname, error);
  if (result == Uname::kFilled) return true;
  const auto number = static_cast<std::uint32_t>(error);
  if (result == Uname::kSystemFailed) return failWith(number, lastError);
  if (lastError) lastError->setNumber(number);
  return false;
}

bool platformOSVersionNumeric(string& name, std::uint32_t& major, std::uint32_t& minor, std::uint32_t& build,
                              string& servicePack, int& error) {
  major = minor = build = 0;
  name.clear();
  servicePack.clear();
  os::OSVERSIONINFOEXA version;
  if (!readWindowsVersion(os::kVersionInfoSizeA, version)) {
    os::utsname kernel;
    if (!isOtherThanWindows() || os::OperatingSystem::current().uname(kernel) != 0) return failWithSystemError(error);
    const VersionNumbers numbers = parseVersion(kernel.release);
    name = "Linux";
    major = numbers.major;
    minor = numbers.minor;
    build = numbers.patch;
    servicePack = numbers.rest;
    return true;
  }
  major = version.dwMajorVersion;
  minor = version.dwMinorVersion;
  build = version.dwBuildNumber;
  servicePack = textIn(version.szCSDVersion);
  name = string("Windows ") + textOf(kShortNames, version);
  return true;
}

bool platformOSDistribution(string& distribution, int& /*error*/) {
  os::OSVERSIONINFOEXA version;
  const bool onLinux = !readWindowsVersion(os::kVersionInfoSizeA, version) && isOtherThanWindows();
  distribution = onLinux ? distributionRelease().prettyName : "";
  return true;
}

}  // namespace kdx
