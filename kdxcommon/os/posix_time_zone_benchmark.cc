#include <benchmark/benchmark.h>
#include <time.h>

#include "kdxcommon/os/operating_system.h"
#include "kdxcommon/platform/files_and_clock.h"

namespace kdx::os {
namespace {

void askZone(benchmark::State& state) {
  TIME_ZONE_INFORMATION zone;
  for (auto _ : state) benchmark::DoNotOptimize(OperatingSystem::current().GetTimeZoneInformation(zone));
}
BENCHMARK(askZone);

void askZoneWithNames(benchmark::State& state) {
  TimeZone_t zone;
  for (auto _ : state) benchmark::DoNotOptimize(platformGetTimeZone(zone, nullptr));
}
BENCHMARK(askZoneWithNames);

// The instants walk on from 2010-08-05, as those of a listing do.
template <typename Fields, typename Convert>
void breakDown(benchmark::State& state, Fields fields, Convert convert) {
  time_t seconds = 1281021492;
  for (auto _ : state) {
    seconds += 4001;
    convert(seconds, fields);
    benchmark::DoNotOptimize(fields);
  }
}
BENCHMARK_CAPTURE(breakDown, gmtime_r, tm{}, [](time_t seconds, tm& fields) { ::gmtime_r(&seconds, &fields); });
BENCHMARK_CAPTURE(breakDown, _gmtime64, BrokenDownTime{}, [](time_t seconds, BrokenDownTime& fields) {
  OperatingSystem::current()._gmtime64(seconds, fields);
});
BENCHMARK_CAPTURE(breakDown, localtime_r, tm{}, [](time_t seconds, tm& fields) { ::localtime_r(&seconds, &fields); });
BENCHMARK_CAPTURE(breakDown, _localtime64, BrokenDownTime{}, [](time_t seconds, BrokenDownTime& fields) {
  OperatingSystem::current()._localtime64(seconds, fields);
});

template <typename Fields, typename Convert>
void putTogether(benchmark::State& state, Fields fields, Convert convert) {
  fields.tm_mon = 7;
  fields.tm_year = 110;
  for (auto _ : state) {
    fields.tm_mday = fields.tm_mday % 28 + 1;
    benchmark::DoNotOptimize(convert(fields));
  }
}
BENCHMARK_CAPTURE(putTogether, timegm, tm{}, [](tm& fields) { return ::timegm(&fields); });
BENCHMARK_CAPTURE(putTogether, mktime, tm{}, [](tm& fields) { return ::mktime(&fields); });
BENCHMARK_CAPTURE(putTogether, _mktime64, BrokenDownTime{},
                  [](const BrokenDownTime& fields) { return OperatingSystem::current()._mktime64(fields); });

}  // namespace
}  // namespace kdx::os
