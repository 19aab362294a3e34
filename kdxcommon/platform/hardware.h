// The machine's processors, memory and name.
//
//   std::uint64_t bytes = 0;
//   int error = 0;
//   if (kdx::platformSystemRAM(bytes, error)) sizeCaches(bytes / 4);
//
// Thread rule: no state of their own, any thread. Failure rule: false, with `error` the system's last error; it is
// written only then. Nothing throws but an allocation.

#ifndef KDXCOMMON_PLATFORM_HARDWARE_H_
#define KDXCOMMON_PLATFORM_HARDWARE_H_

#include <cstdint>

#include "kdxcommon/base/export.h"
#include "kdxcommon/base/string_types.h"

namespace kdx {

/// A text for the processor (`GetSystemInfo`), such as "x64 Family 6: CPUs 8" or " x86 Family 6 Model 15 Stepping 11",
/// with its blank; "??? ???" for one that Windows had no text for. The text depends on the version of Windows too
/// (`GetVersionExA`): on any other system the operation fails, with ENOSYS, and `type` is empty.
KDX_EXPORT bool platformTypeOfCPU(string& type, int& error);

/// How many logical processors the machine runs (`GetSystemInfo`; those online on POSIX), whatever the process may use
/// of them. Never fails.
KDX_EXPORT bool platformNumberOfCPUs(std::uint32_t& count, int& error);

/// The physical memory in bytes (`GlobalMemoryStatusEx`; `sysinfo` on Linux), as the next whole number of MiB above it:
/// always more than there is. 0 on failure.
KDX_EXPORT bool platformSystemRAM(std::uint64_t& bytes, int& error);

/// The computer's name (`GetComputerNameA`; the node name of `uname` on POSIX), in the system's narrow encoding. Other
/// than the host's name in the socket layer (`platformGethostname`) on some machines. On failure `name` stays.
KDX_EXPORT bool platformComputerName(string& name, int& error);

}  // namespace kdx

#endif  // KDXCOMMON_PLATFORM_HARDWARE_H_
