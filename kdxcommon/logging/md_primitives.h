// MDLock, MDEvent and MDMutex: when a lock, an event or a mutex of the component was last acquired. They are values: a
// copy tells what its source told when it was made. The unit of the time is its owner's choice.
//
//   kdx::MDMutex mutex(now);
//   report(mutex.getLastTimeAcquired());
//
// Thread rule: an object belongs to one thread at a time unless nobody changes it. Nothing fails or throws.

#ifndef KDXCOMMON_LOGGING_MD_PRIMITIVES_H_
#define KDXCOMMON_LOGGING_MD_PRIMITIVES_H_

#include <cstdint>

#include "kdxcommon/base/export.h"

namespace kdx {

/// What the three have in common.
class KDX_EXPORT MDPrimitive {
 public:
  /// The time that was given; 0 for an object that was made without one.
  std::int64_t getLastTimeAcquired() const;

 protected:
  MDPrimitive() = default;
  explicit MDPrimitive(std::int64_t time) : lastTimeAcquired(time) {}

 private:
  std::int64_t lastTimeAcquired = 0;
};

/// A lock.
class KDX_EXPORT MDLock : public MDPrimitive {
 public:
  /// Never acquired: the time is 0.
  MDLock() = default;
  /// Last acquired at `time`.
  explicit MDLock(std::int64_t time) : MDPrimitive(time) {}
};

/// An event.
class KDX_EXPORT MDEvent : public MDPrimitive {
 public:
  /// Never acquired: the time is 0.
  MDEvent() = default;
  /// Last acquired at `time`.
  explicit MDEvent(std::int64_t time) : MDPrimitive(time) {}
};

/// A mutex.
class KDX_EXPORT MDMutex : public MDPrimitive {
 public:
  /// Never acquired: the time is 0.
  MDMutex() = default;
  /// Last acquired at `time`.
  explicit MDMutex(std::int64_t time) : MDPrimitive(time) {}
};

}  // namespace kdx

#endif  // KDXCOMMON_LOGGING_MD_PRIMITIVES_H_
