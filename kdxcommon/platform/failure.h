// Internal to the library: how the platform functions report what failed. Each gives false, for the caller to pass on.

#ifndef KDXCOMMON_PLATFORM_FAILURE_H_
#define KDXCOMMON_PLATFORM_FAILURE_H_

#include <cstdint>

#include "kdxcommon/inhouse/zqlib/last_error.h"
#include "kdxcommon/os/operating_system.h"

namespace kdx {

/// Makes `*lastError`, unless it is null, the critical error `number`.
inline bool failed(std::uint32_t number, ZQLastError* lastError) {
  if (lastError) lastError->setCritical(number);
  return false;
}

/// The same with the number of the call of the system that has just failed on this thread.
inline bool systemFailed(ZQLastError* lastError) {
  return failed(os::OperatingSystem::current().GetLastError(), lastError);
}
inline bool systemFailed(int& error) {
  error = static_cast<int>(os::OperatingSystem::current().GetLastError());
  return false;
}

}  // namespace kdx

#endif  // KDXCOMMON_PLATFORM_FAILURE_H_
