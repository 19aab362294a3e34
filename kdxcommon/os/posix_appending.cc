// Appending to what other processes also write or read: files, pipes and sockets.

#include <fcntl.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>

#include "kdxcommon/os/posix_calls.h"
#include "kdxcommon/os/posix_operating_system.h"

namespace kdx::os {
namespace {

bool lockWholeFile(int descriptor, int command, short type) {
  struct flock range {};  // a length of 0 reaches beyond any end
  range.l_type = type;
  range.l_whence = SEEK_SET;
  return retriedAfterSignals([&] { return ::fcntl(descriptor, command, &range); }) == 0;
}

int copyStatus(const struct stat& found, FileStatus& status) {
  if (!S_ISREG(found.st_mode)) {
    errno = ENXIO;
    return -1;
  }
  status = {.volume = found.st_dev, .file = found.st_ino, .size = static_cast<std::uint64_t>(found.st_size)};
  return 0;
}

}  // namespace

// The system sends the signal to the writing thread. While blocked there, it stays pending, and is removed before the
// thread's mask is restored; one that was pending before belongs to the host.
std::int64_t PosixOperatingSystem::writeWithoutSignal(int descriptor, const void* data, std::size_t count) {
  sigset_t pipeSignal, mask, pending;
  ::sigemptyset(&pipeSignal);
  ::sigaddset(&pipeSignal, SIGPIPE);
  ::pthread_sigmask(SIG_BLOCK, &pipeSignal, &mask);
  const bool wasBlocked = ::sigismember(&mask, SIGPIPE) == 1;
  const bool wasPending = wasBlocked && ::sigpending(&pending) == 0 && ::sigismember(&pending, SIGPIPE) == 1;

  const std::int64_t written = _write(descriptor, data, count);
  const int reason = errno;
  // A reader that closes during a partial write leaves a signal, too.
  if (written != static_cast<std::int64_t>(count) && !wasPending) {
    constexpr timespec kNoWait{};
    ::sigtimedwait(&pipeSignal, nullptr, &kNoWait);
  }
  if (!wasBlocked) ::pthread_sigmask(SIG_SETMASK, &mask, nullptr);
  errno = reason;
  return written;
}

std::uint32_t PosixOperatingSystem::GetFileType(int descriptor) {
  struct stat status;
  if (::fstat(descriptor, &status) != 0) return kFileTypeUnknown;
  switch (status.st_mode & S_IFMT) {
    case S_IFREG:
      return kFileTypeDisk;
    case S_IFCHR:
      return kFileTypeCharacter;
    case S_IFIFO:
    case S_IFSOCK:
      return kFileTypePipe;
  }
  return kFileTypeUnknown;
}

int PosixOperatingSystem::terminalWidth(int descriptor) {
  struct winsize size {};
  return ::ioctl(descriptor, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

bool PosixOperatingSystem::LockFile(int descriptor) {
  return lockWholeFile(descriptor, F_SETLKW, F_WRLCK);
}

void PosixOperatingSystem::UnlockFile(int descriptor) {
  lockWholeFile(descriptor, F_SETLK, F_UNLCK);
}

bool PosixOperatingSystem::TryLockFile(int descriptor) {
  return lockWholeFile(descriptor, F_SETLK, F_WRLCK);
}

int PosixOperatingSystem::fileStatus(int descriptor, FileStatus& status) {
  struct stat found;
  return ::fstat(descriptor, &found) == 0 ? copyStatus(found, status) : -1;
}

int PosixOperatingSystem::fileStatus(const char* path, FileStatus& status) {
  if (!path) return badArgument();
  struct stat found;
  return retriedAfterSignals([&] { return ::stat(path, &found); }) == 0 ? copyStatus(found, status) : -1;
}

std::int64_t PosixOperatingSystem::pread(int descriptor, void* data, std::size_t count, std::uint64_t offset) {
  if (!data && count > 0) return badArgument();
  return retriedAfterSignals([&] { return ::pread(descriptor, data, count, static_cast<off_t>(offset)); });
}

}  // namespace kdx::os
