// Internal to the library: the seam behind which each platform keeps its implementation.

#ifndef KDXCOMMON_OS_NATIVE_OPERATING_SYSTEM_H_
#define KDXCOMMON_OS_NATIVE_OPERATING_SYSTEM_H_

#include "kdxcommon/os/operating_system.h"

namespace kdx::os {

/// Returns the machine's own operating system. It is made when the library loads and never destroyed, so that a static
/// object's destructor may still ask it. Thread-safe.
OperatingSystem& nativeOperatingSystem();

}  // namespace kdx::os

#endif  // KDXCOMMON_OS_NATIVE_OPERATING_SYSTEM_H_
