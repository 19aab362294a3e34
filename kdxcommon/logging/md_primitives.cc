#include "kdxcommon/logging/md_primitives.h"

namespace kdx {

std::int64_t MDPrimitive::getLastTimeAcquired() const {
  return lastTimeAcquired;
}

}  // namespace kdx
