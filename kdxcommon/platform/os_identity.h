// The operating system that the library runs on. On Windows three operations ask the system for the same numbers, and
// each makes a text of them by rules of its own, which its callers' data hold: a workstation of version 6.1 is "Windows
// 7" for `platformOSInformation`, "Windows NT ???" for `platformUname` and "Windows ???" for
// `platformOSVersionNumeric`. No rule knows a version behind 6.1. A program is told a version after 6.2 only where its
// manifest names that version as supported (`<supportedOS Id="{8e0f7a12-bfb3-4fe8-b9a5-48fd50a15a9a}"/>` for 10 and
// later); to any other Windows says 6.2.
//
//   kdx::LD_OSInformation_s information;
//   int error = 0;
//   if (kdx::platformOSInformation(information, error)) store(information.name, information.edition);
//
// On Linux, where the call for the version of Windows fails with ENOSYS, the same operations return Linux's own facts:
// those of the distribution (/etc/os-release, or else /usr/lib/os-release, of which the first 64 KiB count) and of the
// kernel (`uname`). A file that is missing, can't be read or makes no sense is no failure: its texts are empty and its
// numbers 0, or as said below. The texts of a distribution are UTF-8. In a container the distribution is the
// container's, and the kernel the machine's.
//
// Thread safety: the operations keep no state and may be called from any thread, each call with a record of its own. On
// failure they return false and set `error` to the system's last error; on success `error` stays as it is. They throw
// only std::bad_alloc. Texts of the system stay in its own narrow encoding.

#ifndef KDXCOMMON_PLATFORM_OS_IDENTITY_H_
#define KDXCOMMON_PLATFORM_OS_IDENTITY_H_

#include <cstdint>

#include "kdxcommon/base/export.h"
#include "kdxcommon/base/string_types.h"

namespace kdx {

class ZQLastError;

/// The system as `platformOSInformation` describes it, on Windows and on Linux.
struct LD_OSInformation_s {
  /// "Microsoft Corporation"; VENDOR_NAME, or else NAME: "Debian GNU/Linux". "Unknown Vendor Name" if there is neither,
  /// and after a failure.
  string vendor;
  /// "Windows 2000 Professional"; PRETTY_NAME, "Debian GNU/Linux 12 (bookworm)", or else "Linux". "Unknown Operating
  /// System" after a failure.
  string name;
  std::uint32_t majorVersion = 0;      ///< 5 of 5.1.2600; the first number of VERSION_ID: 22 of "22.04"
  std::uint32_t minorVersion = 0;      ///< 1; the second number of VERSION_ID: 4
  std::uint32_t buildNumber = 0;       ///< 2600; BUILD_ID if it is a number
  string servicePack;                  ///< "Service Pack 2"; VERSION_CODENAME, "bookworm"; may be empty
  std::uint32_t servicePackMajor = 0;  ///< 2; 0 where Windows reports no editions, and on Linux
  std::uint32_t servicePackMinor = 0;  ///< likewise
  std::int32_t family = 0;             ///< 1: Windows, 2: Linux; 0 after a failure
  std::int32_t edition = 0;            ///< the number that goes with a Windows' name: 0 to 3, 7 to 24, 28 or 29
};

/// The system in the shape of POSIX's `uname`, and on Linux that call's own texts: NUL-terminated, cut at 257 bytes.
struct LD_utsname_s {
  char sysname[258] = {};   ///< "Windows XP"; "Linux"
  char nodename[258] = {};  ///< the computer's name
  char release[258] = {};   ///< "5.1"; "6.1.0-18-amd64"
  char version[258] = {};   ///< "Build 2600: Service Pack 2", the service pack in UTF-8; "#1 SMP Debian 6.1.76-1"
  char machine[258] = {};   ///< "Intel: x86 Family 6 Model 15 Stepping 11: CPUs 2", "??? ???" for x64; "x86_64"
  char hostid[258] = {};    ///< the number of `platformHostid`, hexadecimal: "A010203"
};

/// Fills the full record (`GetVersionExA`, and `GetSystemMetrics` for version 5.2 alone; os-release on Linux). On
/// failure the record holds its presets, as if nothing were known. Never fails on Linux.
KDX_EXPORT bool platformOSInformation(LD_OSInformation_s& information, int& error);

/// Fills the record of texts (`platformHostid`, `GetComputerNameA`, then `GetVersionExW` and `GetSystemInfo`, or
/// `uname`). `sysname` stays as it is on platform 1 with another major version than 4. A host whose own name has no
/// address is a failure, with the resolver's number. On failure the fields filled before stay filled: none, or
/// `nodename`.
KDX_EXPORT bool platformUname(LD_utsname_s& uname, int& error);

/// The same. On failure `lastError`, unless null, becomes critical with the system's last error; if the host id failed,
/// it takes the number alone and keeps its severity.
KDX_EXPORT bool platformUname(LD_utsname_s& uname, ZQLastError* lastError);

/// Sets the version's numbers, a short product text such as "Windows XP", and the service pack (`GetVersionExA`). On
/// Linux `name` is "Linux", the numbers are the first three of the kernel's release (`uname`), and `servicePack` is
/// what follows them: 6, 1, 0 and "-18-amd64". On failure the numbers are 0 and the texts empty.
KDX_EXPORT bool platformOSVersionNumeric(string& name, std::uint32_t& major, std::uint32_t& minor, std::uint32_t& build,
                                         string& servicePack, int& error);

/// Sets `distribution` to the distribution's PRETTY_NAME, "Debian GNU/Linux 12 (bookworm)", or to the empty text if it
/// has none, as always on Windows. Never fails; `error` stays as it is.
KDX_EXPORT bool platformOSDistribution(string& distribution, int& error);

}  // namespace kdx

#endif  // KDXCOMMON_PLATFORM_OS_IDENTITY_H_
