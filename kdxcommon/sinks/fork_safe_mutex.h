// Internal: a mutex for the state of sinks, which a fork leaves sound. The child of a fork has only the thread that
// forked: a mutex that another thread held at that moment would never be released.

#ifndef KDXCOMMON_SINKS_FORK_SAFE_MUTEX_H_
#define KDXCOMMON_SINKS_FORK_SAFE_MUTEX_H_

#include <mutex>

#include "kdxcommon/os/fork_handlers.h"

namespace kdx {

/// Returns the mutex of all objects of a class. Every thread that forks holds it during the fork. A thread that holds
/// it must not take another lock that forks take, nor one such mutex another. The first call throws std::bad_alloc if
/// the handlers can't be registered.
template <typename Class>
std::mutex& forkSafeMutexOf() {
  static std::mutex& mutex = *new std::mutex;  // never destroyed: the host may log until the process ends
  static const bool registered = [] {
    os::onFork([] { mutex.lock(); }, [] { mutex.unlock(); }, [] { mutex.unlock(); });
    return true;
  }();
  static_cast<void>(registered);
  return mutex;
}

}  // namespace kdx

#endif  // KDXCOMMON_SINKS_FORK_SAFE_MUTEX_H_
