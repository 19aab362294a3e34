// Internal to the library: the flags that `_open` accepts, the same on every system.

#ifndef KDXCOMMON_OS_OPEN_FLAGS_H_
#define KDXCOMMON_OS_OPEN_FLAGS_H_

#include "kdxcommon/os/operating_system.h"

namespace kdx::os {

inline constexpr int kOpenAccessMask = kOpenWriteOnly | kOpenReadWrite;

/// Returns whether every bit of `flags` is a declared flag and their combination is valid.
constexpr bool areOpenFlags(int flags) {
  const int access = flags & kOpenAccessMask;
  const int declared = kOpenAccessMask | kOpenAppend | kOpenCreate | kOpenTruncate | kOpenExclusive;
  if (access == kOpenAccessMask || (flags & ~declared) != 0) return false;
  if (access == kOpenReadOnly && (flags & kOpenTruncate)) return false;
  return (flags & kOpenCreate) || !(flags & kOpenExclusive);
}

}  // namespace kdx::os

#endif  // KDXCOMMON_OS_OPEN_FLAGS_H_
