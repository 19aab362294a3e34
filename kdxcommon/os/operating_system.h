// The operating-system interface. Every system call and every file access of the library goes through the object that
// `OperatingSystem::current()` returns. Operations have the system's names and fill the plain records of
// system_records.h, so that no header of the library includes a system header. A test or a host program can replace the
// object for a scope:
//
//   struct NoDisk : kdx::os::OperatingSystemWrapper {
//     int _open(const char*, int, int) override { return -1; }
//   };
//   NoDisk noDisk;
//   kdx::os::ScopedOperatingSystem scope(noDisk);   // from here on every file fails to open
//
// Thread safety: all operations are thread-safe. A failed operation reports it by its result and sets the calling
// thread's `GetLastError()`; a bad argument, such as a null path, is a failure, too. Throws only std::bad_alloc. Paths
// are UTF-8 as far as names of this system have an encoding: on POSIX the bytes are passed unchanged, on Windows they
// reach the system as UTF-16, except those that `fopen` and `_stat64i32` pass to the C runtime unchanged. On Windows a
// path of more than 259 units works if system and manifest allow it, and otherwise fails with the system's error.

#ifndef KDXCOMMON_OS_OPERATING_SYSTEM_H_
#define KDXCOMMON_OS_OPERATING_SYSTEM_H_

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "kdxcommon/base/export.h"
#include "kdxcommon/base/string_types.h"
#include "kdxcommon/os/system_records.h"

namespace kdx::os {

/// Returns the separator between a directory and a name on this system, a NUL-terminated string of one character.
KDX_EXPORT const char* pathSeparator();

/// Returns whether the system appends each write to a file as a whole, so that lines of several writers don't mix: true
/// on POSIX. Not every system that offers the Windows interfaces does.
KDX_EXPORT bool appendsWhole();

/// An open file of the C library. The destructor closes it and doesn't report a failure. Thread safety: not safe for
/// concurrent use of one object.
class KDX_EXPORT FileStream {
 public:
  virtual ~FileStream();

  /// Reads or writes up to `count` bytes. Returns how many it did: fewer at the end of the file or on failure.
  virtual std::size_t fread(void* data, std::size_t count) = 0;
  virtual std::size_t fwrite(const void* data, std::size_t count) = 0;

  /// Returns nonzero once a read has reached the end of the file.
  virtual int feof() = 0;

  /// Returns the error indicator: nonzero once a read or write has failed. It is not an error number.
  virtual int ferror() = 0;
};

/// A connection to the system's log. The destructor closes it. Thread safety: several threads may use one object at
/// once.
class KDX_EXPORT SystemLog {
 public:
  virtual ~SystemLog();

  /// Reports one message of valid UTF-8, without line breaks, of up to kLongestReport bytes. `severity` is a number of
  /// RFC 5424, from kSeverityError to kSeverityDebug. Returns 0, or -1 if the system doesn't take it.
  virtual int report(int severity, const string& text) = 0;
};

/// An open directory. The destructor closes it. Thread safety: not safe for concurrent use of one object.
class KDX_EXPORT DirectoryStream {
 public:
  virtual ~DirectoryStream();

  /// Reads the next entry in the system's order. Returns 1 with `entry` set; 0 at the end or -1 on failure
  /// (`GetLastError`), both with `entry` unchanged.
  virtual int readdir(DirectoryEntry& entry) = 0;
};

/// All operations that the library uses. To replace a few of them, derive from OperatingSystemWrapper.
class KDX_EXPORT OperatingSystem {
 public:
  virtual ~OperatingSystem();

  /// Returns the object in use: the native one unless a `ScopedOperatingSystem` is in force.
  static OperatingSystem& current();

  // Errors.

  /// Returns the calling thread's last error: `errno` on POSIX, with a resolver's code as its negative EAI_ number. On
  /// Windows it includes errors that the C runtime detects itself, as the system's number of that meaning.
  virtual std::uint32_t GetLastError() = 0;

  /// Sets `*buffer` to the system's text for the error `messageId` and returns its length. On POSIX the text comes from
  /// `strerrordesc_np`, in English, or `gai_strerror` for a resolver's code. `flags` must be
  /// kFormatMessageAllocateIgnoreInsertsFromSystem. The caller releases `*buffer` with `LocalFree`. Returns 0 with
  /// `*buffer` unchanged if the number has no text, and on failure. Ignores `source`, `languageId` and `size`.
  virtual std::uint32_t FormatMessageA(std::uint32_t flags, const void* source, std::uint32_t messageId,
                                       std::uint32_t languageId, char** buffer, std::uint32_t size) = 0;

  /// Releases memory that `FormatMessageA` allocated. A null pointer is ignored.
  virtual void LocalFree(void* memory) = 0;

  // Threads and clock.

  /// Returns the calling thread's id as the system's tools show it, never 0 (`gettid` on Linux). The system is called
  /// once per thread, and once more in the child after a `fork`.
  virtual std::uint32_t GetCurrentThreadId() = 0;

  /// Returns seconds since 1970-01-01 00:00:00 UTC, and stores them in `*seconds` unless that is null.
  virtual std::int64_t _time64(std::int64_t* seconds) = 0;

  /// Returns units of 100 ns since 1601-01-01 00:00:00 UTC, with a resolution of 1 ms or better; on Windows that of its
  /// clock tick, at most 16 ms.
  virtual std::uint64_t GetSystemTimeAsFileTime() = 0;

  // Time zone and calendar.

  /// Returns kTimeZoneIdUnknown, kTimeZoneIdStandard or kTimeZoneIdDaylight with `zone` set to the local zone, or
  /// kTimeZoneIdInvalid with `zone` unchanged. A change of the system's zone is noticed within a second. On POSIX, so
  /// is a change of the environment's TZ; if TZ is set, the system's zone doesn't count.
  virtual std::uint32_t GetTimeZoneInformation(TIME_ZONE_INFORMATION& zone) = 0;

  /// Makes the calling thread reread the zone, so that a change within the last second is noticed, too. `_get_tzname`,
  /// `_mktime64` and `_localtime64` use the C runtime's zone, which TZ sets on every system; the latter two, and on
  /// POSIX all three, also check for a change themselves, at most once a second.
  virtual void _tzset() = 0;

  /// Sets `buffer`, of `size` bytes, to the C runtime's name for the zone, NUL-terminated: of standard time for `index`
  /// 0, of daylight time for 1. On POSIX the name is a short one, and empty if the zone has no daylight time. Returns
  /// 0, or an error number with `buffer` unchanged: EINVAL for another index or no buffer, ERANGE if it is too small.
  virtual int _get_tzname(char* buffer, std::size_t size, int index) = 0;

  /// Returns the second, since 1970-01-01 00:00:00 UTC, of a local time. Whatever the date, the fields are read as
  /// standard time, for which `tm_isdst` must be 0: as UTC less the zone's standard offset, on POSIX that of the date,
  /// on Windows the present one. A time that a change of this offset repeats or skips is read with the offset before or
  /// after the change. Fields out of their ranges carry over into the next higher one (Windows refuses some that are
  /// far out); `tm_wday` and `tm_yday` are ignored. Returns -1 if the second lies before 1970-01-01 00:00:00 UTC or
  /// after kLastConvertibleSecond, for another `tm_isdst`, and if the zone can't be read.
  virtual std::int64_t _mktime64(const BrokenDownTime& local) = 0;

  /// Sets the record to the fields of `seconds`, counted from 1970-01-01 00:00:00 UTC: in UTC, or in the local time in
  /// force at that second, daylight time included. Returns false with the record unchanged if `seconds` is below 0 or
  /// above kLastConvertibleSecond.
  virtual bool _gmtime64(std::int64_t seconds, BrokenDownTime& utc) = 0;
  virtual bool _localtime64(std::int64_t seconds, BrokenDownTime& local) = 0;

  // Files.

  /// Opens `path`. Returns its descriptor, or -1 on failure. Bytes are written unchanged, line ends included. A file
  /// that it creates is never executable; it is readable by its owner and the owner's group and, with kModeWrite,
  /// writable by its owner, less what the process masks out. On Windows it inherits the rights of its directory, and is
  /// read-only without kModeWrite. Child processes don't inherit the descriptor. With kOpenAppend, a FIFO without a
  /// reader fails to open with ENXIO instead of waiting. A flag not declared above is a bad argument, as are
  /// kOpenTruncate without writing and kOpenExclusive without kOpenCreate. With kOpenTruncate, an existing `path` must
  /// be a regular file: a link (ELOOP on POSIX, ERROR_CANT_ACCESS_FILE on Windows), a FIFO or a device (ENXIO,
  /// ERROR_CANT_ACCESS_FILE) fails to open and is left unchanged. Links among its directories are followed.
  virtual int _open(const char* path, int flags, int mode) = 0;

  /// Writes up to `count` bytes with one system call, repeated after a signal. Returns the number of bytes written,
  /// which may be fewer, or -1 on failure.
  virtual std::int64_t _write(int descriptor, const void* data, std::size_t count) = 0;

  /// The same as `_write`, but the process gets no SIGPIPE from a pipe or socket without a reader: the call only fails
  /// with EPIPE. The host's handling of the signal is unchanged. On Windows, which has no such signal, as `_write`.
  virtual std::int64_t writeWithoutSignal(int descriptor, const void* data, std::size_t count) = 0;

  /// Returns a descriptor's file type: kFileTypeDisk or another of those constants; kFileTypeUnknown on failure.
  virtual std::uint32_t GetFileType(int descriptor) = 0;

  /// Returns how many columns the terminal of a descriptor shows; 0 if it is no terminal or doesn't report its width.
  virtual int terminalWidth(int descriptor) = 0;

  /// Locks a file that is open for writing against other processes that lock it, and waits until it can. Returns true
  /// if the file is locked, and `UnlockFile` must follow on the same thread; false on failure. Reading and writing are
  /// not blocked. On Windows the lock covers one byte far behind the end of any file and excludes the other threads of
  /// this process, too, which holds one such lock at a time. On POSIX it is a record lock (`fcntl`) of the process: it
  /// excludes none of its threads, a forked child doesn't inherit it, and closing any descriptor of the file releases
  /// it.
  virtual bool LockFile(int descriptor) = 0;
  virtual void UnlockFile(int descriptor) = 0;

  /// Locks a file in the same way, but returns false at once if another process has locked it. The lock remains until
  /// the descriptor is closed; `LockFile` must not be called for it.
  virtual bool TryLockFile(int descriptor) = 0;

  /// Sets `status` to that of an open file, or of the file that `path` names, following links. Returns 0, or -1 with
  /// `status` unchanged, also for anything else but a regular file (ENXIO, ERROR_CANT_ACCESS_FILE).
  virtual int fileStatus(int descriptor, FileStatus& status) = 0;
  virtual int fileStatus(const char* path, FileStatus& status) = 0;

  /// Reads up to `count` bytes at `offset` of a file that is open for reading. Returns the number of bytes read, 0
  /// behind the end of the file, or -1 on failure. The position of other reads and writes is unchanged on POSIX, and on
  /// Windows for a file opened with kOpenAppend.
  virtual std::int64_t pread(int descriptor, void* data, std::size_t count, std::uint64_t offset) = 0;

  /// Returns 0, or -1 if the system could not store the written data; the descriptor is closed in both cases.
  virtual int _close(int descriptor) = 0;

  /// Sets `times` to those and the size of the file or directory `path`, following links. Returns 0, or -1 with `times`
  /// unchanged.
  virtual int _stat64(const char* path, FileTimes& times) = 0;

  /// Sets `size` to the size in bytes of the file or directory `path`, following links. Returns 0, or -1 with `size`
  /// unchanged, also for 2 GiB and more.
  virtual int _stat64i32(const char* path, std::int32_t& size) = 0;

  /// Returns 0 if the process may access `path`, following links, else -1. `mode` is 0 for existence, 2 for writing, 4
  /// for reading, 6 for both. On POSIX the path is converted to UTF-8, and one that isn't UTF-16 fails. On Windows the
  /// read-only attribute alone decides about writing.
  virtual int _waccess(const wchar* path, int mode) = 0;

  /// Opens a file through the C library, which defines the modes and gets `path` unchanged. Returns null on failure.
  /// Writing is not buffered: a write to a full disk fails at once. Child processes don't inherit the descriptor.
  virtual std::unique_ptr<FileStream> fopen(const char* path, const char* mode) = 0;

  /// Removes a file or link, never a directory. Returns 0, or -1 on failure.
  virtual int remove(const char* path) = 0;

  /// Renames a file. Returns 0, or -1 on failure. An existing file of the new name may be replaced (POSIX) or make the
  /// call fail (Windows); remove it first.
  virtual int rename(const char* from, const char* to) = 0;

  /// Opens a directory for reading its entries. Returns null on failure.
  virtual std::unique_ptr<DirectoryStream> opendir(const char* path) = 0;

  // The system's log.

  /// Connects to the system's log for messages of `source`. On POSIX they go as datagrams to the socket `address`, the
  /// daemon's /dev/log; each looks for the socket anew, so the daemon may be restarted, and a full socket blocks. On
  /// Windows `source` is a source of the event log (`RegisterEventSourceW`) and `address` is ignored. Returns null on
  /// failure.
  virtual std::unique_ptr<SystemLog> openSystemLog(const char* source, const char* address) = 0;

  // The machine.

  /// Set `version` to the version of Windows. `dwOSVersionInfoSize` selects how much of the record to fill; a size
  /// other than those above fails. Return false with the record unchanged on failure, and always on POSIX (ENOSYS): no
  /// other system has these numbers, and the kernel's own would be mistaken for a version of Windows. On every version
  /// after 6.2, Windows reports 6.2 to a program whose manifest doesn't name that version as supported.
  virtual bool GetVersionExA(OSVERSIONINFOEXA& version) = 0;
  virtual bool GetVersionExW(OSVERSIONINFOW& version) = 0;

  /// Returns a number of the system's configuration, or 0 if the system doesn't know `index`; always 0 on POSIX.
  virtual int GetSystemMetrics(int index) = 0;

  /// Sets `information` to the processors: on POSIX those online, with the family, model and stepping that the
  /// processor itself reports (CPUID; 0 if it is not an x86). An architecture without a number is 0xFFFF.
  virtual void GetSystemInfo(SYSTEM_INFO& information) = 0;

  /// Sets `status` to the memory (`sysinfo` on Linux). Returns false with `status` unchanged on failure or if
  /// `dwLength` is not kMemoryStatusLength.
  virtual bool GlobalMemoryStatusEx(MEMORYSTATUSEX& status) = 0;

  /// Sets `buffer`, of `size` bytes, to the computer's name (`uname` on POSIX), NUL-terminated, and `size` to its
  /// length. If the buffer is too small, returns false with `buffer` unchanged and `size` set to the bytes needed, NUL
  /// included.
  virtual bool GetComputerNameA(char* buffer, std::uint32_t& size) = 0;

  /// Sets `names` to the kernel's. Returns 0, or -1 with `names` unchanged, as on Windows (ERROR_CALL_NOT_IMPLEMENTED).
  virtual int uname(utsname& names) = 0;

  /// Sets `text` to the content of /etc/os-release, or of /usr/lib/os-release if that can't be read: its complete lines
  /// within the first 64 KiB. Returns false with `text` unchanged on failure, and always on Windows.
  virtual bool readOsRelease(string& text) = 0;

  /// Sets `name` to the processor's own name: on POSIX the brand text of CPUID, or else the kernel's "model name" in
  /// /proc/cpuinfo, without blanks at its ends. Returns false with `name` unchanged if there is none, as on Windows.
  virtual bool processorName(string& name) = 0;

  // The socket layer and the resolver. On Windows they need `WSAStartup` first; elsewhere they are always available.

  /// Starts the socket layer. Returns 0, or its error number. Each success adds one use, until the process ends.
  virtual int WSAStartup(std::uint16_t version) = 0;

  /// Sets the calling thread's last error; a resolver's code is stored unchanged.
  virtual void WSASetLastError(int error) = 0;

  /// Sets `name`, of `size` bytes, to the host's name from the socket layer, NUL-terminated. Returns 0, or -1 on
  /// failure or if the name is too long; then POSIX leaves the part that fits in the buffer, and Windows nothing.
  virtual int gethostname(char* name, int size) = 0;

  /// Returns the host of a name, or of an IPv4 address in text form, with its IPv4 addresses; null if there is none.
  /// Valid until the thread's next call. On failure the last error is EAI_NONAME, EAI_AGAIN, EAI_FAIL, EAI_NODATA or a
  /// system error on POSIX (`gethostbyname_r`), and WSAHOST_NOT_FOUND or another of its codes on Windows.
  virtual const hostent* gethostbyname(const char* name) = 0;

  /// Sets `addresses` to those of `node`, a name or an address in text form, in the resolver's order, not repeated for
  /// each kind of socket. Of `hints` only `ai_family` is used. Returns 0, or the resolver's code with `addresses`
  /// unchanged: on POSIX one of EAI_, or the system's error number if that is EAI_SYSTEM.
  virtual int getaddrinfo(const char* node, const char* service, const addrinfo& hints,
                          std::vector<addrinfo>& addresses) = 0;

  /// Sets `host` to the name of a socket address and `service` to that of its port, both NUL-terminated; one that is
  /// null with size 0 is not looked up. `host` is the address as numeric text if it has no name or `flags` is
  /// kNameInfoNumericHost. Returns 0, or the resolver's code, as above.
  virtual int getnameinfo(const void* address, std::size_t addressLength, char* host, std::uint32_t hostSize,
                          char* service, std::uint32_t serviceSize, int flags) = 0;
};

/// Replaces the current object by `system` until the scope ends; scopes nest. Use it only while no other thread uses
/// the library: operations under way keep the object that they began with. `system` must outlive the scope.
class KDX_EXPORT ScopedOperatingSystem {
 public:
  /// Makes `system` the current object.
  explicit ScopedOperatingSystem(OperatingSystem& system);
  /// Makes the object current again that was current before.
  ~ScopedOperatingSystem();

  ScopedOperatingSystem(const ScopedOperatingSystem&) = delete;
  ScopedOperatingSystem& operator=(const ScopedOperatingSystem&) = delete;

 private:
  OperatingSystem* previous_;
};

}  // namespace kdx::os

#endif  // KDXCOMMON_OS_OPERATING_SYSTEM_H_
