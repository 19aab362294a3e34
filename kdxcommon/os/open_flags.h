// Internal to the library: which flags `_open` takes, the same on every system.

#ifndef KDXCOMMON_OS_OPEN_FLAGS_H_
#define KDXCOMMON_OS_OPEN_FLAGS_H_

#include "kdxcommon/os/operating_system.h"

namespace kdx::os {

inline constexpr int kOpenAccessMask = kOpenWriteOnly | kOpenReadWrite;

/// Whether every bit is declared and their combination has a meaning.
constexpr bool areOpenFlags(int flags) {
  const int access = flags & kOpenAccessMask;
  const int declared = kOpenAccessMask | kOpenAppend | kOpenCreate | kOpenTruncate | kOpenExclusive;
  if (access == kOpenAccessMask || (flags & ~declared) != 0) return false;
  if (access == kOpenReadOnly && (flags & kOpenTruncate)) return false;
  return (flags & kOpenCreate) || !(flags & kOpenExclusive);
}

}  // namespace kdx::os

#endif  // KDXCOMMON_OS_OPEN_FLAGS_H_
