// The machine's processors, memory and name.
//
//   std::uint64_t bytes = 0;
//   int error = 0;
//   if (kdx::platformSystemRAM(bytes, error)) sizeCaches(bytes / 4);
//
// The facts are the machine's. In a container, or under an affinity mask, the process may use less of it: limits of
// memory and processors (cgroups) don't change any of them.
//
// Thread safety: the operations keep no state and may be called from any thread. On failure they return false and set
// `error` to the system's last error; on success `error` stays as it is. They throw only std::bad_alloc.

#ifndef KDXCOMMON_PLATFORM_HARDWARE_H_
#define KDXCOMMON_PLATFORM_HARDWARE_H_

#include <cstdint>

#include "kdxcommon/base/export.h"
#include "kdxcommon/base/string_types.h"

namespace kdx {

/// Sets `type` to a text for the processor and, if there are several, their count (`GetSystemInfo`). On Windows, whose
/// version has a say in it (`GetVersionExA`): "x64 Family 6: CPUs 8" or " x86 Family 6 Model 15 Stepping 11", with its
/// blank; "??? ???" for one that has no text. On Linux the processor's own name (CPUID, or else /proc/cpuinfo), family,
/// model and stepping: "AMD EPYC Family 25 Model 17 Stepping 1: CPUs 2"; for other architectures than x86 the kernel's
/// name (`uname`): "aarch64: CPUs 4". Empty on failure.
KDX_EXPORT bool platformTypeOfCPU(string& type, int& error);

/// Sets `count` to the number of logical processors that the machine runs (`GetSystemInfo`; those online on POSIX),
/// whatever the process may use of them. Never fails.
KDX_EXPORT bool platformNumberOfCPUs(std::uint32_t& count, int& error);

/// Sets `bytes` to the machine's physical memory in bytes (`GlobalMemoryStatusEx`; `sysinfo` on Linux), as the next
/// whole number of MiB above it: always more than there is. 0 on failure.
KDX_EXPORT bool platformSystemRAM(std::uint64_t& bytes, int& error);

/// Sets `name` to the computer's name (`GetComputerNameA`; the node name of `uname` on POSIX), in the system's narrow
/// encoding. On some machines it differs from the host's name in the socket layer (`platformGethostname`). On failure
/// `name` stays as it is.
KDX_EXPORT bool platformComputerName(string& name, int& error);

}  // namespace kdx

#endif  // KDXCOMMON_PLATFORM_HARDWARE_H_
