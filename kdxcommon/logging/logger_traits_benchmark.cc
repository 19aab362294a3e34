#include "kdxcommon/logging/logger_traits.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdlib>
#include <new>

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
namespace {

// A message that the level drops, which must not allocate.
template <typename Log>
void drop(benchmark::State& state, const Log& log) {
  log(state.iterations());  // the first message of a process reads the level
  const std::uint64_t before = allocations;
  std::uint64_t count = 0;
  for (auto _ : state) log(count++);
  if (allocations != before) state.SkipWithError("a dropped message allocated");
}

void dropByLogger(benchmark::State& state) {
  const KDXLoggerTraits logger;
  const string function = "CBasicX500Name::setName";
  drop(state, [&](std::uint64_t i) { logger.message(4, function, "name %llu", static_cast<unsigned long long>(i)); });
}
BENCHMARK(dropByLogger);

void dropByFunctionLogger(benchmark::State& state) {
  drop(state, [](std::uint64_t i) {
    const FunctionLogger log("platformClustered()");
    log(4, "group %llu", static_cast<unsigned long long>(i));
  });
}
BENCHMARK(dropByFunctionLogger);

}  // namespace
}  // namespace kdx
