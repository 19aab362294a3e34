#include "kdxcommon/logging/job_registry.h"

namespace kdx {
namespace {

// Initialised when the library loads. Otherwise the child of a fork could wait for ever for an initialisation that
// another thread had begun.
[[maybe_unused]] const JobRegistry& madeAtLoading = JobRegistry::current();

}  // namespace

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
