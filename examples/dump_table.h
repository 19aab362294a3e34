// What stands in a dump directory, read from its names, and the table that shows it.

#ifndef KDXCOMMON_EXAMPLES_DUMP_TABLE_H_
#define KDXCOMMON_EXAMPLES_DUMP_TABLE_H_

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

namespace collect_job {

struct Dump {
  std::string name;
  std::optional<std::int64_t> job;        ///< none where the name holds none
  std::optional<std::int64_t> iteration;  ///< none for a discovery job
  std::uintmax_t bytes = 0;
  bool failed = false;
};

/// All dumps of the prefix in `directory`, by job and iteration. Throws a Failure of kCannotWrite when the directory
/// can't be listed.
std::vector<Dump> listDumps(const std::string& directory, const std::string& prefix);

/// The dumps of `before` that are gone in `after`. One of the running job that took its failed name is not gone.
std::vector<Dump> prunedDumps(const std::vector<Dump>& before, const std::vector<Dump>& after, std::int64_t runningJob);

void printDumps(std::ostream& out, const std::vector<Dump>& dumps);

}  // namespace collect_job

#endif  // KDXCOMMON_EXAMPLES_DUMP_TABLE_H_
