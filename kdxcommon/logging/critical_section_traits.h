// KDXCriticalSectionTraits: the component's recursive lock behind the interface that other components know.
//
//   kdx::KDXCriticalSectionTraits lock;
//   lock.enter(true);
//   ...
//   lock.leave();
//
// Thread safety: safe; any number of threads may use one object. `enter` throws std::system_error if the system can't
// take the lock. In the child of a `fork` an object that any thread held stays locked for ever: make a new one there.

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

  /// Takes the lock. If another thread holds it, waits if `wait` is true, else returns false. Returns whether the
  /// calling thread now holds the lock; every success needs a `leave`.
  bool enter(bool wait) override;
  /// Releases one hold of the calling thread, which must have one.
  void leave() override;
  /// Returns whether any thread holds the lock. If another thread holds or takes it, the result may be out of date.
  bool locked() override;

 private:
  ZqCriticalSection section_;
};

}  // namespace kdx

#endif  // KDXCOMMON_LOGGING_CRITICAL_SECTION_TRAITS_H_
