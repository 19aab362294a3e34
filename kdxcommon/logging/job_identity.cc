#include "kdxcommon/logging/job_identity.h"

#include <new>

#include "kdxcommon/logging/job_registry.h"
#include "kdxcommon/os/installed_system.h"

namespace kdx {
namespace {

std::uint32_t currentThread() {
  return os::installedSystem().GetCurrentThreadId();
}

}  // namespace

void setJobIDForCurrentThread(std::int64_t jobId) {
  JobRegistry::current().addJobID(currentThread(), jobId);
}

std::int64_t getJobIDForCurrentThread() {
  return JobRegistry::current().getJobID(currentThread());
}

void resetJobIDForCurrentThread() {
  setJobIDForCurrentThread(UNDEFINED_JOB_ID);
}

void setJobIDForCurrentThread(EvDebug& debug) {
  debug.setJobId(getJobIDForCurrentThread());
}

KDXJobIDForCurrentThreadMonitor::~KDXJobIDForCurrentThreadMonitor() {
  try {
    resetJobIDForCurrentThread();
  } catch (const std::bad_alloc&) {
    // The thread was never registered, and a thread without an entry has no job either.
  }
}

}  // namespace kdx
