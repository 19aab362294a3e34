#include "kdxcommon/names/basic_x500_name.h"

#include <benchmark/benchmark.h>

#include <cstring>

#include "kdxcommon/names/advisory_sources.h"
#include "kdxcommon/names/dn_scanner.h"

namespace kdx {
namespace {

// A DN of so many units with a separator after every `every`; none for 0.
wstring dnOf(std::int64_t units, std::int64_t every) {
  wstring dn(static_cast<std::size_t>(units), wchar{'x'});
  const auto step = static_cast<std::size_t>(every);
  for (std::size_t i = step; every != 0 && i < dn.size(); i += step + 1) dn[i] = kDnSeparator;
  return dn;
}

CBasicX500Name nameOf(std::int64_t units, std::int64_t every) {
  CBasicX500Name name;
  name.setDN(dnOf(units, every));
  return name;
}

CBasicX500Name longName() {
  return nameOf(4096, 16);
}

// Separators of a text of the first argument's units, one after every so many as the second says.
template <typename Scan>
void separators(benchmark::State& state, Scan scan) {
  const wstring dn = dnOf(state.range(0), state.range(1));
  for (auto _ : state) {
    wstring_view text = dn;
    benchmark::DoNotOptimize(text);
    benchmark::DoNotOptimize(scan(text));
  }
}

std::size_t countByPlainLoop(wstring_view text) {
  std::size_t count = 0;
  wchar previous{0};
  for (const wchar unit : text) {
    if (unit == kDnSeparator && previous != kDnEscape) ++count;
    previous = unit;
  }
  return count;
}

// The least that reading the text can cost: a copy of it by the C library.
int copyUnits(wstring_view text) {
  static wchar to[4096];
  std::memcpy(to, text.data(), text.size() * sizeof(wchar));
  benchmark::ClobberMemory();
  return 0;
}

void shortAndLong(benchmark::internal::Benchmark* row) {
  for (const int units : {16, 64, 256, 4096}) row->Args({units, 10});
  row->Args({4096, 0})->Args({4096, 1});
}

BENCHMARK_CAPTURE(separators, copyUnits, copyUnits)->Apply(shortAndLong);
BENCHMARK_CAPTURE(separators, plainLoop, countByPlainLoop)->Apply(shortAndLong);
BENCHMARK_CAPTURE(separators, fromRoot, countSeparators)->Apply(shortAndLong);
BENCHMARK_CAPTURE(separators, firstFromRoot, [](wstring_view text) {
  return findSeparator(text, 1);
})->Apply(shortAndLong);
BENCHMARK_CAPTURE(separators, lastFromLeaf, findLastSeparator)->Apply(shortAndLong);

// A name that callers keep is set and asked for its depth, and the least that this can cost: one lock and one copy.

constexpr std::int64_t kShortName = 16;

void BM_SetAndDepth(benchmark::State& state) {
  const wstring dn = dnOf(kShortName, 5);
  CBasicX500Name name;
  for (auto _ : state) {
    benchmark::DoNotOptimize(name.setDN(dn));
    benchmark::DoNotOptimize(name.depth());
  }
}
BENCHMARK(BM_SetAndDepth);

void BM_Set(benchmark::State& state) {
  const wstring dn = dnOf(kShortName, 5);
  CBasicX500Name name;
  for (auto _ : state) benchmark::DoNotOptimize(name.setDN(dn));
}
BENCHMARK(BM_Set);

void BM_LockAndAssign(benchmark::State& state) {
  const wstring dn = dnOf(kShortName, 5);
  ZqCriticalSection section;
  wstring held;
  for (auto _ : state) {
    const ZqCriticalSectionLock lock(&section);
    held = dn;
    benchmark::DoNotOptimize(held.data());
    benchmark::ClobberMemory();
  }
}
BENCHMARK(BM_LockAndAssign);

// From a leaf of three levels up to its root, in names that the caller keeps.
void BM_WalkToTheRoot(benchmark::State& state) {
  const CBasicX500Name leaf = nameOf(kShortName, 5);
  CBasicX500Name name;
  for (auto _ : state) {
    bool isRootName = false;
    leaf.getParent(name, isRootName);
    while (!isRootName) name.getParent(name, isRootName);
    benchmark::ClobberMemory();
  }
}
BENCHMARK(BM_WalkToTheRoot);

// The same of a plain text without escapes, with a lock for each step.
void BM_WalkOfAPlainText(benchmark::State& state) {
  const wstring leaf = dnOf(kShortName, 5);
  ZqCriticalSection section;
  wstring held;
  for (auto _ : state) {
    const wstring* from = &leaf;
    for (bool isRootName = false; !isRootName; from = &held) {
      const ZqCriticalSectionLock lock(&section);
      const std::size_t end = from->rfind(kDnSeparator);
      isRootName = end == wstring::npos;
      if (!isRootName) held.assign(*from, 0, end);
    }
    benchmark::ClobberMemory();
  }
}
BENCHMARK(BM_WalkOfAPlainText);

// The walk with a name for each level.
void BM_WalkThroughNewNames(benchmark::State& state) {
  const CBasicX500Name leaf = nameOf(kShortName, 5);
  for (auto _ : state) {
    CBasicX500Name name = leaf;
    CBasicX500Name parent;
    for (bool isRootName = false; name.getParent(parent, isRootName) && !isRootName;) name = parent;
    benchmark::ClobberMemory();
  }
}
BENCHMARK(BM_WalkThroughNewNames);

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

// A short name that two threads read at once.
void BM_CopyASharedDN(benchmark::State& state) {
  static const CBasicX500Name name = nameOf(16, 5);
  for (auto _ : state) benchmark::DoNotOptimize(name.wDN());
}
BENCHMARK(BM_CopyASharedDN);
BENCHMARK(BM_CopyASharedDN)->Threads(2)->UseRealTime();

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
