#include "kdxcommon/os/posix_operating_system.h"

#include <dirent.h>
#include <fcntl.h>
#include <pthread.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <utility>

#include "kdxcommon/base/transcoder.h"
#include "kdxcommon/os/native_operating_system.h"
#include "kdxcommon/os/open_flags.h"
#include "kdxcommon/os/posix_calls.h"
#include "kdxcommon/os/posix_time_zone.h"
#include "kdxcommon/os/stdio_file_stream.h"

namespace kdx::os {
namespace {

constexpr mode_t kWritableFile = S_IRUSR | S_IWUSR | S_IRGRP;
constexpr mode_t kReadOnlyFile = S_IRUSR | S_IRGRP;

thread_local std::uint32_t threadId = 0;  // 0 until the first call

// Closes a descriptor that can't be used, and preserves errno.
void closeUnused(int descriptor) {
  const int reason = errno;
  ::close(descriptor);
  errno = reason;
}

// Never returns a standard descriptor: if the host has closed one of these three, what others write there would end up
// in the file.
int openDescriptor(const char* path, int posixFlags, mode_t mode) {
  const int opened = retriedAfterSignals([&] { return ::open(path, posixFlags | O_CLOEXEC, mode); });
  if (opened < 0 || opened > STDERR_FILENO) return opened;
  const int moved = ::fcntl(opened, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
  closeUnused(opened);
  return moved;
}

// Opens without waiting: a FIFO that nobody reads fails with ENXIO.
int openWithoutWaiting(const char* path, int posixFlags, mode_t mode) {
  const int descriptor = openDescriptor(path, posixFlags | O_NONBLOCK | O_NOCTTY, mode);
  // Only a regular file can be leased to another process, which returns the lease while the open waits.
  return descriptor == -1 && errno == EWOULDBLOCK ? openDescriptor(path, posixFlags, mode) : descriptor;
}

int openForAppending(const char* path, int posixFlags, mode_t mode) {
  const int descriptor = openWithoutWaiting(path, posixFlags, mode);
  if (descriptor != -1) ::fcntl(descriptor, F_SETFL, posixFlags & O_APPEND);  // writing blocks, as to any pipe
  return descriptor;
}

bool isRegularFile(int descriptor) {
  struct stat status;
  if (::fstat(descriptor, &status) != 0) return false;
  if (S_ISREG(status.st_mode)) return true;
  errno = ENXIO;  // the system's error for a socket, or a FIFO without a reader
  return false;
}

// Opens and empties a regular file, never through a link of its name. Anything else is left unchanged.
int openEmptied(const char* path, int posixFlags, mode_t mode) {
  const int descriptor = openWithoutWaiting(path, (posixFlags & ~O_TRUNC) | O_NOFOLLOW, mode);
  if (descriptor == -1) return -1;
  if (isRegularFile(descriptor) && retriedAfterSignals([&] { return ::ftruncate(descriptor, 0); }) == 0) {
    return descriptor;
  }
  closeUnused(descriptor);
  return -1;
}

// Returns the POSIX flags for those of `_open`.
int posixOpenFlags(int flags) {
  struct Translation {
    int ours;
    int posix;
  };
  static constexpr Translation kBits[] = {
      {kOpenAppend, O_APPEND}, {kOpenCreate, O_CREAT}, {kOpenTruncate, O_TRUNC}, {kOpenExclusive, O_EXCL}};
  static constexpr int kAccess[] = {O_RDONLY, O_WRONLY, O_RDWR};

  int posix = kAccess[flags & kOpenAccessMask];
  for (const Translation& bit : kBits) {
    if (flags & bit.ours) posix |= bit.posix;
  }
  return posix;
}

// Returns the flags with which the C library's `fopen` opens a file in `mode`.
int posixFlagsOfMode(string_view mode) {
  const bool update = mode.find('+') != string_view::npos;
  if (mode.starts_with('r')) return update ? O_RDWR : O_RDONLY;
  const int exclusive = mode.find('x') != string_view::npos ? O_EXCL : 0;
  return (update ? O_RDWR : O_WRONLY) | O_CREAT | exclusive | (mode.starts_with('a') ? O_APPEND : O_TRUNC);
}

// Opens a stream of the C library over a new descriptor, and closes the descriptor if that fails.
template <typename Open>
auto streamOver(int descriptor, Open open) -> decltype(open(descriptor)) {
  if (descriptor == -1) return nullptr;
  const auto stream = open(descriptor);
  if (!stream) closeUnused(descriptor);
  return stream;
}

struct CloseDirectory {
  void operator()(DIR* directory) const { ::closedir(directory); }
};
using OpenDirectory = std::unique_ptr<DIR, CloseDirectory>;

// Sets `regularFile` to whether `name`, read from the open directory `directory` with the `d_type` `type`, is a
// regular file, and returns true. If the file system returns no types with the names (DT_UNKNOWN), calls `fstatat`; a
// name that has been removed meanwhile is not a regular file. Returns false if that call fails for another reason.
bool findRegularFile(unsigned char type, int directory, const char* name, bool& regularFile) {
  regularFile = type == DT_REG;
  if (type != DT_UNKNOWN) return true;
  struct stat status;
  if (::fstatat(directory, name, &status, AT_SYMLINK_NOFOLLOW) == 0) {
    regularFile = S_ISREG(status.st_mode);
    return true;
  }
  return errno == ENOENT;
}

class PosixDirectoryStream : public DirectoryStream {
 public:
  explicit PosixDirectoryStream(OpenDirectory directory) : directory_(std::move(directory)) {}

  int readdir(DirectoryEntry& entry) override {
    errno = 0;                                         // only errno distinguishes a failure from the end
    const dirent* next = ::readdir(directory_.get());  // NOLINT(concurrency-mt-unsafe): the stream is this object's own
    if (!next) return errno == 0 ? 0 : -1;
    bool regularFile = false;
    if (!findRegularFile(next->d_type, ::dirfd(directory_.get()), next->d_name, regularFile)) return -1;
    entry = {next->d_name, regularFile};
    return 1;
  }

 private:
  OpenDirectory directory_;
};

}  // namespace

OperatingSystem& nativeOperatingSystem() {
  static PosixOperatingSystem& system = *new PosixOperatingSystem;
  return system;
}

const char* pathSeparator() {
  return "/";
}

bool appendsWhole() {
  return true;
}

std::uint64_t fileTimeOf(std::int64_t seconds, std::int64_t nanoseconds) {
  constexpr std::int64_t kUnitsPerSecond = 10'000'000;
  constexpr std::int64_t kNanosecondsPerUnit = 100;
  constexpr std::int64_t kSecondsFrom1601To1970 = 11'644'473'600;
  return static_cast<std::uint64_t>((seconds + kSecondsFrom1601To1970) * kUnitsPerSecond +
                                    nanoseconds / kNanosecondsPerUnit);
}

PosixOperatingSystem::PosixOperatingSystem() {
  // The only thread of a forked child inherits the memory of its parent's thread, but not the id.
  ::pthread_atfork(nullptr, nullptr, [] { threadId = 0; });
}

std::uint32_t PosixOperatingSystem::GetLastError() {
  return static_cast<std::uint32_t>(errno);
}

std::uint32_t PosixOperatingSystem::FormatMessageA(std::uint32_t flags, const void* /*source*/, std::uint32_t messageId,
                                                   std::uint32_t /*languageId*/, char** buffer,
                                                   std::uint32_t /*size*/) {
  const char* text = nullptr;
  if (flags == kFormatMessageAllocateIgnoreInsertsFromSystem && buffer) {
    const int code = static_cast<int>(messageId);
    text = code < 0 ? resolverErrorText(code) : ::strerrordesc_np(code);
  }
  if (!text) {
    errno = EINVAL;
    return 0;
  }
  char* copy = ::strdup(text);
  if (!copy) return 0;
  *buffer = copy;
  return static_cast<std::uint32_t>(std::strlen(copy));
}

void PosixOperatingSystem::LocalFree(void* memory) {
  std::free(memory);
}

std::uint32_t PosixOperatingSystem::GetCurrentThreadId() {
  if (threadId == 0) threadId = static_cast<std::uint32_t>(::gettid());
  return threadId;
}

std::int64_t PosixOperatingSystem::_time64(std::int64_t* seconds) {
  const std::int64_t now = ::time(nullptr);
  if (seconds) *seconds = now;
  return now;
}

std::uint64_t PosixOperatingSystem::GetSystemTimeAsFileTime() {
  // The coarse clock is 20 ns cheaper, but advances only every 4 ms, and log lines show milliseconds.
  timespec now{};
  ::clock_gettime(CLOCK_REALTIME, &now);
  return fileTimeOf(now.tv_sec, now.tv_nsec);
}

std::uint32_t PosixOperatingSystem::GetTimeZoneInformation(TIME_ZONE_INFORMATION& zone) {
  const PosixTimeZone& now = currentTimeZone();
  if (now.id != kTimeZoneIdInvalid) zone = now.information;
  return now.id;
}

void PosixOperatingSystem::_tzset() {
  lookForChangedZone();
}

int PosixOperatingSystem::_get_tzname(char* buffer, std::size_t size, int index) {
  return timeZoneName(buffer, size, index);
}

std::int64_t PosixOperatingSystem::_mktime64(const BrokenDownTime& local) {
  return secondOfStandardTime(local);
}

bool PosixOperatingSystem::_gmtime64(std::int64_t seconds, BrokenDownTime& utc) {
  return breakDownUtc(seconds, utc);
}

bool PosixOperatingSystem::_localtime64(std::int64_t seconds, BrokenDownTime& local) {
  return breakDownLocal(seconds, local);
}

int PosixOperatingSystem::_open(const char* path, int flags, int mode) {
  if (!path || !areOpenFlags(flags)) return badArgument();
  const auto open = (flags & kOpenTruncate) ? openEmptied : (flags & kOpenAppend) ? openForAppending : openDescriptor;
  return open(path, posixOpenFlags(flags), (mode & kModeWrite) ? kWritableFile : kReadOnlyFile);
}

std::int64_t PosixOperatingSystem::_write(int descriptor, const void* data, std::size_t count) {
  if (!data && count > 0) return badArgument();
  return retriedAfterSignals([&] { return ::write(descriptor, data, count); });
}

int PosixOperatingSystem::_close(int descriptor) {
  return ::close(descriptor);
}

int PosixOperatingSystem::_stat64(const char* path, FileTimes& times) {
  if (!path) return badArgument();
  struct stat status;
  if (retriedAfterSignals([&] { return ::stat(path, &status); }) != 0) return -1;
  times = {
      .modified = status.st_mtime, .accessed = status.st_atime, .attributes = status.st_ctime, .size = status.st_size};
  return 0;
}

int PosixOperatingSystem::_stat64i32(const char* path, std::int32_t& size) {
  if (!path) return badArgument();
  struct stat status;
  if (retriedAfterSignals([&] { return ::stat(path, &status); }) != 0) return -1;
  if (status.st_size > std::numeric_limits<std::int32_t>::max()) {
    errno = EOVERFLOW;
    return -1;
  }
  size = static_cast<std::int32_t>(status.st_size);
  return 0;
}

int PosixOperatingSystem::_waccess(const wchar* path, int mode) {
  string narrowPath;
  if (!path || !utf16ToUtf8(path, narrowPath)) return badArgument();
  // With the rights that apply to opening the file: those of the effective user.
  return retriedAfterSignals([&] { return ::faccessat(AT_FDCWD, narrowPath.c_str(), mode, AT_EACCESS); });
}

std::unique_ptr<FileStream> PosixOperatingSystem::fopen(const char* path, const char* mode) {
  if (!path || !mode || !std::strchr("rwa", *mode) || !*mode) {
    badArgument();
    return nullptr;
  }
  constexpr mode_t kAsTheProcessMasks = 0666;
  const int descriptor = openDescriptor(path, posixFlagsOfMode(mode), kAsTheProcessMasks);
  return stdioFileStream(streamOver(descriptor, [mode](int opened) { return ::fdopen(opened, mode); }), mode);
}

int PosixOperatingSystem::remove(const char* path) {
  if (!path) return badArgument();
  return retriedAfterSignals([&] { return ::unlink(path); });
}

int PosixOperatingSystem::rename(const char* from, const char* to) {
  if (!from || !to) return badArgument();
  return retriedAfterSignals([&] { return ::rename(from, to); });
}

std::unique_ptr<DirectoryStream> PosixOperatingSystem::opendir(const char* path) {
  if (!path) {
    badArgument();
    return nullptr;
  }
  OpenDirectory directory(streamOver(openDescriptor(path, O_RDONLY | O_DIRECTORY, 0), ::fdopendir));
  if (!directory) return nullptr;
  return std::make_unique<PosixDirectoryStream>(std::move(directory));
}

}  // namespace kdx::os
