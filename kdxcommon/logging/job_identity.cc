#include "kdxcommon/logging/job_identity.h"

#include <new>

#include "kdxcommon/logging/job_registry.h"
#include "kdxcommon/os/operating_system.h"

namespace kdx {
namespace {

JobRegistry& registry() {
  // Never destroyed: threads and statics of the host may ask for their job until the process is gone.
  static JobRegistry& registry = *new JobRegistry;
  return registry;
}

std::uint32_t currentThread() {
  return os::OperatingSystem::current().GetCurrentThreadId();
}

}  // namespace

void JobRegistry::addJobID(std::uint32_t threadId, std::int64_t jobId) {
  ZqCriticalSectionLock lock(&threadJobLock);
  if (!threadJobMap.try_emplace(threadId, jobId).second) {
    removeJobID(threadId);
    threadJobMap.emplace(threadId, jobId);
  }
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

void setJobIDForCurrentThread(std::int64_t jobId) {
  registry().addJobID(currentThread(), jobId);
}

std::int64_t getJobIDForCurrentThread() {
  return registry().getJobID(currentThread());
}

void resetJobIDForCurrentThread() {
  const std::uint32_t threadId = currentThread();
  registry().removeJobID(threadId);
  registry().addJobID(threadId, UNDEFINED_JOB_ID);
}

void setJobIDForCurrentThread(EvDebug& debug) {
  debug.setJobId(getJobIDForCurrentThread());
}

KDXJobIDForCurrentThreadMonitor::~KDXJobIDForCurrentThreadMonitor() {
  try {
    resetJobIDForCurrentThread();
  } catch (const std::bad_alloc&) {
    // The entry is gone, and a thread without one has no job either.
  }
}

}  // namespace kdx
