// ZqCriticalSection, the component's recursive lock, and ZqCriticalSectionLock, which holds one for a scope.
//
//   kdx::ZqCriticalSection section;
//   {
//     kdx::ZqCriticalSectionLock lock(&section);   // a thread that holds it may take it again
//     ...
//   }
//
// Thread safety: safe; any number of threads may use one section. `enter` throws std::system_error if the system can't
// take the lock; nothing else throws.
//
// In the child of a `fork` a section that any thread of the parent held stays locked, since the child's one thread has
// an id that holds nothing. `resetInForkedChild` unlocks it.

#ifndef KDXCOMMON_INHOUSE_ZQBASICLIB_CRITICAL_SECTION_H_
#define KDXCOMMON_INHOUSE_ZQBASICLIB_CRITICAL_SECTION_H_

#include <atomic>
#include <memory>
#include <mutex>

#include "kdxcommon/base/thread_annotations.h"

namespace kdx {

/// A recursive lock: std::recursive_mutex underneath. Not copyable.
class KDX_CAPABILITY("mutex") ZqCriticalSection {
 public:
  ZqCriticalSection() = default;
  ZqCriticalSection(const ZqCriticalSection&) = delete;
  ZqCriticalSection& operator=(const ZqCriticalSection&) = delete;

  /// Takes the lock. If another thread holds it, waits if `wait` is true, else returns false. Returns whether the
  /// calling thread now holds the lock; every success needs a `leave`.
  bool enter(bool wait = true) KDX_TRY_ACQUIRE(true) {
    if (wait) {
      mutex_.lock();
    } else if (!mutex_.try_lock()) {
      return false;
    }
    holds_.store(holds_.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed);
    return true;
  }

  /// Releases one hold of the calling thread, which must have one.
  void leave() KDX_RELEASE() {
    holds_.store(holds_.load(std::memory_order_relaxed) - 1, std::memory_order_relaxed);
    mutex_.unlock();
  }

  /// Returns whether any thread holds the lock. If another thread holds or takes it, the result may be out of date.
  bool locked() const { return holds_.load(std::memory_order_relaxed) != 0; }

  /// Unlocks the section in the child of a `fork`, whoever held it in the parent. What another thread was changing
  /// under the lock may be half changed. Call it before the child makes a second thread.
  void resetInForkedChild() {
    std::construct_at(&mutex_);
    holds_.store(0, std::memory_order_relaxed);
  }

 private:
  std::recursive_mutex mutex_;
  std::atomic<int> holds_ = 0;  // of the thread that has mutex_; written under it
};

/// Holds a lock for a scope.
class KDX_SCOPED_CAPABILITY ZqCriticalSectionLock {
 public:
  /// Takes the lock, waiting for another thread that holds it. `section` must outlive the scope and must not be null.
  explicit ZqCriticalSectionLock(ZqCriticalSection* section) KDX_ACQUIRE(*section) KDX_NO_THREAD_SAFETY_ANALYSIS
      : section_(section) {
    section_->enter();
  }
  ~ZqCriticalSectionLock() KDX_RELEASE() { section_->leave(); }

  ZqCriticalSectionLock(const ZqCriticalSectionLock&) = delete;
  ZqCriticalSectionLock& operator=(const ZqCriticalSectionLock&) = delete;

 private:
  ZqCriticalSection* section_;
};

}  // namespace kdx

#endif  // KDXCOMMON_INHOUSE_ZQBASICLIB_CRITICAL_SECTION_H_
