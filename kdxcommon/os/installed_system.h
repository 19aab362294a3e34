// Internal to the library: OperatingSystem::current() without a call, for operations of a few nanoseconds.

#ifndef KDXCOMMON_OS_INSTALLED_SYSTEM_H_
#define KDXCOMMON_OS_INSTALLED_SYSTEM_H_

#include <atomic>

#include "kdxcommon/os/operating_system.h"

namespace kdx::os {

/// The object in use; null until the first one is asked for.
extern constinit std::atomic<OperatingSystem*> installed;

/// Returns `OperatingSystem::current()`.
inline OperatingSystem& installedSystem() {
  OperatingSystem* const system = installed.load(std::memory_order_acquire);
  return system ? *system : OperatingSystem::current();
}

}  // namespace kdx::os

#endif  // KDXCOMMON_OS_INSTALLED_SYSTEM_H_
