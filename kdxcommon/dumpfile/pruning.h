// Internal: the pruning of one operation of CDumpFile. Its rules share one reading of the directory. Each makes a plan,
// which is then carried out, or in a rehearsal only noted: what is explained is what would be done.
//
//   kdx::Pruning pruning{.reading = {directory, pattern}, .rehearses = true};
//   pruning.carryOut({.rule = kdx::DumpRule::kLimit, .covering = allJobs, .patterns = {job10, job11}});
//   std::vector<kdx::DumpFate> fates = kdx::fatesOf(pruning, situation);
//
// Thread safety: not safe for concurrent use of one object. Throws only std::bad_alloc.

#ifndef KDXCOMMON_DUMPFILE_PRUNING_H_
#define KDXCOMMON_DUMPFILE_PRUNING_H_

#include <cstdint>
#include <utility>
#include <vector>

#include "kdxcommon/dumpfile/directory_reading.h"
#include "kdxcommon/dumpfile/dump_directory.h"
#include "kdxcommon/dumpfile/dump_names.h"

namespace kdx {

/// The rules: the limit of dumps, the failed dumps of other jobs, the age of failed dumps.
enum class DumpRule : std::uint8_t { kLimit, kOtherFailedJobs, kAge };

/// What a rule decided: the files that match `patterns` go, in their order.
struct PruningPlan {
  DumpRule rule;
  CJxString covering;  // matches every name that a pattern with a job id matches
  std::vector<CJxString> patterns;
  std::vector<DirectoryReading::Choice> choices = {};  // the files that were found, once the plan is carried out
};

/// The age of a failed dump, in days.
struct FileAge {
  CJxString name;
  std::int32_t days;
};

/// A dump that is marked as failed.
struct MarkedDump {
  CJxString name;
  bool renamed = true;
  bool replaces = true;  // an older failed dump, if there is one
};

struct Pruning {
  DirectoryReading reading;
  bool rehearses = false;               // nothing is deleted or renamed
  std::vector<PruningPlan> plans = {};  // those that were carried out
  std::vector<FileAge> ages = {};       // of the failed dumps that the rule of age has seen
  std::vector<MarkedDump> marked = {};

  /// Deletes what the plan says and adds it to `plans`.
  void carryOut(PruningPlan plan) {
    plan.choices = reading.deleteFiles(plan.covering, plan.patterns, rehearses);
    plans.push_back(std::move(plan));
  }
};

/// The job and the settings that the rules applied to.
struct PruningSituation {
  DumpSeries series;
  std::int64_t jobId;
  std::uint32_t limit;
  std::uint32_t daysToKeep;
  bool marks;  // the operation marks the job's dumps as failed, otherwise it writes a dump
};

/// Returns the fate of each file of the reading, in the directory's order.
std::vector<DumpFate> fatesOf(const Pruning& pruning, const PruningSituation& situation);

}  // namespace kdx

#endif  // KDXCOMMON_DUMPFILE_PRUNING_H_
