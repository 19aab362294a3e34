// ZqCriticalSection, the component's recursive lock, and ZqCriticalSectionLock, which holds one for a scope.
//
//   kdx::ZqCriticalSection section;
//   {
//     kdx::ZqCriticalSectionLock lock(&section);   // a thread that holds it may take it again
//     ...
//   }
//
// Thread rule: any number of threads use one section at once. Failure rule: none fails but a lock that the system can't
// take, which throws std::system_error.

#ifndef KDXCOMMON_INHOUSE_ZQBASICLIB_CRITICAL_SECTION_H_
#define KDXCOMMON_INHOUSE_ZQBASICLIB_CRITICAL_SECTION_H_

#include <atomic>
#include <mutex>

#include "kdxcommon/base/thread_annotations.h"

namespace kdx {

/// A recursive lock: std::recursive_mutex underneath. Not copyable.
class KDX_CAPABILITY("mutex") ZqCriticalSection {
 public:
  ZqCriticalSection() = default;
  ZqCriticalSection(const ZqCriticalSection&) = delete;
  ZqCriticalSection& operator=(const ZqCriticalSection&) = delete;

  /// Takes the lock, waiting for another thread that holds it if `wait` is true. Gives whether the thread now holds it.
  /// Every success needs a `leave`.
  bool enter(bool wait = true) KDX_TRY_ACQUIRE(true) {
    if (wait) {
      mutex_.lock();
    } else if (!mutex_.try_lock()) {
      return false;
    }
    holds_.store(holds_.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed);
    return true;
  }

  /// Gives up one hold of the calling thread, which must have one.
  void leave() KDX_RELEASE() {
    holds_.store(holds_.load(std::memory_order_relaxed) - 1, std::memory_order_relaxed);
    mutex_.unlock();
  }

  /// Whether a thread, this one or another, holds the lock. What it tells of another may have passed when it is read.
  bool locked() const { return holds_.load(std::memory_order_relaxed) != 0; }

 private:
  std::recursive_mutex mutex_;
  std::atomic<int> holds_ = 0;  // of the thread that has mutex_; written under it
};

/// Takes a lock for a scope and releases it on every way out.
class KDX_SCOPED_CAPABILITY ZqCriticalSectionLock {
 public:
  /// Waits for `section`, which must outlive the scope and not be null.
  explicit ZqCriticalSectionLock(ZqCriticalSection* section) KDX_ACQUIRE(*section) : section_(section) {
    while (!section_->enter()) {  // once: a loop shows the thread-safety analysis that the lock is held behind it
    }
  }
  ~ZqCriticalSectionLock() KDX_RELEASE() { section_->leave(); }

  ZqCriticalSectionLock(const ZqCriticalSectionLock&) = delete;
  ZqCriticalSectionLock& operator=(const ZqCriticalSectionLock&) = delete;

 private:
  ZqCriticalSection* section_;
};

}  // namespace kdx

#endif  // KDXCOMMON_INHOUSE_ZQBASICLIB_CRITICAL_SECTION_H_
