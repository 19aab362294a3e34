// Internal: the rules that decide which dumps go, apart from the disk and the log: pure functions of counts, limits and
// dates.
//
//   kdx::JobCounts files;
//   for (const kdx::CJxString& name : listing) ++files[jobIdOf(name)];
//   for (const auto& [job, count] : kdx::jobsToDelete(files, kdx::filesToDelete(listing.size(), limit))) ...
//
// Thread-safe. Throws only std::bad_alloc.

#ifndef KDXCOMMON_DUMPFILE_RETENTION_H_
#define KDXCOMMON_DUMPFILE_RETENTION_H_

#include <cstddef>
#include <cstdint>
#include <map>
#include <utility>
#include <vector>

namespace kdx {

/// Files by job. The order of the keys is the order of pruning: a lower job id is taken to be an older job.
using JobCounts = std::map<std::int64_t, int>;

/// Returns how many of `present` files must go so that, with the one about to be written, no more than `limit` stand.
/// `present` is at least `limit`.
std::int64_t filesToDelete(std::size_t present, std::uint32_t limit);

/// Returns the jobs that go, each with the number of its files: whole jobs, lowest id first, until `surplus` files are
/// covered or no job is left.
std::vector<std::pair<std::int64_t, int>> jobsToDelete(const JobCounts& jobs, std::int64_t surplus);

/// Returns the whole days from `fileTime` to `now`, both in seconds since 1970: negative for a file dated a day or more
/// ahead of the clock, and the nearest limit for a number of days that 32 bits don't hold.
std::int32_t ageInDays(std::int64_t now, std::int64_t fileTime);

/// Returns whether a failed dump has grown too old: strictly older than `daysToKeep`. A file dated a day or more ahead
/// of the clock is too old as well, since its true age is unknown and it might never go.
bool hasExpired(std::int32_t age, std::uint32_t daysToKeep);

}  // namespace kdx

#endif  // KDXCOMMON_DUMPFILE_RETENTION_H_
