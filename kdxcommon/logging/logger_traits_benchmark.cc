#include "kdxcommon/logging/logger_traits.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdlib>
#include <new>

#include "kdxcommon/base/printf_format.h"
#include "kdxcommon/inhouse/zqlib/ev_event.h"
#include "kdxcommon/logging/function_logger.h"

namespace {
constinit thread_local std::uint64_t allocations = 0;
}

[[gnu::noinline]] void* operator new(std::size_t size) {
  ++allocations;
  if (void* memory = std::malloc(size)) return memory;
  throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void* memory) noexcept {
  std::free(memory);
}
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}

namespace kdx {
namespace benchmarks {

// The least that a call that drops its message can cost: a variadic function that tests a level, in a shared library of
// its own if the logger is in one.
void testLevel(int level, const char* format, ...) KDX_PRINTF(2, 3);

}  // namespace benchmarks

namespace {

// A message that the level drops, which must not allocate.
template <typename Log>
void drop(benchmark::State& state, const Log& log) {
  log(0ULL);  // the first message of a process reads the level
  const std::uint64_t before = allocations;
  unsigned long long count = 0;
  for (auto _ : state) log(count++);
  state.counters["allocations"] = static_cast<double>(allocations - before);
}

void dropByBareCall(benchmark::State& state) {
  drop(state, [](auto i) { benchmarks::testLevel(4, "name %llu", i); });
}
BENCHMARK(dropByBareCall);

void dropByLogger(benchmark::State& state) {
  const KDXLoggerTraits logger;
  const string function = "CBasicX500Name::setName";
  drop(state, [&](auto i) { logger.message(4, function, "name %llu", i); });
}
BENCHMARK(dropByLogger);

void dropByLoggerWithError(benchmark::State& state) {
  const KDXLoggerTraits logger;
  const string function = "CBasicX500Name::setName";
  drop(state, [&](auto i) { logger.message(4, function, 2U, "name %llu", i); });
}
BENCHMARK(dropByLoggerWithError);

#ifndef KDX_BENCHMARKS_OF_EXPORTS
void dropByFunctionLogger(benchmark::State& state) {
  drop(state, [](auto i) {
    const FunctionLogger log("platformClustered()");
    log(4, "group %llu", i);
  });
}
BENCHMARK(dropByFunctionLogger);
#endif

void dropByEvEvent(benchmark::State& state) {
  const EvEvent event;
  drop(state, [&](auto i) { event.DebugLvl("CDumpFile::dumpXMLBlob", 4, "Bytes written :: [%llu]", i); });
}
BENCHMARK(dropByEvEvent);

}  // namespace
}  // namespace kdx
