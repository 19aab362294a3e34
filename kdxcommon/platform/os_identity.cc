#include "kdxcommon/platform/os_identity.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <span>

#include "kdxcommon/base/transcoder.h"
#include "kdxcommon/inhouse/zqlib/last_error.h"
#include "kdxcommon/os/operating_system.h"
#include "kdxcommon/platform/failure.h"
#include "kdxcommon/platform/hosts.h"
#include "kdxcommon/platform/processor_text.h"

namespace kdx {
namespace {

using enum ProcessorDetail;

constexpr std::int64_t kAny = -1;
constexpr std::uint32_t kPlatformNt = 2;

bool fits(std::int64_t expected, std::uint32_t value) {
  return expected == kAny || expected == value;
}

// In every table the first row that fits counts, and the last fits everything.

// The products of `platformOSInformation`.

enum Extended { kPlain, kExtended, kEither };  // whether the system told the fields of the larger record
enum Platform { kAnyPlatform, kOtherThanNt };

struct SuiteTest {
  std::uint32_t mask, value;
};
constexpr SuiteTest kAnySuite = {0, 0}, kEnterprise = {0x0002, 0x0002}, kDatacenter = {0x0080, 0x0080},
                    kBlade = {0x0400, 0x0400}, kPersonalAlone = {0xFFFF, 0x0200};

constexpr std::int64_t kWorkstation = 1, kDomainController = 2, kServer = 3;
constexpr const char* kVersionNumbers = nullptr;  // " 5.1"

struct Product {
  std::int64_t major, minor;
  Extended extended;
  Platform platform;
  std::int64_t type;
  SuiteTest suite;
  const char* name;
  const char* secondRelease;  // stands on a second release; empty where that is not asked
  const char* editionName;
  std::int32_t edition;
};

constexpr Product kProducts[] = {
    {4, 0, kEither, kOtherThanNt, kAny, kAnySuite, " 95", "", "", 8},
    {4, 0, kPlain, kAnyPlatform, kAny, kAnySuite, " NT", "", "", 1},
    {4, 0, kExtended, kAnyPlatform, kWorkstation, kAnySuite, " NT", "", " Workstation", 12},
    {4, 0, kExtended, kAnyPlatform, kDomainController, kAnySuite, " NT", "", " Domain Controller", 19},
    {4, 0, kExtended, kAnyPlatform, kServer, kAnySuite, " NT", "", " Server", 11},
    {4, 0, kExtended, kAnyPlatform, kAny, kAnySuite, " NT", "", "", 1},
    {4, 10, kEither, kAnyPlatform, kAny, kAnySuite, " 98", "", "", 9},
    {4, 90, kEither, kAnyPlatform, kAny, kAnySuite, " ME", "", "", 7},
    {4, kAny, kEither, kAnyPlatform, kAny, kAnySuite, kVersionNumbers, "", "", 10},
    {5, 0, kPlain, kAnyPlatform, kAny, kAnySuite, " 2000", "", "", 2},
    {5, 0, kExtended, kAnyPlatform, kWorkstation, kAnySuite, " 2000", "", " Professional", 13},
    {5, 0, kExtended, kAnyPlatform, kDomainController, kAnySuite, " 2000", "", " Domain Controller", 20},
    {5, 0, kExtended, kAnyPlatform, kServer, kEnterprise, " 2000", "", " Advanced Server", 15},
    {5, 0, kExtended, kAnyPlatform, kServer, kDatacenter, " 2000", "", " Datacenter Server", 16},
    {5, 0, kExtended, kAnyPlatform, kServer, kAnySuite, " 2000", "", " Server", 14},
    {5, 0, kExtended, kAnyPlatform, kAny, kAnySuite, " 2000", "", "", 2},
    {5, 1, kPlain, kAnyPlatform, kAny, kAnySuite, kVersionNumbers, "", "", 10},
    {5, 1, kExtended, kAnyPlatform, kWorkstation, kPersonalAlone, " XP", "", " Home Edition", 17},
    {5, 1, kExtended, kAnyPlatform, kWorkstation, kAnySuite, " XP", "", " Professional", 18},
    {5, 1, kExtended, kAnyPlatform, kAny, kAnySuite, kVersionNumbers, "", "", 10},
    {5, 2, kPlain, kAnyPlatform, kAny, kAnySuite, kVersionNumbers, "", "", 10},
    {5, 2, kExtended, kAnyPlatform, kAny, kEnterprise, " Server 2003", " R2", " family Enterprise Edition", 21},
    {5, 2, kExtended, kAnyPlatform, kAny, kDatacenter, " Server 2003", " R2", " family Datacenter Edition", 22},
    {5, 2, kExtended, kAnyPlatform, kAny, kBlade, " Server 2003", " R2", " family Web Edition", 24},
    {5, 2, kExtended, kAnyPlatform, kAny, kAnySuite, " Server 2003", " R2", " family", 23},
    {5, kAny, kEither, kAnyPlatform, kAny, kAnySuite, kVersionNumbers, "", "", 10},
    {6, 0, kPlain, kAnyPlatform, kAny, kAnySuite, " Vista Or Windows Server 2008", "", "", 0},
    {6, 0, kExtended, kAnyPlatform, kWorkstation, kAnySuite, " Vista", "", "", 28},
    {6, 0, kExtended, kAnyPlatform, kAny, kAnySuite, " Server 2008", "", "", 29},
    {6, 1, kPlain, kAnyPlatform, kAny, kAnySuite, " 7 Or Windows Server 2008 R2", "", "", 0},
    {6, 1, kExtended, kAnyPlatform, kWorkstation, kAnySuite, " 7", "", "", 28},
    {6, 1, kExtended, kAnyPlatform, kAny, kAnySuite, " Server 2008 R2", "", "", 29},
    {6, kAny, kEither, kAnyPlatform, kAny, kAnySuite, "", "", "", 0},
    {kAny, kAny, kEither, kAnyPlatform, kAny, kAnySuite, kVersionNumbers, "", "", 10},
};

const Product& productOf(const os::OSVERSIONINFOEXA& version, bool extended) {
  return *std::ranges::find_if(kProducts, [&](const Product& row) {
    return fits(row.major, version.dwMajorVersion) && fits(row.minor, version.dwMinorVersion) &&
           (row.extended == kEither || (row.extended == kExtended) == extended) &&
           (row.platform == kAnyPlatform || version.dwPlatformId != kPlatformNt) &&
           fits(row.type, version.wProductType) && (version.wSuiteMask & row.suite.mask) == row.suite.value;
  });
}

// The texts of `platformUname` and of `platformOSVersionNumeric`.

struct VersionRow {
  std::int64_t platformId, major, minor;
  const char* text;
};

constexpr const char* kNotWritten = nullptr;

constexpr VersionRow kSystemNames[] = {
    {1, 4, 0, "Windows 95"},           {1, 4, 10, "Windows 98"},     {1, 4, 90, "Windows ME"},
    {1, 4, kAny, "Windows 9x???"},     {1, kAny, kAny, kNotWritten}, {2, 4, kAny, "Windows NT"},
    {2, 5, 0, "Windows 2000"},         {2, 5, 1, "Windows XP"},      {2, 5, kAny, "Windows 2000 ???"},
    {2, kAny, kAny, "Windows NT ???"}, {kAny, kAny, kAny, "???"},
};

constexpr VersionRow kShortNames[] = {
    {kPlatformNt, 4, 0, "NT"},
    {kAny, 4, 0, "95"},
    {kAny, 4, 10, "98"},
    {kAny, 4, 90, "ME"},
    {kAny, 5, 0, "2000"},
    {kAny, 5, 1, "XP"},
    {kAny, 5, 2, "Server 2003 family"},
    {kAny, kAny, kAny, "???"},
};

template <typename Version>
const char* textOf(std::span<const VersionRow> rows, const Version& version) {
  return std::ranges::find_if(rows,
                              [&](const VersionRow& row) {
                                return fits(row.platformId, version.dwPlatformId) &&
                                       fits(row.major, version.dwMajorVersion) &&
                                       fits(row.minor, version.dwMinorVersion);
                              })
      ->text;
}

// Not the table of `platformTypeOfCPU`: its texts differ, and it knows x64.
constexpr ProcessorRow kMachines[] = {
    {0, 4, kAnyProcessor, "Intel: x86 Family", kLevelModelStepping, true},
    {0, 0, 586, "Intel: x86 Family"},
    {0, 0, kAnyProcessor, "Intel: "},
    {1, 0, kAnyProcessor, "MIPS"},
    {2, 0, kAnyProcessor, "Alpha", kLevel, true},
    {3, 0, kAnyProcessor, "PPC"},
    {6, 5, kAnyProcessor, "Intel: Itanium Family", kLevel, true},
    {6, 0, kAnyProcessor, "Intel: ", kNone, true},
    {kAnyProcessor, 0, kAnyProcessor, "??? ???"},
};

// A NUL behind the text is not needed.
template <typename Unit, std::size_t size>
std::basic_string_view<Unit> textIn(const Unit (&field)[size]) {
  return {field, static_cast<std::size_t>(std::find(field, field + size, Unit{}) - field)};
}

// What doesn't fit is cut off, between two characters.
template <std::size_t size>
void put(char (&field)[size], string_view text) {
  std::size_t length = std::min(text.size(), size - 1);
  const auto insideCharacter = [&] { return length < text.size() && (text[length] & 0xC0) == 0x80; };
  while (length > 0 && insideCharacter()) --length;
  *std::copy_n(text.data(), length, field) = '\0';
}

// The numbers print as the system's 32-bit `long`.
int signedNumber(std::uint32_t number) {
  return static_cast<std::int32_t>(number);
}

bool readVersion(std::uint32_t size, os::OSVERSIONINFOEXA& version) {
  version = {.dwOSVersionInfoSize = size};
  return os::OperatingSystem::current().GetVersionExA(version);
}

void describe(const os::OSVERSIONINFOEXA& version, bool extended, LD_OSInformation_s& information) {
  const Product& product = productOf(version, extended);
  information.edition = product.edition;
  if (product.name == kVersionNumbers) {
    information.name += ' ' + std::to_string(signedNumber(version.dwMajorVersion)) + '.' +
                        std::to_string(signedNumber(version.dwMinorVersion));
    return;
  }
  information.name += product.name;
  if (*product.secondRelease && os::OperatingSystem::current().GetSystemMetrics(os::kSystemMetricServerR2) > 0) {
    information.name += product.secondRelease;
  }
  information.name += product.editionName;
}

enum class Uname { kFilled, kNoHostId, kSystemFailed };

// `error` is set unless all is filled.
Uname fillUname(LD_utsname_s& uname, int& error) {
  std::uint32_t hostid = 0;
  if (!platformHostid(hostid, error)) return Uname::kNoHostId;
  os::OperatingSystem& system = os::OperatingSystem::current();
  std::uint32_t size = sizeof uname.nodename - 1;
  os::OSVERSIONINFOW version{.dwOSVersionInfoSize = os::kVersionInfoSizeW};
  const bool named = system.GetComputerNameA(uname.nodename, size);
  if (named) *(std::end(uname.nodename) - 1) = '\0';
  if (!named || !system.GetVersionExW(version)) {
    systemFailed(error);
    return Uname::kSystemFailed;
  }

  const int major = signedNumber(version.dwMajorVersion), minor = signedNumber(version.dwMinorVersion);
  std::snprintf(uname.release, sizeof uname.release, "%d.%d", major, minor);
  string servicePack;
  utf16ToUtf8Replacing(textIn(version.szCSDVersion), servicePack);
  put(uname.version, "Build " + std::to_string(signedNumber(version.dwBuildNumber)) + ": " + servicePack);
  std::snprintf(uname.hostid, sizeof uname.hostid, "%X", hostid);

  if (const char* name = textOf(kSystemNames, version); name != kNotWritten) put(uname.sysname, name);
  os::SYSTEM_INFO processor;
  system.GetSystemInfo(processor);
  put(uname.machine, processorText(kMachines, version.dwMajorVersion, processor));
  return Uname::kFilled;
}

}  // namespace

bool platformOSInformation(LD_OSInformation_s& information, int& error) {
  information = {};
  information.vendor = "Unknown Vendor Name";
  information.name = "Unknown Operating System";
  os::OSVERSIONINFOEXA version;
  const bool extended = readVersion(os::kVersionInfoSizeExA, version);
  if (!extended && !readVersion(os::kVersionInfoSizeA, version)) return systemFailed(error);
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
  if (result == Uname::kSystemFailed) return failed(number, lastError);
  if (lastError) lastError->setNumber(number);
  return false;
}

bool platformOSVersionNumeric(string& name, std::uint32_t& major, std::uint32_t& minor, std::uint32_t& build,
                              string& servicePack, int& error) {
  major = minor = build = 0;
  name.clear();
  servicePack.clear();
  os::OSVERSIONINFOEXA version;
  if (!readVersion(os::kVersionInfoSizeA, version)) return systemFailed(error);
  major = version.dwMajorVersion;
  minor = version.dwMinorVersion;
  build = version.dwBuildNumber;
  servicePack = textIn(version.szCSDVersion);
  name = string("Windows ") + textOf(kShortNames, version);
  return true;
}

bool platformOSDistribution(string& distribution, int& /*error*/) {
  distribution.clear();
  return true;
}

}  // namespace kdx
