// The records, numbers and flags of the operating-system interface (operating_system.h). They have the names of the
// system whose record they resemble, Windows or POSIX, and are the same on every system.
//
//   kdx::os::FileTimes times;
//   if (kdx::os::OperatingSystem::current()._stat64("dump.txt", times) == 0) use(times.modified, times.size);
//
// Thread safety: plain values. Copying a record with texts may throw std::bad_alloc.

#ifndef KDXCOMMON_OS_SYSTEM_RECORDS_H_
#define KDXCOMMON_OS_SYSTEM_RECORDS_H_

#include <cstddef>
#include <cstdint>
#include <vector>

#include "kdxcommon/base/string_types.h"

namespace kdx::os {

/// Flags of `_open`, the numbers of the Windows C runtime on every system: one of the first three, combined with any
/// of the others by `|`.
inline constexpr int kOpenReadOnly = 0x0;
inline constexpr int kOpenWriteOnly = 0x1;
inline constexpr int kOpenReadWrite = 0x2;
inline constexpr int kOpenAppend = 0x8;       ///< the system appends each write to the end of the file
inline constexpr int kOpenCreate = 0x100;     ///< creates the file if it doesn't exist
inline constexpr int kOpenTruncate = 0x200;   ///< empties the file, which must be a regular one; with writing only
inline constexpr int kOpenExclusive = 0x400;  ///< with kOpenCreate: fails if the file exists

/// Severities of `SystemLog`, the numbers of RFC 5424.
inline constexpr int kSeverityError = 3;
inline constexpr int kSeverityNotice = 5;
inline constexpr int kSeverityInformational = 6;
inline constexpr int kSeverityDebug = 7;

inline constexpr std::size_t kLongestReport = std::size_t{16} * 1024;  ///< bytes of a message to `SystemLog`

inline constexpr int kModeWrite = 0x80;  ///< mode of `_open`: a file that it creates is writable later

/// Results of `GetFileType`, Windows' numbers on every system.
inline constexpr std::uint32_t kFileTypeUnknown = 0;
inline constexpr std::uint32_t kFileTypeDisk = 1;       ///< a regular file
inline constexpr std::uint32_t kFileTypeCharacter = 2;  ///< a terminal or another device
inline constexpr std::uint32_t kFileTypePipe = 3;       ///< a pipe or a socket

/// `FormatMessageA`: the system allocates the buffer and supplies the text; inserts are left unexpanded.
inline constexpr std::uint32_t kFormatMessageAllocateIgnoreInsertsFromSystem = 0x1300;

/// Results of `GetTimeZoneInformation`.
inline constexpr std::uint32_t kTimeZoneIdUnknown = 0;   ///< the zone has no daylight time
inline constexpr std::uint32_t kTimeZoneIdStandard = 1;  ///< the zone has daylight time, and standard time is in force
inline constexpr std::uint32_t kTimeZoneIdDaylight = 2;  ///< daylight time is in force
inline constexpr std::uint32_t kTimeZoneIdInvalid = 0xFFFFFFFF;

/// The last second that the clock conversions support: 3000-12-31 23:59:59 UTC.
inline constexpr std::int64_t kLastConvertibleSecond = 32'535'215'999;

inline constexpr int kSystemMetricServerR2 = 89;  ///< for `GetSystemMetrics`: above 0 on Server 2003's second release

/// Sizes of Windows' records. Those of the version records select what `GetVersionExA` and `GetVersionExW` fill.
inline constexpr std::uint32_t kVersionInfoSizeA = 148;
inline constexpr std::uint32_t kVersionInfoSizeExA = 156;
inline constexpr std::uint32_t kVersionInfoSizeW = 276;
inline constexpr std::uint32_t kMemoryStatusLength = 64;  ///< of the record of `GlobalMemoryStatusEx`

inline constexpr std::uint16_t kSocketLayerVersion = 0x0202;  ///< that the library requests: 2.2

/// Address families of `getaddrinfo`, the same on every system; the numbers of others are the system's own.
inline constexpr int kAddressFamilyAny = 0;
inline constexpr int kAddressFamilyIPv4 = 2;

/// Flag of `getnameinfo`, Windows' number on every system: returns the address as numeric text, without a name lookup.
inline constexpr int kNameInfoNumericHost = 0x2;

/// Times of a file, in seconds since 1970-01-01 00:00:00 UTC, and its size.
struct FileTimes {
  std::int64_t modified = 0;    ///< last change of the content; a rename keeps it
  std::int64_t accessed = 0;    ///< last read, as exactly as the file system keeps it
  std::int64_t attributes = 0;  ///< last change of name or attributes (POSIX), creation (Windows)
  std::int64_t size = 0;        ///< bytes
};

/// What a regular file is, whatever its names, and its size.
struct FileStatus {
  std::uint64_t volume = 0;  ///< the number of its file system
  std::uint64_t file = 0;    ///< its number there; no other existing file has both
  std::uint64_t size = 0;    ///< bytes
};

/// One entry of a directory; "." and ".." are entries, too.
struct DirectoryEntry {
  const char* name = nullptr;  ///< valid until the next read of its stream
  bool regularFile = false;    ///< neither a directory, a link, a device nor anything else
};

/// The present local zone: UTC is local time plus `Bias` plus the bias of the time in force. On POSIX, as on Windows,
/// standard time is the time with the smaller offset, whichever the zone's data call standard (Europe/Dublin). A new
/// record's names are undefined, since clearing them would take longer than reading the zone.
struct TIME_ZONE_INFORMATION {
  std::int32_t Bias = 0;          ///< minutes, positive west of Greenwich
  wchar StandardName[32];         ///< NUL-terminated
  std::int32_t StandardBias = 0;  ///< minutes, mostly 0
  wchar DaylightName[32];         ///< NUL-terminated; may be empty if the zone has no daylight time
  std::int32_t DaylightBias = 0;  ///< minutes, mostly -60
};

/// An instant as the fields of a calendar and a clock, with the names, units and ranges of the C library's `struct tm`.
struct BrokenDownTime {
  int tm_sec = 0;    ///< 0 to 59
  int tm_min = 0;    ///< 0 to 59
  int tm_hour = 0;   ///< 0 to 23
  int tm_mday = 0;   ///< 1 to 31
  int tm_mon = 0;    ///< 0 to 11
  int tm_year = 0;   ///< years since 1900
  int tm_wday = 0;   ///< 0, Sunday, to 6
  int tm_yday = 0;   ///< 0 to 365
  int tm_isdst = 0;  ///< above 0: daylight time
};

/// Version of a Windows system. The last five fields are filled only for the larger size.
struct OSVERSIONINFOEXA {
  std::uint32_t dwOSVersionInfoSize = 0;  ///< kVersionInfoSizeA or kVersionInfoSizeExA
  std::uint32_t dwMajorVersion = 0;       ///< 6 of 6.1.7601
  std::uint32_t dwMinorVersion = 0;       ///< 1
  std::uint32_t dwBuildNumber = 0;        ///< 7601
  std::uint32_t dwPlatformId = 0;         ///< 1: Windows 95 and its successors; 2: Windows NT and its successors
  char szCSDVersion[128] = {};            ///< service pack, such as "Service Pack 2", in the system's narrow encoding
  std::uint16_t wServicePackMajor = 0;    ///< number of the service pack
  std::uint16_t wServicePackMinor = 0;    ///< and what follows its dot
  std::uint16_t wSuiteMask = 0;           ///< bits of the editions
  std::uint8_t wProductType = 0;          ///< 1: workstation, 2: domain controller, 3: server
  std::uint8_t wReserved = 0;             ///< not used
};

/// The same in wide units, without the last five fields.
struct OSVERSIONINFOW {
  std::uint32_t dwOSVersionInfoSize = 0;  ///< kVersionInfoSizeW
  std::uint32_t dwMajorVersion = 0;       ///< the same
  std::uint32_t dwMinorVersion = 0;       ///< the same
  std::uint32_t dwBuildNumber = 0;        ///< the same
  std::uint32_t dwPlatformId = 0;         ///< the same
  wchar szCSDVersion[128] = {};           ///< the same, in UTF-16
};

static_assert(sizeof(OSVERSIONINFOEXA) == kVersionInfoSizeExA && sizeof(OSVERSIONINFOW) == kVersionInfoSizeW);

/// The processors, in Windows' numbers on every system.
struct SYSTEM_INFO {
  std::uint16_t wProcessorArchitecture =
      0;                                   ///< 0: x86, 1: MIPS, 2: Alpha, 3: PPC, 5: ARM, 6: Itanium, 9: x64, 12: ARM64
  std::uint32_t dwNumberOfProcessors = 0;  ///< logical processors that are running
  std::uint32_t dwProcessorType = 0;       ///< 586: x86, 8664: x64
  std::uint16_t wProcessorLevel = 0;       ///< the family
  std::uint16_t wProcessorRevision = 0;    ///< the model in the high byte, the stepping in the low one
};

/// The machine's memory.
struct MEMORYSTATUSEX {
  std::uint32_t dwLength = 0;      ///< kMemoryStatusLength
  std::uint64_t ullTotalPhys = 0;  ///< physical memory that the system manages, in bytes
};

/// The names of a POSIX system and its kernel.
struct utsname {
  string sysname;   ///< "Linux"
  string nodename;  ///< the computer's name
  string release;   ///< "6.1.0-18-amd64"
  string version;   ///< "#1 SMP PREEMPT_DYNAMIC Debian 6.1.76-1 (2024-02-01)"
  string machine;   ///< "x86_64"
};

/// A host as the socket layer describes it. The record and the memory that it points to belong to the socket layer.
struct hostent {
  const char* h_name = nullptr;              ///< may be null
  const char* const* h_aliases = nullptr;    ///< ends with a null entry; may be null
  std::int16_t h_addrtype = 0;               ///< the address family
  std::int16_t h_length = 0;                 ///< bytes of an address
  const char* const* h_addr_list = nullptr;  ///< addresses, highest byte first; ends with a null entry
};

/// An address that `getaddrinfo` returns or, as a hint, the address family that it looks for.
struct addrinfo {
  int ai_family = kAddressFamilyAny;        ///< the address family
  std::vector<unsigned char> ai_addr = {};  ///< the bytes of the system's socket address; empty in a hint
};

}  // namespace kdx::os

#endif  // KDXCOMMON_OS_SYSTEM_RECORDS_H_
