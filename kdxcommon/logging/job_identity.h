// Which job a thread works for. Every line that the library logs on a thread carries the job that the thread
// registered.
//
//   kdx::KDXJobIDForCurrentThreadMonitor job(3456);   // this thread works for job 3456 until the scope ends
//   ...
//   std::int64_t id = kdx::getJobIDForCurrentThread();   // 3456
//
// Thread safety: safe; every function acts on the calling thread alone. A thread's registration outlives the thread: a
// later thread that the system gives the same id starts with it. The only failure is std::bad_alloc, which the first
// registration or reset of a thread may throw; the thread then has no job. Later ones need no memory.
//
// After a `fork` the child may use the library at once, whatever the parent's other threads were doing in it: the jobs,
// the log and the embedded site are unlocked and consistent in the child. The child's one thread has an id of its own
// and so starts without a job; register it if it goes on with the work. The library can't unlock what isn't its own: an
// object whose lock another thread of the parent held (CBasicX500Name, KDXCriticalSectionTraits), a line sink of the
// host, and what the C library locks for its time zone and its resolver.

#ifndef KDXCOMMON_LOGGING_JOB_IDENTITY_H_
#define KDXCOMMON_LOGGING_JOB_IDENTITY_H_

#include <cstdint>

#include "kdxcommon/base/export.h"
#include "kdxcommon/base/job_id.h"
#include "kdxcommon/inhouse/zqbasiclib/ev_debug.h"

namespace kdx {

/// Registers the calling thread for a job, in place of the one that it was registered for. Any value counts, 0 too.
KDX_EXPORT void setJobIDForCurrentThread(std::int64_t jobId);

/// Returns the job of the calling thread; `UNDEFINED_JOB_ID` if it has none.
KDX_EXPORT std::int64_t getJobIDForCurrentThread();

/// Leaves the calling thread without a job.
KDX_EXPORT void resetJobIDForCurrentThread();

/// Sets the job id of `debug` to the calling thread's, to `UNDEFINED_JOB_ID` if it has none. Doesn't throw.
KDX_EXPORT void setJobIDForCurrentThread(EvDebug& debug);

/// Registers the calling thread for the length of a scope. Monitors don't nest: the end of any one leaves the thread
/// without a job, whatever it was registered for before, and also if the monitor itself registered nothing.
class KDX_EXPORT KDXJobIDForCurrentThreadMonitor {
 public:
  /// Registers nothing.
  KDXJobIDForCurrentThreadMonitor() = default;
  /// Registers the calling thread for `jobId`, as `setJobID` does.
  explicit KDXJobIDForCurrentThreadMonitor(std::uint32_t jobId) { setJobID(jobId); }
  /// Makes a monitor of its own, which registers nothing.
  KDXJobIDForCurrentThreadMonitor(const KDXJobIDForCurrentThreadMonitor&) = default;
  /// A no-op: a monitor holds no data.
  KDXJobIDForCurrentThreadMonitor& operator=(const KDXJobIDForCurrentThreadMonitor&) { return *this; }
  /// Calls `resetJobIDForCurrentThread`. Doesn't throw: a thread that can't be given an entry has no job either.
  ~KDXJobIDForCurrentThreadMonitor();

  /// Registers the calling thread for `jobId`, a number from 0 to 4294967295.
  void setJobID(std::uint32_t jobId) { setJobIDForCurrentThread(static_cast<std::int64_t>(jobId)); }
};

}  // namespace kdx

#endif  // KDXCOMMON_LOGGING_JOB_IDENTITY_H_
