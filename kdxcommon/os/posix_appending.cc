// Appending to what other processes also write or read: files, pipes and sockets.

#include <signal.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <time.h>

#include <cerrno>

#include "kdxcommon/os/posix_operating_system.h"

namespace kdx::os {

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

bool PosixOperatingSystem::LockFile(int /*descriptor*/) {
  return true;
}

void PosixOperatingSystem::UnlockFile(int /*descriptor*/) {}

}  // namespace kdx::os
