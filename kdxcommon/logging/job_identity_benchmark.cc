#include "kdxcommon/logging/job_identity.h"

#include <benchmark/benchmark.h>

#include <mutex>
#include <thread>

namespace kdx {
namespace {

// The least that a look-up of the job of the last registered thread can cost.
void lockAndUnlock(benchmark::State& state) {
  std::recursive_mutex mutex;
  for (auto _ : state) {
    benchmark::DoNotOptimize(&mutex);
    const std::lock_guard lock(mutex);
  }
}
BENCHMARK(lockAndUnlock);

// The same by two threads that compete for one lock.
void lockAndUnlockShared(benchmark::State& state) {
  static std::recursive_mutex mutex;
  for (auto _ : state) const std::lock_guard lock(mutex);
}
BENCHMARK(lockAndUnlockShared)->Threads(2)->UseRealTime();

void jobOfLastThread(benchmark::State& state) {
  setJobIDForCurrentThread(3456);
  for (auto _ : state) benchmark::DoNotOptimize(getJobIDForCurrentThread());
  resetJobIDForCurrentThread();
}
BENCHMARK(jobOfLastThread);
BENCHMARK(jobOfLastThread)->Threads(2)->UseRealTime();

// Among `range` other registered threads, one of which was registered later than this one.
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
