// Internal: the registry behind job_identity.h, a map from threads to jobs with a cache of one entry.
//
// Thread-safe: each operation holds the lock from beginning to end. While `lastThreadId` is not 0, the map contains
// that thread with the value `lastJobId`.

#ifndef KDXCOMMON_LOGGING_JOB_REGISTRY_H_
#define KDXCOMMON_LOGGING_JOB_REGISTRY_H_

#include <cstdint>
#include <map>

#include "kdxcommon/base/job_id.h"
#include "kdxcommon/base/thread_annotations.h"
#include "kdxcommon/inhouse/zqbasiclib/critical_section.h"
#include "kdxcommon/inhouse/zqbasiclib/held_during_forks.h"

namespace kdx {

class JobRegistry {
 public:
  /// Returns the registry of this process.
  static JobRegistry& current() {
    // Never destroyed: threads and statics of the host may read their job until the process ends.
    static JobRegistry& registry = heldDuringForks<&JobRegistry::threadJobLock>(*new JobRegistry);
    return registry;
  }

  /// Registers a thread, replaces its earlier registration, and makes it the cached one. Throws std::bad_alloc and
  /// changes nothing if a new entry can't be allocated; registering a thread again needs no memory.
  void addJobID(std::uint32_t threadId, std::int64_t jobId);

  /// Removes a thread's entry and returns its job id; returns 0 and changes nothing if it has none. If the thread is
  /// the cached one, sets the cache to thread 0, job 0.
  std::int64_t removeJobID(std::uint32_t threadId);

  /// Returns a thread's job id, `UNDEFINED_JOB_ID` if it has no entry. Doesn't change the cache.
  std::int64_t getJobID(std::uint32_t threadId);

 private:
  ZqCriticalSection threadJobLock;
  std::map<std::uint32_t, std::int64_t> threadJobMap KDX_GUARDED_BY(threadJobLock);
  std::uint32_t lastThreadId KDX_GUARDED_BY(threadJobLock) = 0;
  std::int64_t lastJobId KDX_GUARDED_BY(threadJobLock) = UNDEFINED_JOB_ID;
};

}  // namespace kdx

#endif  // KDXCOMMON_LOGGING_JOB_REGISTRY_H_
