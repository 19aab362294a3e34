// The rule that deletes a subclient's dumps.

#include <utility>

#include "kdxcommon/dumpfile/dump_file.h"
#include "kdxcommon/dumpfile/dump_names.h"
#include "kdxcommon/dumpfile/operation_log.h"
#include "kdxcommon/dumpfile/pruning.h"
#include "kdxcommon/dumpfile/retention.h"

namespace kdx {

bool CDumpFile::pruneDumpXMLBlob() {
  Pruning pruning = startPruning();
  return pruneDumps(pruning);
}

bool CDumpFile::pruneDumps(Pruning& pruning) {
  const OperationLog log(debug_, "CDumpFile::pruneDumpXMLBlob");
  CJxString pattern;
  if (!checkInitialized(log) || !getPattern(log, pattern, false)) return false;
  log.line(4, "Searching for files [%s]", pattern.c_str());
  std::vector<CJxString> files;
  if (!listFiles(log, pruning.reading, pattern, files)) return false;

  const std::uint32_t limit = getDumpFileLimit();
  if (files.size() < limit || files.empty()) {
    log.line(2, "No file Deleted. Either Dump Files present = 0 or less than Dump Limit");
    return true;
  }
  JobCounts jobs = countOtherJobs(log, files, " with value 1");
  for (const auto& [jobId, count] : jobs) {
    log.line(4, "No of Dump files for JobId %lld is %d", static_cast<long long>(jobId), count);
  }
  PruningPlan plan{.rule = DumpRule::kLimit, .covering = pattern, .patterns = {}};
  getDeleteFilePatterns(std::move(jobs), filesToDelete(files.size(), limit), plan.patterns);
  if (plan.patterns.empty()) log.line(2, "No file is Deleted");
  pruning.carryOut(std::move(plan));
  return true;
}

// Counts the files of all jobs but the running one, whose files are kept.
std::map<std::int64_t, int> CDumpFile::countOtherJobs(const OperationLog& log, const std::vector<CJxString>& files,
                                                      const char* insertedEnding) {
  JobCounts jobs;
  for (const CJxString& file : files) {
    const std::int64_t jobId = decimalNumber(parseJobIdFromFileName(file));
    if (jobId == dumpJobId_) {
      log.line(4, "JOBID [%lld] is current Job. Should not be deleted", static_cast<long long>(jobId));
    } else {
      log.count(jobId, ++jobs[jobId], insertedEnding);
    }
  }
  return jobs;
}

void CDumpFile::getDeleteFilePatterns(std::map<std::int64_t, int> jobs, std::int64_t filesToDelete,
                                      std::vector<CJxString>& patterns) {
  const OperationLog log(debug_, "CDumpFile::getDeleteFilePatterns");
  if (!checkInitialized(log)) return;
  const std::uint32_t limit = getDumpFileLimit();
  log.line(4, "Dump File Limit = %u", limit);
  if (limit == 0) {
    patterns.push_back(patternOfEveryDump(beginName_));
    return;
  }
  std::int64_t covered = 0;
  for (const auto& [jobId, files] : jobsToDelete(jobs, filesToDelete)) {
    covered += files;
    log.line(4, "Previous Job [%lld]  with no of files [%d] should be deleted. Count = [%lld]",
             static_cast<long long>(jobId), files, static_cast<long long>(covered));
    patterns.push_back(patternOfJob(series(), jobId));
    log.line(4, "File pattern %s pushed into vector", patterns.back().c_str());
  }
}

}  // namespace kdx
