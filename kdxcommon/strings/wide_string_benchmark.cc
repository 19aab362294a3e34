// What a text costs that crosses from one encoding to the other, strings and all.

#include "kdxcommon/strings/wide_string.h"

#include <benchmark/benchmark.h>

#include <cstdint>

#include "kdxcommon/base/unit_search.h"

namespace kdx {
namespace {

string text(benchmark::State& state) {
  return string(static_cast<std::size_t>(state.range(0)), 'x');
}

void count(benchmark::State& state) {
  state.SetBytesProcessed(state.range(0) * static_cast<std::int64_t>(state.iterations()));
}

void BM_WideStringFromNarrow(benchmark::State& state) {
  const string narrow = text(state);
  for (auto _ : state) benchmark::DoNotOptimize(CWideString(narrow).wString().data());
  count(state);
}
BENCHMARK(BM_WideStringFromNarrow)->Arg(64)->Arg(2 << 20);

void BM_WideStringFromWide(benchmark::State& state) {
  const wstring wide = CWideString(text(state)).wString();
  for (auto _ : state) benchmark::DoNotOptimize(CWideString(wide).aString().data());
  count(state);
}
BENCHMARK(BM_WideStringFromWide)->Arg(64)->Arg(2 << 20);

void BM_WideStringEqualsNarrow(benchmark::State& state) {
  const string narrow = text(state);
  const CWideString wide(narrow);
  for (auto _ : state) benchmark::DoNotOptimize(wide == narrow);
  count(state);
}
BENCHMARK(BM_WideStringEqualsNarrow)->Arg(64);

// Where the memory stands already.
void BM_WideStringCopyAssignment(benchmark::State& state) {
  const CWideString source(text(state));
  CWideString target(source);
  for (auto _ : state) benchmark::DoNotOptimize(target = source);
  count(state);
}
BENCHMARK(BM_WideStringCopyAssignment)->Arg(8)->Arg(64);

void BM_FindUnit(benchmark::State& state) {
  const wstring wide = CWideString(text(state)).wString();
  for (auto _ : state) benchmark::DoNotOptimize(findUnit(wide, wchar{0}));
}
BENCHMARK(BM_FindUnit)->Arg(4096);

}  // namespace
}  // namespace kdx
