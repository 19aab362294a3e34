// Internal to the library: the seam behind which each platform keeps its implementation.

#ifndef KDXCOMMON_OS_NATIVE_OPERATING_SYSTEM_H_
#define KDXCOMMON_OS_NATIVE_OPERATING_SYSTEM_H_

#include "kdxcommon/os/operating_system.h"

namespace kdx::os {

/// The machine's own operating system: made at the first call and never destroyed, so that a static object's destructor
/// may still ask it. Any thread may call.
OperatingSystem& nativeOperatingSystem();

}  // namespace kdx::os

#endif  // KDXCOMMON_OS_NATIVE_OPERATING_SYSTEM_H_
