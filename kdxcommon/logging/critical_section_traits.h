// KDXCriticalSectionTraits: the component's recursive lock behind the interface that other components know.
//
//   kdx::KDXCriticalSectionTraits lock;
//   lock.enter(true);
//   ...
//   lock.leave();
//
// Thread rule: any number of threads use one object at once. Failure rule: that of ZqCriticalSection.

#ifndef KDXCOMMON_LOGGING_CRITICAL_SECTION_TRAITS_H_
#define KDXCOMMON_LOGGING_CRITICAL_SECTION_TRAITS_H_

#include "kdxcommon/base/export.h"
#include "kdxcommon/inhouse/jxutils/jx_traits.h"
#include "kdxcommon/inhouse/zqbasiclib/critical_section.h"

namespace kdx {

/// A lock that a thread may take again while it holds it. Not copyable. The thread that holds it must give up every
/// hold before the object goes.
class KDX_EXPORT KDXCriticalSectionTraits : public JxCriticalSectionTraits {
 public:
  KDXCriticalSectionTraits() = default;
  ~KDXCriticalSectionTraits() override;

  /// Takes the lock, waiting for another thread that holds it if `wait` is true. Gives whether the thread now holds it.
  /// Every success needs a `leave`.
  bool enter(bool wait) override;
  /// Gives up one hold of the calling thread, which must have one.
  void leave() override;
  /// Whether a thread, this one or another, holds the lock. What it tells of another may have passed when it is read.
  bool locked() override;

 private:
  ZqCriticalSection section_;
};

}  // namespace kdx

#endif  // KDXCOMMON_LOGGING_CRITICAL_SECTION_TRAITS_H_
