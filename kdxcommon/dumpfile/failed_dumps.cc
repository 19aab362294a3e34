// The dumps of failed jobs: marking them, and the two rules that delete them.

#include <utility>

#include "kdxcommon/dumpfile/dump_file.h"
#include "kdxcommon/dumpfile/dump_names.h"
#include "kdxcommon/dumpfile/operation_log.h"
#include "kdxcommon/dumpfile/pruning.h"
#include "kdxcommon/dumpfile/retention.h"
#include "kdxcommon/inhouse/jxutils/jx_utf_os_api.h"
#include "kdxcommon/os/operating_system.h"

namespace kdx {
namespace {

// Returns the age in days; 0 for a file whose times can't be read, so that it is kept.
std::int32_t ageOfFile(const CJxString& path) {
  std::int64_t modified = 0;
  std::int64_t accessed = 0;
  std::int64_t attributes = 0;
  if (CJxFile::GetTimes(path, &modified, &accessed, &attributes).IsErrorSet()) return 0;
  return ageInDays(os::OperatingSystem::current()._time64(nullptr), modified);
}

}  // namespace

bool CDumpFile::chooseDumpsToMark(const OperationLog& log, Pruning& pruning, std::vector<CJxString>& files) {
  if (!checkInitialized(log)) return false;
  // Both rules run before the renames, so that they can't delete the dumps that are being marked.
  pruneFailedDumps(pruning);
  pruneExpiredDumps(pruning);
  CJxString pattern;
  if (!getPattern(log, pattern, true)) return false;
  log.line(4, "Searching for files %s", pattern.c_str());
  return listFiles(log, pruning.reading, pattern, files);
}

bool CDumpFile::markAsFailed() {
  Pruning pruning = startPruning();
  return markAsFailed(pruning);
}

bool CDumpFile::markAsFailed(std::vector<DumpFate>& fates) {
  Pruning pruning = startPruning();
  if (!markAsFailed(pruning)) return false;
  fates = fatesAfter(pruning, true);
  return true;
}

bool CDumpFile::explainMarkAsFailed(std::vector<DumpFate>& fates) {
  const OperationLog log(debug_, "CDumpFile::explainMarkAsFailed");
  Pruning rehearsal = startPruning(true);
  std::vector<CJxString> files;
  if (!chooseDumpsToMark(log, rehearsal, files)) return false;
  for (CJxString& file : files) rehearsal.marked.push_back({.name = std::move(file)});
  fates = fatesAfter(rehearsal, true);
  return true;
}

bool CDumpFile::markAsFailed(Pruning& pruning) {
  const ScopeLog log(debug_, "CDumpFile::markAsFailed");
  std::vector<CJxString> files;
  if (!chooseDumpsToMark(log, pruning, files)) return false;
  if (files.empty()) {
    log.line(2, "No Dump File found for this job. No file is marked as failed");
    return true;
  }
  for (const CJxString& file : files) {
    const CJxString oldPath = joinPath(dumpDir_, file);
    const CJxString newPath = failedNameOf(oldPath);
    log.line(4, "Deleting file if present - [%s] ", newPath.c_str());
    const bool removed = !CJxUTFOSAPI::remove(newPath).IsErrorSet();
    log.line(4, "Renaming file [%s] to [%s]", oldPath.c_str(), newPath.c_str());
    const bool renamed = !CJxUTFOSAPI::rename(oldPath, newPath).IsErrorSet();
    pruning.marked.push_back({.name = file, .renamed = renamed, .replaces = removed || renamed});
  }
  log.line(2, "Dump File found for this job are marked as failed");
  return true;
}

bool CDumpFile::pruneFailedDumpXMLBlob() {
  Pruning pruning = startPruning();
  return pruneFailedDumps(pruning);
}

bool CDumpFile::pruneFailedDumps(Pruning& pruning) {
  const OperationLog log(debug_, "CDumpFile::pruneFailedDumpXMLBlob");
  CJxString pattern;
  std::vector<CJxString> files;
  if (!checkInitialized(log) || !getPattern(log, pattern, false)) return false;
  if (!listFailedDumps(log, pruning.reading, failedNameOf(pattern), files)) return false;
  if (files.empty()) return true;

  const bool found = deleteFailedJobs(log, pruning, DumpRule::kOtherFailedJobs, countOtherJobs(log, files, ""));
  if (!found) log.line(2, "No file is Deleted");
  return true;
}

bool CDumpFile::pruneTimeExceededFailedDumpFiles() {
  Pruning pruning = startPruning();
  return pruneExpiredDumps(pruning);
}

bool CDumpFile::pruneExpiredDumps(Pruning& pruning) {
  const OperationLog log(debug_, "CDumpFile::pruneTimeExceededFailedDumpFiles");
  std::vector<CJxString> files;
  if (!checkInitialized(log)) return false;
  if (!listFailedDumps(log, pruning.reading, patternOfEveryFailedDump(beginName_), files)) return false;
  if (files.empty()) return true;

  const std::uint32_t daysToKeep = getDaysToKeepFailedJobDumpFiles();
  JobCounts jobs;
  for (const CJxString& file : files) {
    const CJxString path = joinPath(dumpDir_, file);
    const std::int64_t jobId = decimalNumber(parseJobIdFromFileName(file));
    log.line(3, "Getting times of file [%s]", path.c_str());
    const std::int32_t age = ageOfFile(path);
    pruning.ages.push_back({file, age});
    if (!hasExpired(age, daysToKeep)) {
      log.line(4, "No of Days = %d, Need not be pruned", age);
      continue;
    }
    log.line(4, "Time Exceeded for the file [%s], No of Days = %d", path.c_str(), age);
    log.count(jobId, ++jobs[jobId], "");
  }
  const bool found = deleteFailedJobs(log, pruning, DumpRule::kAge, std::move(jobs));
  if (!found) {
    log.line(2, "No file is Deleted");
  } else if (!pruning.rehearses) {
    log.line(2, "Time Exceeded FAILED DUMP FILES file have been deleted Deleted");
  }
  return true;
}

bool CDumpFile::listFailedDumps(const OperationLog& log, DirectoryReading& reading, const CJxString& pattern,
                                std::vector<CJxString>& files) const {
  log.line(4, "Searching for files [%s]", pattern.c_str());
  if (!listFiles(log, reading, pattern, files)) return false;
  if (files.empty()) log.line(2, "No file Deleted. Failed Dump Files present = %d", 0);
  return true;
}

// Returns whether there was a job to delete.
bool CDumpFile::deleteFailedJobs(const OperationLog& log, Pruning& pruning, DumpRule rule,
                                 std::map<std::int64_t, int> jobs) {
  for (const auto& [jobId, count] : jobs) {
    log.line(4, "FAILED DUMP FILES for JobId %lld going to be pruned", static_cast<long long>(jobId));
  }
  if (jobs.empty()) return false;
  PruningPlan plan{.rule = rule, .covering = patternOfEveryFailedDump(beginName_), .patterns = {}};
  getDeleteFilePatterns(std::move(jobs), plan.patterns);
  pruning.carryOut(std::move(plan));
  return true;
}

void CDumpFile::getDeleteFilePatterns(std::map<std::int64_t, int> jobs, std::vector<CJxString>& patterns) {
  const OperationLog log(debug_, "CDumpFile::getDeleteFilePatterns");
  if (!checkInitialized(log)) return;
  for (const auto& [jobId, files] : jobs) {
    for (CJxString& pattern : patternsOfFailedJob(beginName_, jobId)) {
      patterns.push_back(std::move(pattern));
      log.line(4, "File pattern %s pushed into vector", patterns.back().c_str());
    }
  }
}

}  // namespace kdx
