#include "kdxcommon/inhouse/embedded_site.h"

#include <benchmark/benchmark.h>

namespace kdx {
namespace {

// Reading a setting, by one thread and by two that compete for the site's lock.
void readSetting(benchmark::State& state) {
  EmbeddedSite& site = EmbeddedSite::current();
  const string section, key = "nDUMPFILELIMIT";
  site.setNumber(section, key, 7);
  for (auto _ : state) benchmark::DoNotOptimize(site.number(section, key));
}
BENCHMARK(readSetting);
BENCHMARK(readSetting)->Threads(2)->UseRealTime();

}  // namespace
}  // namespace kdx
