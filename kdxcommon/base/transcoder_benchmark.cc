// Speeds are bytes of UTF-8 per second, in both directions. "Reused" writes into a string that has its memory already,
// "Fresh" into a new one each time, which for megabytes is mostly the system's work of handing out pages.

#include "kdxcommon/base/transcoder.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstring>
#include <fstream>
#include <iterator>

namespace kdx {
namespace {

string repeated(string_view text, std::size_t size) {
  string result;
  while (result.size() < size) result += text;
  return result;
}

string ascii() {
  return repeated("<dump job=\"4711\" iteration=\"12\"><file size=\"18230\">reports/2024/summary.txt</file></dump>\n",
                  2 << 20);
}

// A catalogue of texts in many languages where the machine has one, else a text of the same mixture.
string mixedXml() {
  std::ifstream file("/usr/share/mime/packages/freedesktop.org.xml", std::ios::binary);
  string text{std::istreambuf_iterator<char>(file), {}};
  if (!text.empty()) return text;
  return repeated(
      "    <comment xml:lang=\"de\">Verschl\u00fcsselte Nachricht</comment>\n    <comment xml:lang=\"es\">mensaje "
      "cifrado"
      "</comment>\n    <comment "
      "xml:lang=\"ru\">\u0437\u0430\u0448\u0438\u0444\u0440\u043e\u0432\u0430\u043d\u043d\u043e"
      "\u0435 \u0441\u043e\u043e\u0431\u0449\u0435\u043d\u0438\u0435</comment>\n    <comment xml:lang=\"ja\">\u6697"
      "\u53f7\u5316\u30e1\u30c3\u30bb\u30fc\u30b8</comment>\n    <glob pattern=\"*.pgp\"/>\n",
      2 << 20);
}

string chinese() {
  return repeated(
      "\u5317\u51a5\u6709\u9c7c\uff0c\u5176\u540d\u4e3a\u9cb2\u3002\u9cb2\u4e4b\u5927\uff0c\u4e0d\u77e5\u5176\u51e0"
      "\u5343\u91cc\u4e5f\u3002\u5316\u800c\u4e3a\u9e1f\uff0c\u5176\u540d\u4e3a\u9e4f\u3002\n",
      2 << 20);
}

string emoji() {
  return repeated("\U0001F600\U0001F680 \U0001F4BE", 2 << 20);
}

string shortText() {
  return "C:\\Program Files\\Component\\dumps\\4711_12_20240229_235959.txt.fai";  // 64 bytes
}

void count(benchmark::State& state, std::size_t bytes) {
  state.SetBytesProcessed(static_cast<std::int64_t>(bytes) * static_cast<std::int64_t>(state.iterations()));
}

template <string (*text)()>
void BM_CopyOfMemory(benchmark::State& state) {
  const string from = text();
  string to(from.size(), '\0');
  for (auto _ : state) {
    std::memcpy(to.data(), from.data(), from.size());
    benchmark::ClobberMemory();
  }
  count(state, from.size());
}

// What widening alone costs: two bytes written for each one read, nothing checked.
void BM_WidenAscii(benchmark::State& state) {
  const string from = ascii();
  wstring to(from.size(), wchar{0});
  for (auto _ : state) {
    for (std::size_t i = 0; i != from.size(); ++i) to[i] = static_cast<wchar>(from[i]);
    benchmark::ClobberMemory();
  }
  count(state, from.size());
}

// What a string that has to have memory costs.
void BM_MakeAndDropString(benchmark::State& state) {
  const std::size_t size = shortText().size();
  for (auto _ : state) {
    wstring made;
    made.reserve(size);
    benchmark::DoNotOptimize(made.data());
  }
}

template <string (*text)(), bool fresh>
void BM_Utf8ToUtf16(benchmark::State& state) {
  const string from = text();
  wstring reused;
  for (auto _ : state) {
    wstring made;
    wstring& out = fresh ? made : reused;
    if (!utf8ToUtf16(from, out)) state.SkipWithError("not UTF-8");
    benchmark::DoNotOptimize(out.data());
  }
  count(state, from.size());
}

template <string (*text)(), bool fresh>
void BM_Utf16ToUtf8(benchmark::State& state) {
  const string narrow = text();
  wstring from;
  string reused;
  utf8ToUtf16(narrow, from);
  for (auto _ : state) {
    string made;
    string& out = fresh ? made : reused;
    if (!utf16ToUtf8(from, out)) state.SkipWithError("not UTF-16");
    benchmark::DoNotOptimize(out.data());
  }
  count(state, narrow.size());
}

constexpr bool kReused = false;
constexpr bool kFresh = true;

BENCHMARK(BM_CopyOfMemory<ascii>);
BENCHMARK(BM_WidenAscii);
BENCHMARK(BM_MakeAndDropString);
BENCHMARK(BM_Utf8ToUtf16<ascii, kReused>);
BENCHMARK(BM_Utf8ToUtf16<ascii, kFresh>);
BENCHMARK(BM_Utf8ToUtf16<mixedXml, kReused>);
BENCHMARK(BM_Utf8ToUtf16<mixedXml, kFresh>);
BENCHMARK(BM_Utf8ToUtf16<chinese, kReused>);
BENCHMARK(BM_Utf8ToUtf16<chinese, kFresh>);
BENCHMARK(BM_Utf8ToUtf16<emoji, kReused>);
BENCHMARK(BM_Utf8ToUtf16<shortText, kReused>);
BENCHMARK(BM_Utf8ToUtf16<shortText, kFresh>);
BENCHMARK(BM_Utf16ToUtf8<ascii, kReused>);
BENCHMARK(BM_Utf16ToUtf8<ascii, kFresh>);
BENCHMARK(BM_Utf16ToUtf8<mixedXml, kReused>);
BENCHMARK(BM_Utf16ToUtf8<mixedXml, kFresh>);
BENCHMARK(BM_Utf16ToUtf8<chinese, kReused>);
BENCHMARK(BM_Utf16ToUtf8<chinese, kFresh>);
BENCHMARK(BM_Utf16ToUtf8<emoji, kReused>);
BENCHMARK(BM_Utf16ToUtf8<shortText, kFresh>);

}  // namespace
}  // namespace kdx
