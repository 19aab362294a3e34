// The cost of a text in a process that makes only one: its memory comes from the system, page by page. A benchmark's
// heap would keep that memory for the next round, so it is returned to the system in between.

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <cstdint>

#include "kdxcommon/base/benchmark_texts.h"
#include "kdxcommon/base/transcoder.h"

namespace kdx {
namespace {

using benchmarks::ascii;
using benchmarks::chinese;
using benchmarks::mixedXml;

constexpr std::size_t kSize = 2 << 20;

using Text = string (*)(std::size_t);

template <typename Make>
void makeAnew(benchmark::State& state, std::size_t bytes, Make make) {
  for (auto _ : state) {
    make();
    state.PauseTiming();
    ::malloc_trim(0);
    state.ResumeTiming();
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(bytes) * static_cast<std::int64_t>(state.iterations()));
}

// The lower bound: copying the converted text.
template <typename To>
void copyAnew(benchmark::State& state, const To& text, std::size_t bytes) {
  makeAnew(state, bytes, [&] {
    const To copy(text);
    benchmark::DoNotOptimize(copy.data());
  });
}

template <Text text>
void BM_CopyUtf16Anew(benchmark::State& state) {
  const string narrow = text(kSize);
  wstring wide;
  utf8ToUtf16(narrow, wide);
  copyAnew(state, wide, narrow.size());
}

template <Text text>
void BM_CopyUtf8Anew(benchmark::State& state) {
  const string narrow = text(kSize);
  copyAnew(state, narrow, narrow.size());
}

template <Text text>
void BM_Utf8ToUtf16Anew(benchmark::State& state) {
  const string from = text(kSize);
  makeAnew(state, from.size(), [&] {
    wstring out;
    utf8ToUtf16(from, out);
    benchmark::DoNotOptimize(out.data());
  });
}

template <Text text>
void BM_Utf16ToUtf8Anew(benchmark::State& state) {
  const string narrow = text(kSize);
  wstring from;
  utf8ToUtf16(narrow, from);
  makeAnew(state, narrow.size(), [&] {
    string out;
    utf16ToUtf8(from, out);
    benchmark::DoNotOptimize(out.data());
  });
}

BENCHMARK(BM_CopyUtf16Anew<ascii>);
BENCHMARK(BM_CopyUtf16Anew<mixedXml>);
BENCHMARK(BM_CopyUtf16Anew<chinese>);
BENCHMARK(BM_CopyUtf8Anew<ascii>);
BENCHMARK(BM_CopyUtf8Anew<mixedXml>);
BENCHMARK(BM_CopyUtf8Anew<chinese>);
BENCHMARK(BM_Utf8ToUtf16Anew<ascii>);
BENCHMARK(BM_Utf8ToUtf16Anew<mixedXml>);
BENCHMARK(BM_Utf8ToUtf16Anew<chinese>);
BENCHMARK(BM_Utf16ToUtf8Anew<ascii>);
BENCHMARK(BM_Utf16ToUtf8Anew<mixedXml>);
BENCHMARK(BM_Utf16ToUtf8Anew<chinese>);

}  // namespace
}  // namespace kdx
