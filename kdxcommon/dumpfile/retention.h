// Internal: the rules that decide which dumps go, apart from the disk. From file names, limits and the clock they give
// the patterns of what is to be deleted, and tell a log why. Deleting is the business of the caller.
//
//   kdx::JobCounter jobs(log, "CDumpFile::pruneDumpXMLBlob", " with value 1");
//   for (const kdx::CJxString& name : listing) jobs.addUnlessCurrent(jobIdOf(name), currentJob);
//   const std::int64_t surplus = kdx::filesToDelete(listing.size(), limit);
//   auto patterns = kdx::getDeleteFilePatterns(series, jobs.counts(), surplus, limit, log);
//
// Any thread may call, with a log of its own. Nothing throws but an allocation.

#ifndef KDXCOMMON_DUMPFILE_RETENTION_H_
#define KDXCOMMON_DUMPFILE_RETENTION_H_

#include <cstddef>
#include <cstdint>
#include <map>
#include <vector>

#include "kdxcommon/dumpfile/dump_names.h"
#include "kdxcommon/inhouse/zqlib/ev_event.h"

namespace kdx {

/// Files by job. The order of the keys is the order of pruning: a lower job id is taken to be an older job.
using JobCounts = std::map<std::int64_t, int>;

/// Counts the files of jobs for one prune, and tells the log of each file.
class JobCounter {
 public:
  /// Lines go to `log` under `function`; `insertedEnding` ends the line of a job's first file.
  JobCounter(EvEvent& log, const char* function, const char* insertedEnding)
      : log_(log), function_(function), insertedEnding_(insertedEnding) {}

  void add(std::int64_t jobId);
  /// Leaves out the files of the job that is running: they are not to be deleted.
  void addUnlessCurrent(std::int64_t jobId, std::int64_t currentJobId);

  const JobCounts& counts() const { return counts_; }

 private:
  EvEvent& log_;
  const char* function_;
  const char* insertedEnding_;
  JobCounts counts_;
};

/// How many of `present` files must go so that, with the one about to be written, no more than `limit` stand. `present`
/// is at least `limit`.
std::int64_t filesToDelete(std::size_t present, std::uint32_t limit);

/// The patterns that take whole jobs away, lowest id first, until `surplus` files are covered or no job is left.
/// A limit of 0 takes every dump of the prefix, of all subclients and job types, whatever `jobs` holds.
std::vector<CJxString> getDeleteFilePatterns(const DumpSeries& series, const JobCounts& jobs, std::int64_t surplus,
                                             std::uint32_t limit, EvEvent& log);

/// The patterns that take all failed dumps of these jobs away, on every subclient of the prefix.
std::vector<CJxString> getDeleteFilePatterns(const CJxString& beginName, const JobCounts& jobs, EvEvent& log);

/// Whole days from `fileTime` to `now`, both in seconds since 1970; below 0 for a file dated a day or more ahead of the
/// clock, and the nearest limit for a number of days that 32 bits don't hold.
std::int32_t ageInDays(std::int64_t now, std::int64_t fileTime);

/// Whether a failed dump has grown too old: strictly older than `daysToKeep`. A file dated a day or more ahead of the
/// clock counts as too old as well, since its true age is unknown and it might never come to an end.
bool hasExpired(std::int32_t age, std::uint32_t daysToKeep);

}  // namespace kdx

#endif  // KDXCOMMON_DUMPFILE_RETENTION_H_
