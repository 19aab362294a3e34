// Errors, files, clock and zone of the machine: the thread's last error and its text, an access test, reading and
// writing a whole file, the time, and the local zone. All results come from `OperatingSystem::current()`.
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

/// The local zone. Local time is UTC minus `biasSeconds` minus `daylightBiasSeconds`.
struct TimeZone_t {
  string standardName;                   ///< name of standard time, as by `platformTZName`
  string daylightName;                   ///< name of daylight time, likewise
  std::int32_t biasSeconds = 0;          ///< of standard time, positive west of Greenwich
  bool daylightActive = false;           ///< daylight time is in force now
  std::int32_t daylightBiasSeconds = 0;  ///< usually -3600 while daylight time is in force, else 0
};

/// Returns the calling thread's last error (`GetLastError`; `errno` on POSIX). Call it before anything else on that
/// thread can change it.
KDX_EXPORT std::uint32_t platformGetLastError();

/// Returns whether the system has a text for the error number `code` (`FormatMessageA`). If so, sets `message` to that
/// text, including any line break at its end; otherwise `message` is unchanged.
KDX_EXPORT bool winGetOSErrorMessage(std::uint32_t code, string& message);

/// Returns whether the process may access `path` (`_waccess`). `mode` is 0 to test that it exists, 2 for writing, 4 for
/// reading, 6 for both. If not, sets `lastError`, unless null, to a critical error: 0x56000002 for an empty path,
/// 0x56000004 for a missing file (the system's error 2), otherwise the system's error number.
KDX_EXPORT bool platformAccessW(const wstring& path, int mode, ZQLastError* lastError);

/// Creates or truncates the file and writes `contents` to it, with the system's line endings. Returns whether all of it
/// was written. On a write error sets `error` to the stream's error indicator (`ferror`), which is not an error number;
/// what was written remains in the file. If the file can't be opened, `error` is unchanged.
KDX_EXPORT bool platformWriteEntireFileContent(const string& fileName, const string& contents, int& error);

/// Appends the contents of a text file to `contents`, with line endings unchanged. Returns whether the whole file was
/// read. A NUL byte discards the rest of its chunk: 32768 bytes, or the whole of a smaller file. On a read error sets
/// `error` to the stream's error indicator (`ferror`), which is not an error number; `contents` keeps the chunks read
/// before. If the file is missing, can't be opened or has 2 GiB or more, `contents` and `error` are unchanged; if
/// memory runs out, `error` is unchanged. Set `error` to 0 before the call to distinguish these cases from a read
/// error. Throws nothing.
KDX_EXPORT bool platformReadEntireFileContents(const string& fileName, string& contents, int& error);

/// Returns seconds since 1970-01-01 00:00:00 UTC (`_time64`), and stores them in `*seconds` unless that is null.
KDX_EXPORT std::int64_t platformTime(std::int64_t* seconds);

/// Returns the seconds from UTC to the local zone's standard time, positive east of Greenwich: the opposite sign of
/// `biasSeconds`. Returns 0 if the zone can't be read.
KDX_EXPORT std::int32_t platformTimezone();

/// Sets the names of the zone (`_get_tzname`), which are abbreviations on POSIX. If the zone has no daylight time,
/// `daylightName` may be empty. If the system call fails for one of them, both are unchanged. Here and below, a change
/// of the zone takes effect within a second.
KDX_EXPORT void platformTZName(string& standardName, string& daylightName);

/// Sets `zone` to the local zone (`GetTimeZoneInformation`). Returns false if it can't be read; `zone` is then
/// unchanged, and `lastError`, unless null, is set to a critical error with the system's error number.
KDX_EXPORT bool platformGetTimeZone(TimeZone_t& zone, ZQLastError* lastError);

}  // namespace kdx

#endif  // KDXCOMMON_PLATFORM_FILES_AND_CLOCK_H_
