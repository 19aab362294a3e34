// Internal to the library: a scope that preserves the caller's last error, for work such as writing the log.

#ifndef KDXCOMMON_OS_KEPT_LAST_ERROR_H_
#define KDXCOMMON_OS_KEPT_LAST_ERROR_H_

#include <cerrno>
#include <cstdint>

#include "kdxcommon/os/installed_system.h"

namespace kdx::os {

/// Restores, at the end of a scope, the last error that the thread had at its beginning: that of the operating-system
/// interface and `errno`, which on Windows are different. Both ends use the object that is current at the beginning.
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
  OperatingSystem& system_ = installedSystem();
  std::uint32_t lastError_ = system_.GetLastError();
  int errno_ = errno;
};

}  // namespace kdx::os

#endif  // KDXCOMMON_OS_KEPT_LAST_ERROR_H_
