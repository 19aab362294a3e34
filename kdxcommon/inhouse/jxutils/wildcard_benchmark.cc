#include "kdxcommon/inhouse/jxutils/wildcard.h"

#include <benchmark/benchmark.h>

namespace kdx {
namespace {

void matchName(benchmark::State& state, const char* pattern, const char* name) {
  const Wildcard wildcard(pattern);
  const string_view text = name;
  for (auto _ : state) {
    string_view varying = text;
    benchmark::DoNotOptimize(varying);
    benchmark::DoNotOptimize(wildcard.matches(varying));
  }
}

constexpr const char* kAllJobs = "KDXSQLDump_SC_7_JOB_*_*.txt";

BENCHMARK_CAPTURE(matchName, differs_early, kAllJobs, "KDXExchDump_SC_7_JOB_3456_ITR_2.txt");
BENCHMARK_CAPTURE(matchName, differs_in_subclient, kAllJobs, "KDXSQLDump_SC_8_JOB_3456_ITR_2.txt");
BENCHMARK_CAPTURE(matchName, differs_in_tail, kAllJobs, "KDXSQLDump_SC_7_JOB_3456_ITR_2.txt.failed");
BENCHMARK_CAPTURE(matchName, hit_all_jobs, kAllJobs, "KDXSQLDump_SC_7_JOB_3456_ITR_2.txt");
BENCHMARK_CAPTURE(matchName, hit_prefix, "KDXSQLDump_*.txt", "KDXSQLDump_SC_7_JOB_3456_ITR_2.txt");
BENCHMARK_CAPTURE(matchName, hit_three_stars, "KDXSQLDump_SC_*_JOB_3456_*.txt.failed",
                  "KDXSQLDump_SC_7_JOB_3456_ITR_2.txt.failed");

}  // namespace
}  // namespace kdx
