// Which Windows the library runs on. Three operations ask the system for the same numbers, and each makes a text of
// them by rules of its own, which its callers' data hold: a workstation of version 6.1 is "Windows 7" for
// `platformOSInformation`, "Windows NT ???" for `platformUname` and "Windows ???" for `platformOSVersionNumeric`. No
// rule knows a version behind 6.1. A program is told a version after 6.2 only where its manifest names that version as
// supported (`<supportedOS Id="{8e0f7a12-bfb3-4fe8-b9a5-48fd50a15a9a}"/>` for 10 and later); to any other Windows says
// 6.2.
//
//   kdx::LD_OSInformation_s information;
//   int error = 0;
//   if (kdx::platformOSInformation(information, error)) store(information.name, information.edition);
//
// On any other system there is nothing to tell: the numbers of its kernel would be read as those of a Windows that it
// is not. There the three fail with the system's error ENOSYS, `platformUname` with the resolver's number instead where
// the host's own name has no address, and only `platformOSDistribution` succeeds.
//
// Thread rule: no state of their own, any thread, each with a record of its own. Failure rule: false, with `error` the
// system's last error; it is written only then. Nothing throws but an allocation. Texts of the system are kept in its
// own narrow encoding.

#ifndef KDXCOMMON_PLATFORM_OS_IDENTITY_H_
#define KDXCOMMON_PLATFORM_OS_IDENTITY_H_

#include <cstdint>

#include "kdxcommon/base/export.h"
#include "kdxcommon/base/string_types.h"

namespace kdx {

class ZQLastError;

/// The system as `platformOSInformation` tells it.
struct LD_OSInformation_s {
  string vendor;                       ///< "Microsoft Corporation"; "Unknown Vendor Name" after a failure
  string name;                         ///< "Windows 2000 Professional"; "Unknown Operating System" after a failure
  std::uint32_t majorVersion = 0;      ///< 5 of 5.1.2600
  std::uint32_t minorVersion = 0;      ///< 1
  std::uint32_t buildNumber = 0;       ///< 2600
  string servicePack;                  ///< "Service Pack 2"; may be empty
  std::uint32_t servicePackMajor = 0;  ///< 2; 0 as well where the system tells no editions
  std::uint32_t servicePackMinor = 0;  ///< likewise
  std::int32_t family = 0;             ///< 1: Windows; 0 after a failure
  std::int32_t edition = 0;            ///< the number that goes with `name`: 0, 1, 2, 3, 7 to 24, 28 or 29
};

/// The system in the shape of POSIX's `uname`: texts that end with a NUL, cut at 257 bytes.
struct LD_utsname_s {
  char sysname[258] = {};   ///< "Windows XP"
  char nodename[258] = {};  ///< the computer's name
  char release[258] = {};   ///< "5.1"
  char version[258] = {};   ///< "Build 2600: Service Pack 2"; the service pack in UTF-8
  char machine[258] = {};   ///< "Intel: x86 Family 6 Model 15 Stepping 11: CPUs 2"; "??? ???" without a text, as x64
  char hostid[258] = {};    ///< the number of `platformHostid`, hexadecimal: "A010203"
};

/// The full record (`GetVersionExA`; `GetSystemMetrics` for version 5.2 alone). It is preset first, and keeps the
/// presets on failure.
KDX_EXPORT bool platformOSInformation(LD_OSInformation_s& information, int& error);

/// The record of texts (`platformHostid`, `GetComputerNameA`, `GetVersionExW`, `GetSystemInfo`). `sysname` stays as it
/// is on platform 1 with another major version than 4. On failure the fields filled before stay filled: none, or
/// `nodename`.
KDX_EXPORT bool platformUname(LD_utsname_s& uname, int& error);

/// The same. On failure `lastError`, unless null, becomes critical with the system's last error, but where the host id
/// failed it takes the number alone and keeps its severity.
KDX_EXPORT bool platformUname(LD_utsname_s& uname, ZQLastError* lastError);

/// The version's numbers, a short product text such as "Windows XP", and the service pack (`GetVersionExA`). On failure
/// the numbers are 0 and the texts empty.
KDX_EXPORT bool platformOSVersionNumeric(string& name, std::uint32_t& major, std::uint32_t& minor, std::uint32_t& build,
                                         string& servicePack, int& error);

/// The distribution: the empty text, on every system. Never fails.
KDX_EXPORT bool platformOSDistribution(string& distribution, int& error);

}  // namespace kdx

#endif  // KDXCOMMON_PLATFORM_OS_IDENTITY_H_
