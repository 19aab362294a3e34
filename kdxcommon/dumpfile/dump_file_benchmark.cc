#include "kdxcommon/dumpfile/dump_file.h"

#include <benchmark/benchmark.h>

#include <memory>
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

// What the same bytes cost without names, rules and log.
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

// A directory of other files costs two listings, one pass each over its entries.
class LargeDirectory : public benchmark::Fixture {
 public:
  void SetUp(benchmark::State& state) override {
    site_ = std::make_unique<testing::DumpSite>();
    site_->add(kSql, kSubclient);
    for (std::int64_t file = 0; file < state.range(0); ++file) {
      site_->directory.write("KDXSQLDump_SC_8_JOB_" + std::to_string(file) + "_ITR_0.txt");
    }
  }
  void TearDown(benchmark::State&) override { site_.reset(); }

 protected:
  std::unique_ptr<testing::DumpSite> site_;
};

BENCHMARK_DEFINE_F(LargeDirectory, Dump)(benchmark::State& state) {
  CDumpFile dump(ITERATION_JOB, kSql, kSubclient, 5, 0);
  for (auto _ : state) dump.dumpXMLBlob({});
}
BENCHMARK_REGISTER_F(LargeDirectory, Dump)
    ->Arg(0)
    ->Arg(1000)
    ->Arg(100000)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(20);

BENCHMARK_DEFINE_F(LargeDirectory, TwoBareListings)(benchmark::State& state) {
  const std::string path = site_->directory.path();
  for (auto _ : state) {
    for (int listing = 0; listing < 2; ++listing) {
      const auto stream = os::OperatingSystem::current().opendir(path.c_str());
      os::DirectoryEntry entry;
      while (stream->readdir(entry) > 0) benchmark::DoNotOptimize(entry.name);
    }
  }
}
BENCHMARK_REGISTER_F(LargeDirectory, TwoBareListings)->Arg(100000)->Unit(benchmark::kMillisecond)->Iterations(20);

}  // namespace
}  // namespace kdx
