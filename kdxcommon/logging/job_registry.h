// Internal: the registry behind job_identity.h, a map from threads to jobs with a cache of one entry in front of it.
//
// Each operation takes the lock for all that it does, the cache's two fields too. While `lastThreadId` is not 0, the
// map holds that thread with the value `lastJobId`.

#ifndef KDXCOMMON_LOGGING_JOB_REGISTRY_H_
#define KDXCOMMON_LOGGING_JOB_REGISTRY_H_

#include <cstdint>
#include <map>

#include "kdxcommon/base/thread_annotations.h"
#include "kdxcommon/inhouse/zqbasiclib/critical_section.h"
#include "kdxcommon/logging/job_identity.h"

namespace kdx {

class JobRegistry {
 public:
  /// Registers a thread, in place of what it was registered for, and makes it the cached one. If the map can't
  /// allocate, the failure leaves the call and the thread is without an entry.
  void addJobID(std::uint32_t threadId, std::int64_t jobId);

  /// Takes a thread's entry away and gives its job id; 0, with nothing changed, if it has none.
  std::int64_t removeJobID(std::uint32_t threadId);

  /// A thread's job id, `UNDEFINED_JOB_ID` if it has no entry. Doesn't change which thread is cached.
  std::int64_t getJobID(std::uint32_t threadId);

 private:
  ZqCriticalSection threadJobLock;  // recursive: addJobID calls removeJobID while it holds it
  std::map<std::uint32_t, std::int64_t> threadJobMap KDX_GUARDED_BY(threadJobLock);
  std::uint32_t lastThreadId KDX_GUARDED_BY(threadJobLock) = 0;
  std::int64_t lastJobId KDX_GUARDED_BY(threadJobLock) = UNDEFINED_JOB_ID;
};

}  // namespace kdx

#endif  // KDXCOMMON_LOGGING_JOB_REGISTRY_H_
