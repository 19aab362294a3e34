#include "kdxcommon/logging/job_identity.h"

#include <benchmark/benchmark.h>

#include <mutex>
#include <thread>

namespace kdx {
namespace {

// What the job of the thread that registered last costs at least.
void lockAndUnlock(benchmark::State& state) {
  std::recursive_mutex mutex;
  for (auto _ : state) {
    benchmark::DoNotOptimize(&mutex);
    const std::lock_guard lock(mutex);
  }
}
BENCHMARK(lockAndUnlock);

void jobOfLastThread(benchmark::State& state) {
  setJobIDForCurrentThread(3456);
  for (auto _ : state) benchmark::DoNotOptimize(getJobIDForCurrentThread());
  resetJobIDForCurrentThread();
}
BENCHMARK(jobOfLastThread);

// Among `range` other threads that registered, one of them later than this.
void jobOfEarlierThread(benchmark::State& state) {
  setJobIDForCurrentThread(3456);
  for (std::int64_t i = 0; i < state.range(); ++i) std::thread([i] { setJobIDForCurrentThread(i); }).join();
  for (auto _ : state) benchmark::DoNotOptimize(getJobIDForCurrentThread());
  resetJobIDForCurrentThread();
}
BENCHMARK(jobOfEarlierThread)->Arg(1)->Arg(100);

void registerAgain(benchmark::State& state) {
  for (auto _ : state) setJobIDForCurrentThread(3456);
  resetJobIDForCurrentThread();
}
BENCHMARK(registerAgain);

void registerAndReset(benchmark::State& state) {
  for (auto _ : state) const KDXJobIDForCurrentThreadMonitor job(3456);
}
BENCHMARK(registerAndReset);

}  // namespace
}  // namespace kdx
