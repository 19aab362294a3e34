#include "kdxcommon/logging/job_registry.h"

#include "kdxcommon/inhouse/zqbasiclib/held_during_forks.h"

namespace kdx {
namespace {

// Made when the library loads: the child of a fork would wait for ever for what another thread was still making.
[[maybe_unused]] const JobRegistry& madeAtLoading = JobRegistry::current();

}  // namespace

JobRegistry& JobRegistry::current() {
  // Never destroyed: threads and statics of the host may ask for their job until the process is gone.
  static JobRegistry& registry = heldDuringForks<&JobRegistry::threadJobLock>(*new JobRegistry);
  return registry;
}

void JobRegistry::addJobID(std::uint32_t threadId, std::int64_t jobId) {
  ZqCriticalSectionLock lock(&threadJobLock);
  threadJobMap.insert_or_assign(threadId, jobId);
  lastThreadId = threadId;
  lastJobId = jobId;
}

std::int64_t JobRegistry::removeJobID(std::uint32_t threadId) {
  ZqCriticalSectionLock lock(&threadJobLock);
  const auto entry = threadJobMap.find(threadId);
  if (entry == threadJobMap.end()) return 0;
  const std::int64_t jobId = entry->second;
  threadJobMap.erase(entry);
  if (threadId == lastThreadId) {
    lastThreadId = 0;
    lastJobId = 0;
  }
  return jobId;
}

std::int64_t JobRegistry::getJobID(std::uint32_t threadId) {
  ZqCriticalSectionLock lock(&threadJobLock);
  if (threadId == lastThreadId) return lastJobId;
  const auto entry = threadJobMap.find(threadId);
  return entry == threadJobMap.end() ? UNDEFINED_JOB_ID : entry->second;
}

}  // namespace kdx
