// Internal to the library: each platform implements this function.

#ifndef KDXCOMMON_OS_NATIVE_OPERATING_SYSTEM_H_
#define KDXCOMMON_OS_NATIVE_OPERATING_SYSTEM_H_

#include "kdxcommon/os/operating_system.h"

namespace kdx::os {

/// Returns the native operating-system interface. It is created when the library loads and never destroyed, so that
/// destructors of static objects can still use it. Thread-safe.
OperatingSystem& nativeOperatingSystem();

}  // namespace kdx::os

#endif  // KDXCOMMON_OS_NATIVE_OPERATING_SYSTEM_H_
