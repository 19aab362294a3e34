#include "kdxcommon/names/basic_x500_name.h"

#include <benchmark/benchmark.h>

#include "kdxcommon/names/advisory_sources.h"
#include "kdxcommon/names/dn_scanner.h"

namespace kdx {
namespace {

constexpr std::size_t kUnits = 4096;

// A DN of 4 096 units with a separator after every so many; none for 0.
wstring longDN(std::int64_t every) {
  wstring dn(kUnits, wchar{'x'});
  const auto step = static_cast<std::size_t>(every);
  for (std::size_t i = step; every != 0 && i < kUnits; i += step + 1) dn[i] = kDnSeparator;
  return dn;
}

CBasicX500Name longName() {
  CBasicX500Name name;
  name.setDN(longDN(16));
  return name;
}

void BM_ScanFromRoot(benchmark::State& state) {
  const wstring dn = longDN(state.range(0));
  for (auto _ : state) {
    wstring_view text = dn;
    benchmark::DoNotOptimize(text);
    benchmark::DoNotOptimize(scanSeparators(text));
  }
}
BENCHMARK(BM_ScanFromRoot)->Arg(0)->Arg(1)->Arg(16)->Arg(100);

void BM_ScanFromLeaf(benchmark::State& state) {
  const wstring dn = longDN(0);
  for (auto _ : state) {
    wstring_view text = dn;
    benchmark::DoNotOptimize(text);
    benchmark::DoNotOptimize(findLastSeparator(text));
  }
}
BENCHMARK(BM_ScanFromLeaf);

// What both replace.
void BM_PlainLoop(benchmark::State& state) {
  const wstring dn = longDN(state.range(0));
  for (auto _ : state) {
    wstring_view text = dn;
    benchmark::DoNotOptimize(text);
    std::size_t count = 0;
    wchar previous{0};
    for (const wchar unit : text) {
      if (unit == kDnSeparator && previous != kDnEscape) ++count;
      previous = unit;
    }
    benchmark::DoNotOptimize(count);
  }
}
BENCHMARK(BM_PlainLoop)->Arg(0)->Arg(1)->Arg(16)->Arg(100);

void BM_DepthOfAnUnchangedName(benchmark::State& state) {
  const CBasicX500Name name = longName();
  for (auto _ : state) benchmark::DoNotOptimize(name.depth());
}
BENCHMARK(BM_DepthOfAnUnchangedName);

// What `depth()` costs at least.
void BM_LockAndUnlock(benchmark::State& state) {
  ZqCriticalSection section;
  for (auto _ : state) {
    const ZqCriticalSectionLock lock(&section);
    benchmark::ClobberMemory();
  }
}
BENCHMARK(BM_LockAndUnlock);

// The copy of 4 096 units that the result of the next three needs.
void BM_CopyTheDN(benchmark::State& state) {
  const CBasicX500Name name = longName();
  for (auto _ : state) benchmark::DoNotOptimize(name.wDN());
}
BENCHMARK(BM_CopyTheDN);

void BM_Parent(benchmark::State& state) {
  const CBasicX500Name name = longName();
  CBasicX500Name parent;
  bool isRootName = false;
  for (auto _ : state) benchmark::DoNotOptimize(name.getParent(parent, isRootName));
}
BENCHMARK(BM_Parent);

void BM_WholeSubname(benchmark::State& state) {
  const CBasicX500Name name = longName();
  CBasicX500Name sub;
  for (auto _ : state) benchmark::DoNotOptimize(name.getSubname(sub, 0));
}
BENCHMARK(BM_WholeSubname);

void BM_Subname(benchmark::State& state) {
  const CBasicX500Name name = longName();
  CBasicX500Name sub;
  for (auto _ : state) benchmark::DoNotOptimize(name.getSubname(sub, 1));
}
BENCHMARK(BM_Subname);

void BM_IsParent(benchmark::State& state) {
  const CBasicX500Name name = longName();
  CBasicX500Name parent;
  bool isRootName = false;
  name.getParent(parent, isRootName);
  for (auto _ : state) benchmark::DoNotOptimize(name.isParent(parent));
}
BENCHMARK(BM_IsParent);

// A name as callers have them, made level by level.
void BM_MakeAnAdvisorySource(benchmark::State& state) {
  for (auto _ : state) {
    SoftwareAdvisorySource source;
    source.addRDN(SoftwareAdvisorySource::jobManagerName());
    source.addRDN("node;17");
    benchmark::DoNotOptimize(source.depth());
    benchmark::DoNotOptimize(source.aDN());
  }
}
BENCHMARK(BM_MakeAnAdvisorySource);

}  // namespace
}  // namespace kdx
