#include "kdxcommon/logging/critical_section_traits.h"

namespace kdx {

KDXCriticalSectionTraits::~KDXCriticalSectionTraits() = default;

// The caller owns the hold that these two take and release. Clang's analysis can't follow it through a virtual call.

bool KDXCriticalSectionTraits::enter(bool wait) KDX_NO_THREAD_SAFETY_ANALYSIS {
  return section_.enter(wait);
}

void KDXCriticalSectionTraits::leave() KDX_NO_THREAD_SAFETY_ANALYSIS {
  section_.leave();
}

bool KDXCriticalSectionTraits::locked() {
  return section_.locked();
}

}  // namespace kdx
