// The registration of threads for jobs. Every line that KDXLoggerTraits writes on a thread carries the id of the job
// that the thread is registered for.
//
//   kdx::KDXJobIDForCurrentThreadMonitor job(3456);   // registers this thread for job 3456 until the scope ends
//   ...
//   std::int64_t id = kdx::getJobIDForCurrentThread();   // 3456
//
// Thread-safe; every function acts on the calling thread alone. A thread's registration outlives the thread: a later
// thread to which the system assigns the same id starts with it. Throws only std::bad_alloc, from the first
// registration or reset of a thread; the thread then has no job. Later calls need no memory.
//
// After a `fork` the child may use the library at once, whatever the parent's other threads were doing in it: the jobs,
// the log and the embedded site are unlocked and consistent in the child. The child's one thread has an id of its own
// and so starts without a job; register it if it continues the work. The library can't release locks that it doesn't
// own: those of an object that another thread of the parent held (CBasicX500Name, KDXCriticalSectionTraits), of a line
// sink of the host, and of the C library's time zone and resolver.

#ifndef KDXCOMMON_LOGGING_JOB_IDENTITY_H_
#define KDXCOMMON_LOGGING_JOB_IDENTITY_H_

#include <cstdint>

#include "kdxcommon/base/export.h"
#include "kdxcommon/base/job_id.h"
#include "kdxcommon/inhouse/zqbasiclib/ev_debug.h"

namespace kdx {

/// Registers the calling thread for a job and replaces its earlier registration. Any value is valid, including 0.
KDX_EXPORT void setJobIDForCurrentThread(std::int64_t jobId);

/// Returns the job of the calling thread; `UNDEFINED_JOB_ID` if it has none.
KDX_EXPORT std::int64_t getJobIDForCurrentThread();

/// Sets the calling thread's job id to `UNDEFINED_JOB_ID`: the thread has no job.
KDX_EXPORT void resetJobIDForCurrentThread();

/// Sets the job id of `debug` to the calling thread's, to `UNDEFINED_JOB_ID` if it has none. Nothing throws.
KDX_EXPORT void setJobIDForCurrentThread(EvDebug& debug);

/// Registers the calling thread for the duration of a scope. Monitors don't nest: the destructor of any monitor leaves
/// the thread without a job, whatever it was registered for before, and also if the monitor itself registered nothing.
class KDX_EXPORT KDXJobIDForCurrentThreadMonitor {
 public:
  /// Registers nothing.
  KDXJobIDForCurrentThreadMonitor() = default;
  /// Registers the calling thread for `jobId`, as `setJobID` does.
  explicit KDXJobIDForCurrentThreadMonitor(std::uint32_t jobId) { setJobID(jobId); }
  /// A separate monitor, which registers nothing.
  KDXJobIDForCurrentThreadMonitor(const KDXJobIDForCurrentThreadMonitor&) = default;
  /// A no-op: a monitor holds no data.
  KDXJobIDForCurrentThreadMonitor& operator=(const KDXJobIDForCurrentThreadMonitor&) { return *this; }
  /// Calls `resetJobIDForCurrentThread`. Doesn't throw: a thread whose entry can't be allocated has no job either.
  ~KDXJobIDForCurrentThreadMonitor();

  /// Registers the calling thread for `jobId`, a number from 0 to 4294967295.
  void setJobID(std::uint32_t jobId) { setJobIDForCurrentThread(static_cast<std::int64_t>(jobId)); }
};

}  // namespace kdx

#endif  // KDXCOMMON_LOGGING_JOB_IDENTITY_H_
