// Internal to the library: decides which entries of a Windows file system are regular files. Free of system calls, and
// compiled on every system.

#ifndef KDXCOMMON_OS_WINDOWS_FILE_KIND_H_
#define KDXCOMMON_OS_WINDOWS_FILE_KIND_H_

#include <cstdint>

namespace kdx::os {

/// Bits of a file's attributes, and the bit of a reparse tag that marks the entry as a substitute for another name.
inline constexpr std::uint32_t kAttributeDirectory = 0x10;
inline constexpr std::uint32_t kAttributeDevice = 0x40;
inline constexpr std::uint32_t kAttributeReparsePoint = 0x400;
inline constexpr std::uint32_t kTagNameSurrogate = 0x20000000;

/// Returns whether an entry with these attributes is a regular file. `reparseTag` counts only with
/// kAttributeReparsePoint: a link or a mount point is not a regular file, but a file that the system has deduplicated,
/// archived or put into a cloud folder is one.
constexpr bool isRegularFile(std::uint32_t attributes, std::uint32_t reparseTag) {
  if (attributes & (kAttributeDirectory | kAttributeDevice)) return false;
  return !(attributes & kAttributeReparsePoint) || !(reparseTag & kTagNameSurrogate);
}

}  // namespace kdx::os

#endif  // KDXCOMMON_OS_WINDOWS_FILE_KIND_H_
