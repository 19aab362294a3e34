// The operating system that the library runs on. On Windows three operations read the same version numbers, but each
// has its own rules for the text, on which stored data depend: a workstation of version 6.1 is "Windows 7" for
// `platformOSInformation`, "Windows NT ???" for `platformUname` and "Windows ???" for `platformOSVersionNumeric`. None
// of the rules knows a version after 6.1. Windows reports a version after 6.2 only to a program whose manifest lists
// that version as supported (`<supportedOS Id="{8e0f7a12-bfb3-4fe8-b9a5-48fd50a15a9a}"/>` for 10 and later); to any
// other program it reports 6.2.
//
//   kdx::LD_OSInformation_s information;
//   int error = 0;
//   if (kdx::platformOSInformation(information, error)) store(information.name, information.edition);
//
// On Linux, where reading the Windows version fails with ENOSYS, the same operations return facts about Linux: about
// the distribution (the first 64 KiB of /etc/os-release, or else of /usr/lib/os-release) and about the kernel
// (`uname`). A file that is missing, can't be read or can't be parsed isn't a failure: its texts are empty and its
// numbers 0, unless documented otherwise below. The texts of a distribution are UTF-8. In a container the distribution
// is that of the container, and the kernel that of the machine.
//
// Thread safety: the operations keep no state and may be called from any thread, each call with its own record. On
// failure they return false and set `error` to the system's last error; on success `error` is unchanged. They throw
// only std::bad_alloc. Texts from the system are in its narrow encoding, unless documented otherwise.

#ifndef KDXCOMMON_PLATFORM_OS_IDENTITY_H_
#define KDXCOMMON_PLATFORM_OS_IDENTITY_H_

#include <cstdint>

#include "kdxcommon/base/export.h"
#include "kdxcommon/base/string_types.h"

namespace kdx {

class ZQLastError;

/// The description by `platformOSInformation`: each comment has the value on Windows first, then the one on Linux.
struct LD_OSInformation_s {
  /// "Microsoft Corporation"; VENDOR_NAME, or else NAME: "Debian GNU/Linux". "Unknown Vendor Name" if both are missing,
  /// and on failure.
  string vendor;
  /// "Windows 2000 Professional"; PRETTY_NAME, "Debian GNU/Linux 12 (bookworm)", or else "Linux". "Unknown Operating
  /// System" on failure.
  string name;
  std::uint32_t majorVersion = 0;      ///< 5 of 5.1.2600; the first number of VERSION_ID: 22 of "22.04"
  std::uint32_t minorVersion = 0;      ///< 1; the second number of VERSION_ID: 4
  std::uint32_t buildNumber = 0;       ///< 2600; BUILD_ID if it is a number
  string servicePack;                  ///< "Service Pack 2"; VERSION_CODENAME, "bookworm"; may be empty
  std::uint32_t servicePackMajor = 0;  ///< 2; 0 if Windows reports no editions, and on Linux
  std::uint32_t servicePackMinor = 0;  ///< likewise
  std::int32_t family = 0;             ///< 1: Windows, 2: Linux; 0 on failure
  std::int32_t edition = 0;            ///< the number of the Windows product: 0 to 3, 7 to 24, 28 or 29
};

/// The system in the form of POSIX `uname`; on Linux the texts of that call. NUL-terminated, truncated at 257 bytes.
struct LD_utsname_s {
  char sysname[258] = {};   ///< "Windows XP"; "Linux"
  char nodename[258] = {};  ///< the computer's name
  char release[258] = {};   ///< "5.1"; "6.1.0-18-amd64"
  char version[258] = {};   ///< "Build 2600: Service Pack 2", the service pack in UTF-8; "#1 SMP Debian 6.1.76-1"
  char machine[258] = {};   ///< "Intel: x86 Family 6 Model 15 Stepping 11: CPUs 2", "??? ???" for x64; "x86_64"
  char hostid[258] = {};    ///< the number of `platformHostid`, hexadecimal: "A010203"
};

/// Sets all fields of `information` (`GetVersionExA`, and `GetSystemMetrics` for version 5.2 only; os-release on
/// Linux). On failure the fields have the values documented for it; all others are 0 or empty. Never fails on Linux.
KDX_EXPORT bool platformOSInformation(LD_OSInformation_s& information, int& error);

/// Sets the fields of `uname` (`platformHostid`, `GetComputerNameA`, then `GetVersionExW` and `GetSystemInfo`, or
/// `uname`). `sysname` is unchanged on platform 1 with a major version other than 4. Fails with the resolver's error
/// number if the local host's name has no address. On failure the fields that were set before remain set: none, or
/// `nodename`.
KDX_EXPORT bool platformUname(LD_utsname_s& uname, int& error);

/// The same. On failure sets `lastError`, unless null, to a critical error with the system's last error; if the host id
/// failed, sets only its number and keeps its severity.
KDX_EXPORT bool platformUname(LD_utsname_s& uname, ZQLastError* lastError);

/// Sets the version numbers, a short product name such as "Windows XP", and the service pack (`GetVersionExA`). On
/// Linux `name` is "Linux", the numbers are the first three of the kernel's release (`uname`), and `servicePack` is the
/// text after them: 6, 1, 0 and "-18-amd64". On failure the numbers are 0 and the texts are empty.
KDX_EXPORT bool platformOSVersionNumeric(string& name, std::uint32_t& major, std::uint32_t& minor, std::uint32_t& build,
                                         string& servicePack, int& error);

/// Sets `distribution` to the distribution's PRETTY_NAME, "Debian GNU/Linux 12 (bookworm)", or to the empty text if
/// there is none; always empty on Windows. Never fails; `error` is unchanged.
KDX_EXPORT bool platformOSDistribution(string& distribution, int& error);

}  // namespace kdx

#endif  // KDXCOMMON_PLATFORM_OS_IDENTITY_H_
