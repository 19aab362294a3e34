// Internal to the library: Linux's own facts, for the operations that describe a system by its version of Windows.

#ifndef KDXCOMMON_PLATFORM_LINUX_FACTS_H_
#define KDXCOMMON_PLATFORM_LINUX_FACTS_H_

#include "kdxcommon/base/string_types.h"
#include "kdxcommon/os/operating_system.h"
#include "kdxcommon/platform/os_release.h"

namespace kdx {

struct LD_OSInformation_s;

/// Asks for the version of Windows in the record of `size` bytes; the rest of `version` is cleared.
bool readWindowsVersion(std::uint32_t size, os::OSVERSIONINFOEXA& version);

/// Whether a question for the version of Windows, which has just failed on this thread, failed because this system is
/// none (ENOSYS).
bool isOtherThanWindows();

/// What the distribution says of itself; empty texts where it says nothing that can be read.
OsRelease distributionRelease();

/// Fills a preset record from the distribution's release.
void describeLinux(const OsRelease& release, LD_OSInformation_s& information);

/// Returns the name, family, model and stepping of an x86 processor, or of another one the kernel's name of its kind,
/// and the count of processors: "AMD EPYC Family 25 Model 17 Stepping 1: CPUs 2". `name` may be empty.
string linuxProcessorText(const string& name, const string& machine, const os::SYSTEM_INFO& processor);

}  // namespace kdx

#endif  // KDXCOMMON_PLATFORM_LINUX_FACTS_H_
