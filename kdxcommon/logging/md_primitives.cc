#include "kdxcommon/logging/md_primitives.h"

namespace kdx {

std::int64_t MDLock::getLastTimeAcquired() const {
  return lastTimeAcquired;
}

std::int64_t MDEvent::getLastTimeAcquired() const {
  return lastTimeAcquired;
}

std::int64_t MDMutex::getLastTimeAcquired() const {
  return lastTimeAcquired;
}

}  // namespace kdx
