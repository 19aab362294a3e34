// Internal to the library: how the platform functions fail. Each function returns false, which its caller returns.

#ifndef KDXCOMMON_PLATFORM_FAILURE_H_
#define KDXCOMMON_PLATFORM_FAILURE_H_

#include <cstdint>

#include "kdxcommon/inhouse/zqlib/last_error.h"
#include "kdxcommon/os/operating_system.h"

namespace kdx {

/// Sets `*lastError` to the critical error `number`. A null pointer is ignored.
inline bool failWith(std::uint32_t number, ZQLastError* lastError) {
  if (lastError) lastError->setCritical(number);
  return false;
}

/// The same with the calling thread's last error, which the failed call of the system left.
inline bool failWithSystemError(ZQLastError* lastError) {
  return failWith(os::OperatingSystem::current().GetLastError(), lastError);
}
inline bool failWithSystemError(int& error) {
  error = static_cast<int>(os::OperatingSystem::current().GetLastError());
  return false;
}

}  // namespace kdx

#endif  // KDXCOMMON_PLATFORM_FAILURE_H_
