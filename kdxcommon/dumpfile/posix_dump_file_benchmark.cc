// The lower bound of pruning, by the system's own calls; and the cost of a dump in a process that makes only one: its
// memory comes from the system, page by page. A benchmark's heap would keep that memory for the next round, so it is
// returned to the system in between.

#include <benchmark/benchmark.h>
#include <dirent.h>
#include <malloc.h>
#include <unistd.h>

#include <memory>
#include <string>
#include <vector>

#include "kdxcommon/base/benchmark_texts.h"
#include "kdxcommon/base/transcoder.h"
#include "kdxcommon/dumpfile/dump_file.h"
#include "kdxcommon/os/operating_system.h"
#include "kdxcommon/testing/dump_site.h"

namespace kdx {
namespace {

constexpr std::uint32_t kSql = 602;
constexpr std::uint32_t kSubclient = 7;

// One listing, and `unlinkat` for each file of `range(0)` jobs.
void pruneJobsBarely(benchmark::State& state, const char* ending) {
  const testing::TemporaryDirectory directory;
  for (auto _ : state) {
    state.PauseTiming();
    for (std::int64_t job = 1; job <= state.range(0); ++job) {
      directory.write("KDXSQLDump_SC_7_JOB_" + std::to_string(job) + "_ITR_0.txt" + ending);
    }
    state.ResumeTiming();
    const std::unique_ptr<DIR, int (*)(DIR*)> entries(::opendir(directory.path().c_str()), ::closedir);
    std::vector<std::string> names;
    while (const dirent* entry = ::readdir(entries.get())) {
      if (entry->d_type == DT_REG) names.emplace_back(entry->d_name);
    }
    for (const std::string& name : names) ::unlinkat(::dirfd(entries.get()), name.c_str(), 0);
  }
}
BENCHMARK_CAPTURE(pruneJobsBarely, dumps, "")->RangeMultiplier(10)->Range(10, 10000)->Iterations(5);
BENCHMARK_CAPTURE(pruneJobsBarely, failedDumps, ".failed")->RangeMultiplier(10)->Range(10, 10000)->Iterations(5);

void writeAnew(benchmark::State& state, auto write) {
  wstring text;
  utf8ToUtf16(benchmarks::mixedXml(2 << 20), text);
  for (auto _ : state) {
    state.PauseTiming();
    wstring xml = text;
    ::malloc_trim(0);
    state.ResumeTiming();
    write(xml);
  }
}

void BM_DumpTwoMebibytesAnew(benchmark::State& state) {
  testing::DumpSite site;
  site.add(kSql, kSubclient);
  CDumpFile dump(ITERATION_JOB, kSql, kSubclient, 5, 0);
  writeAnew(state, [&](wstring& xml) { dump.dumpXMLBlob(std::move(xml)); });
}
BENCHMARK(BM_DumpTwoMebibytesAnew)->UseRealTime();

void overwrite(const std::string& path, const string& bytes) {
  os::OperatingSystem& system = os::OperatingSystem::current();
  const int file = system._open(path.c_str(), os::kOpenReadWrite | os::kOpenCreate | os::kOpenTruncate, os::kModeWrite);
  benchmark::DoNotOptimize(system._write(file, bytes.data(), bytes.size()));
  system._close(file);
}

void BM_ConvertAndWriteTwoMebibytesAnew(benchmark::State& state) {
  const testing::TemporaryDirectory directory;
  writeAnew(state, [path = directory.path("dump.txt")](wstring& xml) {
    string utf8;
    utf16ToUtf8(xml, utf8);
    overwrite(path, utf8);
    xml = {};
  });
}
BENCHMARK(BM_ConvertAndWriteTwoMebibytesAnew)->UseRealTime();

// Writes bytes that need no conversion and whose memory the process has already.
void BM_WriteTwoMebibytes(benchmark::State& state) {
  const testing::TemporaryDirectory directory;
  const std::string path = directory.path("dump.txt");
  const string bytes = benchmarks::mixedXml(2 << 20);
  for (auto _ : state) overwrite(path, bytes);
}
BENCHMARK(BM_WriteTwoMebibytes)->UseRealTime();

}  // namespace
}  // namespace kdx
