// Any sequence of calls for a few threads: the registry, with its cache of one entry, must return the content of a map.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <map>

#include "kdxcommon/logging/job_registry.h"

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::uint32_t kThreads = 4;
  kdx::JobRegistry registry;
  std::map<std::uint32_t, std::int64_t> jobs;  // by thread
  for (std::size_t i = 0; i != size; ++i) {
    const std::uint32_t called = 1 + data[i] % kThreads;
    if (data[i] / kThreads % 2 == 0) {
      const std::int64_t job = (std::int64_t{data[i]} - 64) << 32 | static_cast<std::int64_t>(i);
      registry.addJobID(called, job);
      jobs[called] = job;
    } else {
      require(registry.removeJobID(called) == (jobs.contains(called) ? jobs[called] : 0));
      jobs.erase(called);
    }
    for (std::uint32_t thread = 1; thread <= kThreads; ++thread) {
      require(registry.getJobID(thread) == (jobs.contains(thread) ? jobs[thread] : kdx::UNDEFINED_JOB_ID));
    }
  }
  return 0;
}
