#include "kdxcommon/dumpfile/dump_file.h"

#include <benchmark/benchmark.h>

#include <string>

#include "kdxcommon/base/transcoder.h"
#include "kdxcommon/os/operating_system.h"
#include "kdxcommon/testing/dump_site.h"
#include "kdxcommon/testing/wide_text.h"

namespace kdx {
namespace {

constexpr std::uint32_t kSql = 602;
constexpr std::uint32_t kSubclient = 7;
constexpr std::size_t kTwoMebibytes = 2 << 20;

// XML of two mebibytes in UTF-8, with some text outside ASCII.
wstring xmlText() {
  const wstring line =
      testing::wide(u"<file name=\"R\u00e9sum\u00e9 \u4e2d\u6587.txt\" size=\"4096\" owner=\"agent\"/>\n");
  wstring text;
  for (std::size_t bytes = 0; bytes < kTwoMebibytes; bytes += line.size() + 6) text += line;
  return text;
}

void BM_DumpTwoMebibytes(benchmark::State& state) {
  testing::DumpSite site;
  site.add(kSql, kSubclient);
  const wstring text = xmlText();
  CDumpFile dump(ITERATION_JOB, kSql, kSubclient, 5, 0);
  for (auto _ : state) {
    state.PauseTiming();
    wstring xml = text;
    state.ResumeTiming();
    dump.dumpXMLBlob(std::move(xml));
  }
}
BENCHMARK(BM_DumpTwoMebibytes)->UseRealTime();

// The cost of the same bytes without names, rules and log.
void BM_ConvertAndWriteTwoMebibytes(benchmark::State& state) {
  const testing::TemporaryDirectory directory;
  const std::string path = directory.path("dump.txt");
  const wstring text = xmlText();
  os::OperatingSystem& system = os::OperatingSystem::current();
  for (auto _ : state) {
    state.PauseTiming();
    wstring xml = text;
    state.ResumeTiming();
    string utf8;
    utf16ToUtf8(xml, utf8);
    const int file =
        system._open(path.c_str(), os::kOpenReadWrite | os::kOpenCreate | os::kOpenTruncate, os::kModeWrite);
    benchmark::DoNotOptimize(system._write(file, utf8.data(), utf8.size()));
    system._close(file);
    xml = {};
  }
}
BENCHMARK(BM_ConvertAndWriteTwoMebibytes)->UseRealTime();

std::string otherDump(std::int64_t job) {
  return "KDXSQLDump_SC_8_JOB_" + std::to_string(job) + "_ITR_0.txt";
}

void listNames(const std::string& directory) {
  const auto stream = os::OperatingSystem::current().opendir(directory.c_str());
  os::DirectoryEntry entry;
  while (stream->readdir(entry) > 0) benchmark::DoNotOptimize(entry.name);
}

// One operation in a directory with the dumps of another subclient, which takes one listing.
void amongOthers(benchmark::State& state, auto operation) {
  testing::DumpSite site;
  site.add(kSql, kSubclient);
  for (std::int64_t job = 0; job < state.range(0); ++job) site.directory.write(otherDump(job));
  CDumpFile dump(ITERATION_JOB, kSql, kSubclient, 5, 0);
  for (auto _ : state) operation(dump, site.directory);
}
void dumpNothing(CDumpFile& dump, const testing::TemporaryDirectory&) {
  dump.dumpXMLBlob({});
}
void markAsFailed(CDumpFile& dump, const testing::TemporaryDirectory&) {
  dump.markAsFailed();
}
void listBarely(CDumpFile&, const testing::TemporaryDirectory& directory) {
  listNames(directory.path());
}
// The lower bound of a dump, which also writes its own file.
void listAndWrite(CDumpFile&, const testing::TemporaryDirectory& directory) {
  listNames(directory.path());
  os::OperatingSystem& system = os::OperatingSystem::current();
  constexpr int kOverwrite = os::kOpenReadWrite | os::kOpenCreate | os::kOpenTruncate;
  system._close(system._open(directory.path("KDXSQLDump_SC_7_JOB_5_ITR_0.txt").c_str(), kOverwrite, os::kModeWrite));
}
BENCHMARK_CAPTURE(amongOthers, dump, dumpNothing)->Arg(10)->Arg(1000)->Arg(100000)->Iterations(20);
BENCHMARK_CAPTURE(amongOthers, mark, markAsFailed)->Arg(10)->Arg(1000)->Arg(100000)->Iterations(20);
BENCHMARK_CAPTURE(amongOthers, bareListing, listBarely)->Arg(10)->Arg(1000)->Arg(100000)->Iterations(20);
BENCHMARK_CAPTURE(amongOthers, listAndWrite, listAndWrite)->Arg(10)->Arg(1000)->Arg(100000)->Iterations(20);

// Deletes the dumps of `range(0)` jobs, which are created anew for each iteration. posix_dump_file_benchmark.cc has the
// lower bound.
void pruneJobs(benchmark::State& state, const char* ending, auto prune) {
  testing::DumpSite site;
  site.add(kSql, kSubclient);
  for (auto _ : state) {
    state.PauseTiming();
    for (std::int64_t job = 1; job <= state.range(0); ++job) {
      site.directory.write("KDXSQLDump_SC_7_JOB_" + std::to_string(job) + "_ITR_0.txt" + ending);
    }
    state.ResumeTiming();
    prune(site.directory.path());
  }
}
void pruneDumps(const std::string&) {
  CDumpFile(ITERATION_JOB, kSql, kSubclient, 0x7FFFFFFF, 0).pruneDumpXMLBlob();
}
void pruneFailedDumps(const std::string&) {
  CDumpFile(ITERATION_JOB, kSql, kSubclient, 0x7FFFFFFF, 0).pruneFailedDumpXMLBlob();
}
BENCHMARK_CAPTURE(pruneJobs, dumps, "", pruneDumps)->RangeMultiplier(10)->Range(10, 10000)->Iterations(5);
BENCHMARK_CAPTURE(pruneJobs, failedDumps, ".failed", pruneFailedDumps)
    ->RangeMultiplier(10)
    ->Range(10, 10000)
    ->Iterations(5);

}  // namespace
}  // namespace kdx
