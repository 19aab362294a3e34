// Internal to the library: what the library has to do when its process forks.

#ifndef KDXCOMMON_OS_FORK_HANDLERS_H_
#define KDXCOMMON_OS_FORK_HANDLERS_H_

namespace kdx::os {

/// Registers three functions for every later `fork`, to be called on the thread that forks: `prepare` before, then
/// `parent` in the parent and `child` in the child. The latest registration prepares first and is called last
/// afterwards. Registrations last until the library is unloaded. Throws std::bad_alloc. Thread-safe. A no-op on
/// Windows, which has no fork.
void onFork(void (*prepare)(), void (*parent)(), void (*child)());

}  // namespace kdx::os

#endif  // KDXCOMMON_OS_FORK_HANDLERS_H_
