// Internal to the library: work that its caller's last error must survive, as that of writing the log.

#ifndef KDXCOMMON_OS_KEPT_LAST_ERROR_H_
#define KDXCOMMON_OS_KEPT_LAST_ERROR_H_

#include <cerrno>
#include <cstdint>

#include "kdxcommon/os/operating_system.h"

namespace kdx::os {

/// Restores at the end of a scope the last error that the thread had at its beginning: the system's, and `errno`, which
/// on Windows is another. The system is the one in use at the beginning.
class KeptLastError {
 public:
  KeptLastError() = default;
  ~KeptLastError() {
    system_.WSASetLastError(static_cast<int>(lastError_));
    errno = errno_;
  }
  KeptLastError(const KeptLastError&) = delete;
  KeptLastError& operator=(const KeptLastError&) = delete;

 private:
  OperatingSystem& system_ = OperatingSystem::current();
  std::uint32_t lastError_ = system_.GetLastError();
  int errno_ = errno;
};

}  // namespace kdx::os

#endif  // KDXCOMMON_OS_KEPT_LAST_ERROR_H_
