// Speeds are bytes of UTF-8 per second, in both directions, for texts of so many bytes of UTF-8 at each level of
// instructions (0 baseline, 1 SSE4.1, 2 AVX2, 3 AVX-512). "Reused" writes into a string that has its memory already,
// "Fresh" into a new one each time, whose memory the heap has ready; for a process that makes only one text, see
// posix_transcoder_benchmark.cc. BM_CopyOfMemory is the lower bound of all.

#include "kdxcommon/base/transcoder.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstring>

#include "kdxcommon/base/benchmark_texts.h"

namespace kdx {
namespace {

using benchmarks::ascii;
using benchmarks::chinese;
using benchmarks::emoji;
using benchmarks::mixedXml;

using Text = string (*)(std::size_t);

std::size_t size(const benchmark::State& state) {
  return static_cast<std::size_t>(state.range(0));
}

Instructions level(benchmark::State& state) {
  const auto instructions = static_cast<Instructions>(state.range(1));
  if (!offered(instructions)) state.SkipWithError("this processor lacks the level");
  return instructions;
}

void count(benchmark::State& state, std::size_t bytes) {
  state.SetBytesProcessed(static_cast<std::int64_t>(bytes) * static_cast<std::int64_t>(state.iterations()));
}

template <Text text>
void BM_CopyOfMemory(benchmark::State& state) {
  const string from = text(size(state));
  string to(from.size(), '\0');
  for (auto _ : state) {
    std::memcpy(to.data(), from.data(), from.size());
    benchmark::ClobberMemory();
  }
  count(state, from.size());
}

// The cost of a string that must allocate memory.
void BM_MakeAndDropString(benchmark::State& state) {
  for (auto _ : state) {
    wstring made;
    made.reserve(size(state));
    benchmark::DoNotOptimize(made.data());
  }
}

template <Text text, bool fresh>
void BM_Utf8ToUtf16(benchmark::State& state) {
  const Instructions instructions = level(state);
  const string from = text(size(state));
  wstring reused;
  for (auto _ : state) {
    wstring made;
    wstring& out = fresh ? made : reused;
    if (!utf8ToUtf16(from, out, instructions)) state.SkipWithError("not UTF-8");
    benchmark::DoNotOptimize(out.data());
    benchmark::ClobberMemory();
  }
  count(state, from.size());
}

template <Text text, bool fresh>
void BM_Utf16ToUtf8(benchmark::State& state) {
  const Instructions instructions = level(state);
  const string narrow = text(size(state));
  wstring from;
  string reused;
  utf8ToUtf16(narrow, from);
  for (auto _ : state) {
    string made;
    string& out = fresh ? made : reused;
    if (!utf16ToUtf8(from, out, instructions)) state.SkipWithError("not UTF-16");
    benchmark::DoNotOptimize(out.data());
    benchmark::ClobberMemory();
  }
  count(state, narrow.size());
}

constexpr bool kReused = false;
constexpr bool kFresh = true;

void sizes(benchmark::internal::Benchmark* row) {
  row->Arg(64)->Arg(4096)->Arg(2 << 20);
}

void sizesAndLevels(benchmark::internal::Benchmark* row) {
  row->ArgsProduct({{64, 4096, 2 << 20}, {0, 1, 2, 3}})->ArgNames({"", "level"});
}

BENCHMARK(BM_CopyOfMemory<ascii>)->Apply(sizes);
BENCHMARK(BM_MakeAndDropString)->Arg(64);
BENCHMARK(BM_Utf8ToUtf16<ascii, kReused>)->Apply(sizesAndLevels);
BENCHMARK(BM_Utf8ToUtf16<ascii, kFresh>)->Apply(sizesAndLevels);
BENCHMARK(BM_Utf8ToUtf16<mixedXml, kReused>)->Apply(sizesAndLevels);
BENCHMARK(BM_Utf8ToUtf16<mixedXml, kFresh>)->Apply(sizesAndLevels);
BENCHMARK(BM_Utf8ToUtf16<chinese, kReused>)->Apply(sizesAndLevels);
BENCHMARK(BM_Utf8ToUtf16<chinese, kFresh>)->Apply(sizesAndLevels);
BENCHMARK(BM_Utf8ToUtf16<emoji, kReused>)->Apply(sizesAndLevels);
BENCHMARK(BM_Utf16ToUtf8<ascii, kReused>)->Apply(sizesAndLevels);
BENCHMARK(BM_Utf16ToUtf8<ascii, kFresh>)->Apply(sizesAndLevels);
BENCHMARK(BM_Utf16ToUtf8<mixedXml, kReused>)->Apply(sizesAndLevels);
BENCHMARK(BM_Utf16ToUtf8<mixedXml, kFresh>)->Apply(sizesAndLevels);
BENCHMARK(BM_Utf16ToUtf8<chinese, kReused>)->Apply(sizesAndLevels);
BENCHMARK(BM_Utf16ToUtf8<chinese, kFresh>)->Apply(sizesAndLevels);
BENCHMARK(BM_Utf16ToUtf8<emoji, kReused>)->Apply(sizesAndLevels);

}  // namespace
}  // namespace kdx
