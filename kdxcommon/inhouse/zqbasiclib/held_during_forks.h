// Internal: for objects of which the process has one. The child of a fork has only the thread that forked: a lock that
// another thread held at that moment would never be free again, and what it guards could be half changed.

#ifndef KDXCOMMON_INHOUSE_ZQBASICLIB_HELD_DURING_FORKS_H_
#define KDXCOMMON_INHOUSE_ZQBASICLIB_HELD_DURING_FORKS_H_

#include "kdxcommon/base/thread_annotations.h"
#include "kdxcommon/inhouse/zqbasiclib/critical_section.h"
#include "kdxcommon/os/fork_handlers.h"

namespace kdx {

/// Makes every thread that forks hold `object.*lock` meanwhile, and returns `object`, which must live as long as the
/// process. Call it once for each `lock`. No operation may take one such lock while it holds another, for a fork takes
/// them in the order of its own. Throws std::bad_alloc.
///
///   static JobRegistry& registry = heldDuringForks<&JobRegistry::threadJobLock>(*new JobRegistry);
template <auto lock, typename T>
T& heldDuringForks(T& object) {
  static T& held = object;
  os::onFork([]() KDX_NO_THREAD_SAFETY_ANALYSIS { (held.*lock).enter(); },
             []() KDX_NO_THREAD_SAFETY_ANALYSIS { (held.*lock).leave(); },
             []() KDX_NO_THREAD_SAFETY_ANALYSIS { (held.*lock).resetInForkedChild(); });
  return object;
}

}  // namespace kdx

#endif  // KDXCOMMON_INHOUSE_ZQBASICLIB_HELD_DURING_FORKS_H_
