#include "kdxcommon/inhouse/jxutils/jx_directory.h"

#include <benchmark/benchmark.h>

#include "kdxcommon/os/operating_system.h"
#include "kdxcommon/testing/temporary_directory.h"

namespace kdx {
namespace {

constexpr int kOtherFiles = 100'000;

// Made once for all benchmarks of this file; three dumps among many files of others.
const testing::TemporaryDirectory& crowdedDirectory() {
  static const testing::TemporaryDirectory directory;
  static const bool filled = [] {
    for (int i = 0; i < kOtherFiles; ++i) directory.write("KDXExchDump_SC_7_JOB_" + std::to_string(i) + "_ITR_0.txt");
    for (int i = 0; i < 3; ++i) directory.write("KDXSQLDump_SC_7_JOB_" + std::to_string(i) + "_ITR_0.txt");
    return true;
  }();
  benchmark::DoNotOptimize(filled);
  return directory;
}

void listMatchingAmongMany(benchmark::State& state) {
  const string path = crowdedDirectory().path();
  for (auto _ : state) {
    CJxDirectory directory;
    SJxDirEntry entry;
    bool end = directory.Open(path.c_str(), "KDXSQLDump_SC_7_JOB_*_*.txt", true).IsErrorSet();
    int found = 0;
    while (!end && !directory.GetEntry(&entry, end).IsErrorSet() && !end) ++found;
    if (found != 3) state.SkipWithError("the listing is wrong");
  }
  state.SetItemsProcessed(state.iterations() * kOtherFiles);
}
BENCHMARK(listMatchingAmongMany)->Unit(benchmark::kMillisecond);

// What the system alone takes for the same pass.
void readNamesOnly(benchmark::State& state) {
  const string path = crowdedDirectory().path();
  for (auto _ : state) {
    const std::unique_ptr<os::DirectoryStream> stream = os::OperatingSystem::current().opendir(path.c_str());
    os::DirectoryEntry entry;
    while (stream && stream->readdir(entry) == 1) benchmark::DoNotOptimize(entry.name);
  }
  state.SetItemsProcessed(state.iterations() * kOtherFiles);
}
BENCHMARK(readNamesOnly)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace kdx
