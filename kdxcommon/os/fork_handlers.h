// Internal to the library: registers functions that run when the process forks.

#ifndef KDXCOMMON_OS_FORK_HANDLERS_H_
#define KDXCOMMON_OS_FORK_HANDLERS_H_

namespace kdx::os {

/// Registers three functions for every later `fork`, called on the forking thread: `prepare` before it, then `parent`
/// in the parent and `child` in the child. `prepare` functions run in the reverse order of their registration, the
/// others in its order. Registrations last until the library is unloaded. Throws only std::bad_alloc. Thread-safe. A
/// no-op on Windows, which has no fork.
void onFork(void (*prepare)(), void (*parent)(), void (*child)());

}  // namespace kdx::os

#endif  // KDXCOMMON_OS_FORK_HANDLERS_H_
