// MDLock, MDEvent and MDMutex: when a lock, an event or a mutex of the component was last acquired. They are values; a
// copy has the time that its source had when it was made. The unit of the time is its owner's choice.
//
//   kdx::MDMutex mutex(now);
//   report(mutex.getLastTimeAcquired());
//
// Thread safety: not safe for concurrent use of one object; different objects are independent. Nothing throws.

#ifndef KDXCOMMON_LOGGING_MD_PRIMITIVES_H_
#define KDXCOMMON_LOGGING_MD_PRIMITIVES_H_

#include <cstdint>

#include "kdxcommon/base/export.h"

namespace kdx {

/// A lock.
class KDX_EXPORT MDLock {
 public:
  /// Never acquired: the time is 0.
  MDLock() = default;
  /// Last acquired at `time`.
  explicit MDLock(std::int64_t time) : lastTimeAcquired(time) {}
  /// Returns the time.
  std::int64_t getLastTimeAcquired() const;

 private:
  std::int64_t lastTimeAcquired = 0;
};

/// An event.
class KDX_EXPORT MDEvent {
 public:
  /// Never acquired: the time is 0.
  MDEvent() = default;
  /// Last acquired at `time`.
  explicit MDEvent(std::int64_t time) : lastTimeAcquired(time) {}
  /// Returns the time.
  std::int64_t getLastTimeAcquired() const;

 private:
  std::int64_t lastTimeAcquired = 0;
};

/// A mutex.
class KDX_EXPORT MDMutex {
 public:
  /// Never acquired: the time is 0.
  MDMutex() = default;
  /// Last acquired at `time`.
  explicit MDMutex(std::int64_t time) : lastTimeAcquired(time) {}
  /// Returns the time.
  std::int64_t getLastTimeAcquired() const;

 private:
  std::int64_t lastTimeAcquired = 0;
};

}  // namespace kdx

#endif  // KDXCOMMON_LOGGING_MD_PRIMITIVES_H_
