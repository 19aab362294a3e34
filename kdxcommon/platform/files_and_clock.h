// Errors, files, clock and zone of the machine: the thread's last error and its text, an access test, a whole file in
// one call, the time, the local zone. All of it asks `OperatingSystem::current()`.
//
//   kdx::string text;
//   int error = 0;
//   if (!kdx::platformReadEntireFileContents("/etc/agent.conf", text, error) && error == 0) useDefaults();
//
//   kdx::TimeZone_t zone;
//   if (kdx::platformGetTimeZone(zone, nullptr)) localTime = utc - zone.biasSeconds - zone.daylightBiasSeconds;
//
// Thread safety: the operations keep no state and may be called from any thread; the last error is per thread. The
// result reports a failure, and the error argument, if any, its reason. Throws only std::bad_alloc.

#ifndef KDXCOMMON_PLATFORM_FILES_AND_CLOCK_H_
#define KDXCOMMON_PLATFORM_FILES_AND_CLOCK_H_

#include <cstdint>

#include "kdxcommon/base/export.h"
#include "kdxcommon/base/string_types.h"

namespace kdx {

class ZQLastError;

/// The local zone. Local time is UTC less `biasSeconds` less `daylightBiasSeconds`.
struct TimeZone_t {
  string standardName;                   ///< name of standard time, as `platformTZName` gives it
  string daylightName;                   ///< name of daylight time, likewise
  std::int32_t biasSeconds = 0;          ///< of standard time, positive west of Greenwich
  bool daylightActive = false;           ///< daylight time is in force now
  std::int32_t daylightBiasSeconds = 0;  ///< mostly -3600 while daylight time is in force, else 0
};

/// The calling thread's last error (`GetLastError`; `errno` on POSIX). Read it before anything else on that thread can
/// change it.
KDX_EXPORT std::uint32_t platformGetLastError();

/// Whether the system has a text for the error number `code` (`FormatMessageA`). `message` becomes that text as the
/// system gives it, a line break at its end included; without one it stays.
KDX_EXPORT bool winGetOSErrorMessage(std::uint32_t code, string& message);

/// Whether the process may reach `path` (`_waccess`): `mode` is 0 for its being there, 2 for writing, 4 for reading, 6
/// for both. If not, and `lastError` is not null, it becomes critical: 0x56000002 for an empty path, 0x56000004 for a
/// missing file (the system's error 2), else the system's error number.
KDX_EXPORT bool platformAccessW(const wstring& path, int mode, ZQLastError* lastError);

/// Whether the whole of `contents` was written to the file, which is made, or emptied, first; line ends are the
/// system's. On a write error `error` becomes the stream's error indicator (`ferror`), no error number, and what was
/// written stays. If the file can't be opened `error` is not touched.
KDX_EXPORT bool platformWriteEntireFileContent(const string& fileName, const string& contents, int& error);

/// Whether the whole of a text file was read; what it holds, line ends as they are, is appended to `contents`. A NUL
/// byte drops the rest of its chunk: 32768 bytes, or the whole of a smaller file. On a read error `error` becomes the
/// stream's error indicator (`ferror`), no error number, and `contents` keeps the chunks read before it. If the file is
/// missing, can't be opened, or has 2 GiB or more, neither is touched; if memory runs out, `error` isn't. Set `error`
/// to 0 before the call to tell these from a read error. Throws nothing.
KDX_EXPORT bool platformReadEntireFileContents(const string& fileName, string& contents, int& error);

/// Returns seconds since 1970-01-01 00:00:00 UTC (`_time64`), and stores them in `*seconds` unless that is null.
KDX_EXPORT std::int64_t platformTime(std::int64_t* seconds);

/// Seconds from UTC to the local zone's standard time, positive east of Greenwich: the opposite sign of `biasSeconds`.
/// 0 if the zone can't be read.
KDX_EXPORT std::int32_t platformTimezone();

/// The zone's names (`_get_tzname`), short ones on POSIX. Where the zone has no daylight time, its name may be empty.
/// If the system refuses either, both stay as they are. Here and below, a zone that changed is noticed within a second.
KDX_EXPORT void platformTZName(string& standardName, string& daylightName);

/// Whether the local zone could be read (`GetTimeZoneInformation`). If not, `zone` is not touched and `lastError`,
/// unless null, becomes critical with the system's error number.
KDX_EXPORT bool platformGetTimeZone(TimeZone_t& zone, ZQLastError* lastError);

}  // namespace kdx

#endif  // KDXCOMMON_PLATFORM_FILES_AND_CLOCK_H_
