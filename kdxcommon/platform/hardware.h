// The machine's processors, memory and name.
//
//   std::uint64_t bytes = 0;
//   int error = 0;
//   if (kdx::platformSystemRAM(bytes, error)) sizeCaches(bytes / 4);
//
// The facts describe the machine. In a container or under an affinity mask the process may use less of it: limits of
// memory and processors (cgroups) don't change the results.
//
// Thread safety: the operations keep no state and may be called from any thread. On failure they return false and set
// `error` to the system's last error; on success `error` is unchanged. They throw only std::bad_alloc.

#ifndef KDXCOMMON_PLATFORM_HARDWARE_H_
#define KDXCOMMON_PLATFORM_HARDWARE_H_

#include <cstdint>

#include "kdxcommon/base/export.h"
#include "kdxcommon/base/string_types.h"

namespace kdx {

/// Sets `type` to a description of the processor, with the number of processors if there are several (`GetSystemInfo`).
/// On Windows it also depends on the system's version (`GetVersionExA`): "x64 Family 6: CPUs 8" or
/// " x86 Family 6 Model 15 Stepping 11", with the leading space; "??? ???" for an unknown processor. On Linux it is the
/// processor's name (CPUID, or else /proc/cpuinfo), family, model and stepping:
/// "AMD EPYC Family 25 Model 17 Stepping 1: CPUs 2"; on architectures other than x86 it is the kernel's name for the
/// machine (`uname`): "aarch64: CPUs 4". Empty on failure.
KDX_EXPORT bool platformTypeOfCPU(string& type, int& error);

/// Sets `count` to the number of the machine's logical processors (`GetSystemInfo`; those online on POSIX), including
/// those that the process may not use. Never fails.
KDX_EXPORT bool platformNumberOfCPUs(std::uint32_t& count, int& error);

/// Sets `bytes` to the machine's physical memory in bytes (`GlobalMemoryStatusEx`; `sysinfo` on Linux), rounded up to
/// the next whole number of MiB: always more than the actual size. 0 on failure.
KDX_EXPORT bool platformSystemRAM(std::uint64_t& bytes, int& error);

/// Sets `name` to the computer's name (`GetComputerNameA`; the node name of `uname` on POSIX), in the system's narrow
/// encoding. On some machines it differs from the host name of the socket layer (`platformGethostname`). On failure
/// `name` is unchanged.
KDX_EXPORT bool platformComputerName(string& name, int& error);

}  // namespace kdx

#endif  // KDXCOMMON_PLATFORM_HARDWARE_H_
