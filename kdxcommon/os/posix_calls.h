// Internal to the library: helpers for calls of the C library.

#ifndef KDXCOMMON_OS_POSIX_CALLS_H_
#define KDXCOMMON_OS_POSIX_CALLS_H_

#include <cerrno>

namespace kdx::os {

/// Sets errno to EINVAL and returns -1.
inline int badArgument() {
  errno = EINVAL;
  return -1;
}

/// Returns the result of `call`, which is repeated if a signal interrupts it.
template <typename Call>
auto retriedAfterSignals(Call call) {
  auto result = call();
  while (result == -1 && errno == EINTR) result = call();
  return result;
}

}  // namespace kdx::os

#endif  // KDXCOMMON_OS_POSIX_CALLS_H_
