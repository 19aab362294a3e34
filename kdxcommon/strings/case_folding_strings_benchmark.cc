// The time of an append depends on its operand alone, not on the length of the text before it.

#include "kdxcommon/strings/case_folding_strings.h"

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>

namespace kdx {
namespace {

// Texts grow from `range(0)` bytes by 64 at a time. The time is that of one append, including allocations.
void appendToText(benchmark::State& state) {
  const string operand(64, 'x');
  const CUpperCaseString start(string(static_cast<std::size_t>(state.range(0)), 'x'));
  CUpperCaseString text(start);
  for (auto _ : state) {
    text += operand;
    if (text.original().size() < 2 * start.original().size() + (1 << 20)) continue;
    state.PauseTiming();
    text = start;
    state.ResumeTiming();
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(operand.size()) * static_cast<std::int64_t>(state.iterations()));
}
BENCHMARK(appendToText)->Arg(64)->Arg(64 << 10)->Arg(4 << 20);

void setText(benchmark::State& state) {
  const string value(static_cast<std::size_t>(state.range(0)), 'x');
  CUpperCaseString text;
  for (auto _ : state) text = value;
  state.SetBytesProcessed(state.range(0) * static_cast<std::int64_t>(state.iterations()));
}
BENCHMARK(setText)->Arg(64)->Arg(4096)->Arg(1 << 20);

}  // namespace
}  // namespace kdx
