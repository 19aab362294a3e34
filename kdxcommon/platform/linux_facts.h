// Internal to the library: facts about Linux, for operations that on Windows depend on the Windows version.

#ifndef KDXCOMMON_PLATFORM_LINUX_FACTS_H_
#define KDXCOMMON_PLATFORM_LINUX_FACTS_H_

#include "kdxcommon/base/string_types.h"
#include "kdxcommon/os/operating_system.h"
#include "kdxcommon/platform/os_release.h"

namespace kdx {

struct LD_OSInformation_s;

/// Reads the Windows version (`GetVersionExA`) into a record of `size` bytes and clears the rest of `version`. Returns
/// false and sets the thread's last error on failure.
bool readWindowsVersion(std::uint32_t size, os::OSVERSIONINFOEXA& version);

/// Returns whether the call for the Windows version that has just failed on this thread failed because the system isn't
/// Windows (ENOSYS).
bool isOtherThanWindows();

/// Returns the distribution's os-release values; a value that is missing or can't be read is empty.
OsRelease distributionRelease();

/// Sets the fields of a preset record from the distribution's release; keeps the preset vendor if the release has none.
void describeLinux(const OsRelease& release, LD_OSInformation_s& information);

/// Returns the name, family, model and stepping of an x86 processor, or `machine`, the kernel's name, for any other
/// processor, and the number of processors if there are several: "AMD EPYC Family 25 Model 17 Stepping 1: CPUs 2". If
/// `name` is empty, `machine` replaces it.
string linuxProcessorText(const string& name, const string& machine, const os::SYSTEM_INFO& processor);

}  // namespace kdx

#endif  // KDXCOMMON_PLATFORM_LINUX_FACTS_H_
