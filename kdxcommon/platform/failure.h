// Internal to the library: functions that report the failure of a platform operation. Each returns false, as the result
// of that operation.

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

/// Reports the calling thread's last error, which the failed system call has set.
inline bool failWithSystemError(ZQLastError* lastError) {
  return failWith(os::OperatingSystem::current().GetLastError(), lastError);
}
inline bool failWithSystemError(int& error) {
  error = static_cast<int>(os::OperatingSystem::current().GetLastError());
  return false;
}

}  // namespace kdx

#endif  // KDXCOMMON_PLATFORM_FAILURE_H_
