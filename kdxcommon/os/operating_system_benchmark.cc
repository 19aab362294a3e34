#include "kdxcommon/os/operating_system.h"

#include <benchmark/benchmark.h>

namespace kdx::os {
namespace {

void currentThreadId(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(OperatingSystem::current().GetCurrentThreadId());
}
BENCHMARK(currentThreadId);

void fileTimeNow(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(OperatingSystem::current().GetSystemTimeAsFileTime());
}
BENCHMARK(fileTimeNow);

void secondsNow(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(OperatingSystem::current()._time64(nullptr));
}
BENCHMARK(secondsNow);

}  // namespace
}  // namespace kdx::os
