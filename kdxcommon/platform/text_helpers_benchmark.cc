#include "kdxcommon/platform/text_helpers.h"

#include <benchmark/benchmark.h>

#include <charconv>
#include <cstdlib>
#include <vector>

namespace kdx {
namespace {

// Numbers as in dates and settings, of one to ten digits.
const string kNumbers[] = {"8", "05", "18", "2010", "86400", "-12345678", "4294967295"};
const string kDecimal = "-1234.5678";

template <typename Read>
void readNumbers(benchmark::State& state, Read read) {
  std::size_t next = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(read(kNumbers[next]));
    next = next + 1 < std::size(kNumbers) ? next + 1 : 0;
  }
}
BENCHMARK_CAPTURE(readNumbers, atoi, [](const string& text) { return std::atoi(text.c_str()); });
BENCHMARK_CAPTURE(readNumbers, strtoul, [](const string& text) { return std::strtoul(text.c_str(), nullptr, 10); });
// The reference: accepts neither white space nor a plus sign.
BENCHMARK_CAPTURE(readNumbers, from_chars, [](const string& text) {
  std::int64_t number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
});
BENCHMARK_CAPTURE(readNumbers, platformATOI, platformATOI);
BENCHMARK_CAPTURE(readNumbers, platformATOLL, platformATOLL);

template <typename Read>
void readOneNumber(benchmark::State& state, Read read) {
  const string text = "1234567";
  for (auto _ : state) {
    const string* one = &text;
    benchmark::DoNotOptimize(one);
    benchmark::DoNotOptimize(read(*one));
  }
}
BENCHMARK_CAPTURE(readOneNumber, from_chars, [](const string& text) {
  std::int64_t number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
});
BENCHMARK_CAPTURE(readOneNumber, platformATOI, platformATOI);
BENCHMARK_CAPTURE(readOneNumber, platformATOLL, platformATOLL);

void readWideNumbers(benchmark::State& state) {
  std::vector<wstring> numbers;
  for (const string& number : kNumbers) numbers.emplace_back(number.begin(), number.end());
  std::size_t next = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(platformWATOI(numbers[next]));
    next = next + 1 < numbers.size() ? next + 1 : 0;
  }
}
BENCHMARK(readWideNumbers);

void readDecimalByStrtod(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(std::strtod(kDecimal.c_str(), nullptr));
}
BENCHMARK(readDecimalByStrtod);

void readDecimal(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(platformATOF(kDecimal));
}
BENCHMARK(readDecimal);

void changeWideCase(benchmark::State& state) {
  wstring text(static_cast<std::size_t>(state.range(0)), wchar{'a'});
  for (auto _ : state) benchmark::DoNotOptimize(platformWStringUpper(platformWStringLower(text.data())));
}
BENCHMARK(changeWideCase)->Arg(16)->Arg(1024);

void escapeForSearch(benchmark::State& state) {
  const string text = "CN=Mail (store)*,OU=Servers/EMEA";
  string escaped;
  for (auto _ : state) {
    escaped = text;
    escapeADSIspecialChars(escaped);
    benchmark::DoNotOptimize(escaped.data());
  }
}
BENCHMARK(escapeForSearch);

}  // namespace
}  // namespace kdx
