// Which job a thread works for. Every line that the library logs on a thread carries the job that the thread
// registered.
//
//   kdx::KDXJobIDForCurrentThreadMonitor job(3456);   // this thread works for job 3456 until the scope ends
//   ...
//   std::int64_t id = kdx::getJobIDForCurrentThread();   // 3456
//
// Thread rule: every function speaks for the calling thread alone, and any number of threads may call at once. A
// thread's entry outlives the thread: one that gets the id of a thread that ended starts with what that thread left.
// Nothing fails, but registering and resetting throw what an allocation throws, with the thread left without a job, and
// so may the process's first call, which makes the table.

#ifndef KDXCOMMON_LOGGING_JOB_IDENTITY_H_
#define KDXCOMMON_LOGGING_JOB_IDENTITY_H_

#include <cstdint>

#include "kdxcommon/base/export.h"
#include "kdxcommon/base/job_id.h"
#include "kdxcommon/inhouse/zqbasiclib/ev_debug.h"

namespace kdx {

/// Registers the calling thread for a job, in place of the one that it was registered for. Any value counts, 0 too.
KDX_EXPORT void setJobIDForCurrentThread(std::int64_t jobId);

/// The job of the calling thread; `UNDEFINED_JOB_ID` if it has none.
KDX_EXPORT std::int64_t getJobIDForCurrentThread();

/// Leaves the calling thread without a job.
KDX_EXPORT void resetJobIDForCurrentThread();

/// Gives the calling thread's job id to `debug`, `UNDEFINED_JOB_ID` too.
KDX_EXPORT void setJobIDForCurrentThread(EvDebug& debug);

/// Registers a thread for the length of a scope. Monitors don't nest: the end of any one leaves the thread without a
/// job, whatever it was registered for before, and also where the monitor itself registered nothing.
class KDX_EXPORT KDXJobIDForCurrentThreadMonitor {
 public:
  KDXJobIDForCurrentThreadMonitor() = default;
  explicit KDXJobIDForCurrentThreadMonitor(std::uint32_t jobId) { setJobID(jobId); }
  /// A monitor of its own, which registers nothing.
  KDXJobIDForCurrentThreadMonitor(const KDXJobIDForCurrentThreadMonitor&) = default;
  /// Does nothing: a monitor holds no data.
  KDXJobIDForCurrentThreadMonitor& operator=(const KDXJobIDForCurrentThreadMonitor&) { return *this; }
  /// `resetJobIDForCurrentThread`, which ends without a job also where it finds no memory.
  ~KDXJobIDForCurrentThreadMonitor();

  /// Registers the calling thread for `jobId`, a number from 0 to 4294967295.
  void setJobID(std::uint32_t jobId) { setJobIDForCurrentThread(static_cast<std::int64_t>(jobId)); }
};

}  // namespace kdx

#endif  // KDXCOMMON_LOGGING_JOB_IDENTITY_H_
