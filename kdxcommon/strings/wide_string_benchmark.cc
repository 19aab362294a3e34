// The cost of converting a text from one encoding to the other, including its strings.

#include "kdxcommon/strings/wide_string.h"

#include <benchmark/benchmark.h>

#include <cstdint>

#include "kdxcommon/base/transcoder.h"
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

// The lower bounds: the conversion into a new string alone, and with a copy of the text, which the object holds, too.
template <bool copies>
void BM_ConvertNarrow(benchmark::State& state) {
  const string narrow = text(state);
  for (auto _ : state) {
    const string copy = copies ? narrow : string();
    wstring wide;
    utf8ToUtf16(narrow, wide);
    benchmark::DoNotOptimize(copy.data());
    benchmark::DoNotOptimize(wide.data());
  }
  count(state);
}
BENCHMARK(BM_ConvertNarrow<false>)->Arg(64)->Arg(2 << 20);
BENCHMARK(BM_ConvertNarrow<true>)->Arg(64)->Arg(2 << 20);

template <bool copies>
void BM_ConvertWide(benchmark::State& state) {
  const wstring wide = CWideString(text(state)).wString();
  for (auto _ : state) {
    const wstring copy = copies ? wide : wstring();
    string narrow;
    utf16ToUtf8(wide, narrow);
    benchmark::DoNotOptimize(copy.data());
    benchmark::DoNotOptimize(narrow.data());
  }
  count(state);
}
BENCHMARK(BM_ConvertWide<false>)->Arg(64)->Arg(2 << 20);
BENCHMARK(BM_ConvertWide<true>)->Arg(64)->Arg(2 << 20);

void BM_WideStringEqualsNarrow(benchmark::State& state) {
  const string narrow = text(state);
  const CWideString wide(narrow);
  for (auto _ : state) benchmark::DoNotOptimize(wide == narrow);
  count(state);
}
BENCHMARK(BM_WideStringEqualsNarrow)->Arg(64);

// The memory is already allocated.
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
