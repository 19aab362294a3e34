// What the caller of the program asks for, from the command line and a configuration file.

#ifndef KDXCOMMON_EXAMPLES_OPTIONS_H_
#define KDXCOMMON_EXAMPLES_OPTIONS_H_

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "console.h"
#include "kdxcommon/dumpfile/job_type.h"

namespace collect_job {

struct Options {
  std::vector<std::string> files;  ///< one iteration each; none: the embedded sample

  std::uint32_t applicationType = 605;
  std::uint32_t subclientId = 7;
  std::uint32_t appIdPart1 = 1;
  std::uint32_t appIdPart2 = 1;
  std::uint32_t collectionOptions = 0x201;  ///< the subclient's word of option bits

  std::optional<std::int64_t> jobId;  ///< none: one more than the highest that has a dump in the directory
  kdx::ZQBkpLevel jobType = kdx::ITERATION_JOB;
  std::int64_t firstIteration = 0;
  bool fail = false;

  std::string directory = "dumps";
  std::optional<std::uint32_t> limit;           ///< none: the library's default
  std::optional<std::uint32_t> keepFailedDays;  ///< none: the library's default

  int debugLevel = 0;
  std::string logFile;  ///< empty: the standard error stream
  ProgressStyle progress = ProgressStyle::kLines;
};

/// Reads the command line and the configuration file that it names. Gives none after `--help`, which it prints.
/// Throws a Failure of kBadCommandLine.
std::optional<Options> parseOptions(int argc, const char* const* argv);

}  // namespace collect_job

#endif  // KDXCOMMON_EXAMPLES_OPTIONS_H_
