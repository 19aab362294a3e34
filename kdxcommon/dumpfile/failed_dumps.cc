// The dumps of failed jobs: marking them, and the two rules under which they go.

#include <utility>

#include "kdxcommon/dumpfile/directory_reading.h"
#include "kdxcommon/dumpfile/dump_file.h"
#include "kdxcommon/dumpfile/dump_names.h"
#include "kdxcommon/dumpfile/operation_log.h"
#include "kdxcommon/dumpfile/retention.h"
#include "kdxcommon/inhouse/jxutils/jx_utf_os_api.h"
#include "kdxcommon/os/operating_system.h"

namespace kdx {
namespace {

// A file whose times can't be read has age 0, so that it stays.
std::int32_t ageOfFile(const CJxString& path) {
  std::int64_t modified = 0;
  std::int64_t accessed = 0;
  std::int64_t attributes = 0;
  if (CJxFile::GetTimes(path, &modified, &accessed, &attributes).IsErrorSet()) return 0;
  return ageInDays(os::OperatingSystem::current()._time64(nullptr), modified);
}

}  // namespace

bool CDumpFile::markAsFailed() {
  const ScopeLog log(debug_, "CDumpFile::markAsFailed");
  if (!checkInitialized(log)) return false;
  // Both before the renames: the dumps that are being marked can't fall to them.
  DirectoryReading reading = readDirectory();
  pruneFailedDumps(reading);
  pruneExpiredDumps(reading);

  CJxString pattern;
  if (!getPattern(log, pattern, true)) return false;
  log.line(4, "Searching for files %s", pattern.c_str());
  std::vector<CJxString> files;
  if (!listFiles(log, reading, pattern, files)) return false;
  if (files.empty()) {
    log.line(2, "No Dump File found for this job. No file is marked as failed");
    return true;
  }
  for (const CJxString& file : files) {
    const CJxString oldPath = joinPath(dumpDir_, file);
    const CJxString newPath = failedNameOf(oldPath);
    log.line(4, "Deleting file if present - [%s] ", newPath.c_str());
    CJxUTFOSAPI::remove(newPath);
    log.line(4, "Renaming file [%s] to [%s]", oldPath.c_str(), newPath.c_str());
    CJxUTFOSAPI::rename(oldPath, newPath);
  }
  log.line(2, "Dump File found for this job are marked as failed");
  return true;
}

bool CDumpFile::pruneFailedDumpXMLBlob() {
  DirectoryReading reading = readDirectory();
  return pruneFailedDumps(reading);
}

bool CDumpFile::pruneFailedDumps(DirectoryReading& reading) {
  const OperationLog log(debug_, "CDumpFile::pruneFailedDumpXMLBlob");
  CJxString pattern;
  std::vector<CJxString> files;
  if (!checkInitialized(log) || !getPattern(log, pattern, false)) return false;
  if (!listFailedDumps(log, reading, failedNameOf(pattern), files)) return false;
  if (files.empty()) return true;

  if (!deleteFailedJobs(log, reading, countOtherJobs(log, files, ""))) log.line(2, "No file is Deleted");
  return true;
}

bool CDumpFile::pruneTimeExceededFailedDumpFiles() {
  DirectoryReading reading = readDirectory();
  return pruneExpiredDumps(reading);
}

bool CDumpFile::pruneExpiredDumps(DirectoryReading& reading) {
  const OperationLog log(debug_, "CDumpFile::pruneTimeExceededFailedDumpFiles");
  std::vector<CJxString> files;
  if (!checkInitialized(log)) return false;
  if (!listFailedDumps(log, reading, patternOfEveryFailedDump(beginName_), files)) return false;
  if (files.empty()) return true;

  const std::uint32_t daysToKeep = getDaysToKeepFailedJobDumpFiles();
  JobCounts jobs;
  for (const CJxString& file : files) {
    const CJxString path = joinPath(dumpDir_, file);
    const std::int64_t jobId = decimalNumber(parseJobIdFromFileName(file));
    log.line(3, "Getting times of file [%s]", path.c_str());
    const std::int32_t age = ageOfFile(path);
    if (!hasExpired(age, daysToKeep)) {
      log.line(4, "No of Days = %d, Need not be pruned", age);
      continue;
    }
    log.line(4, "Time Exceeded for the file [%s], No of Days = %d", path.c_str(), age);
    log.count(jobId, ++jobs[jobId], "");
  }
  const bool deleted = deleteFailedJobs(log, reading, std::move(jobs));
  log.line(2, "%s", deleted ? "Time Exceeded FAILED DUMP FILES file have been deleted Deleted" : "No file is Deleted");
  return true;
}

bool CDumpFile::listFailedDumps(const OperationLog& log, DirectoryReading& reading, const CJxString& pattern,
                                std::vector<CJxString>& files) const {
  log.line(4, "Searching for files [%s]", pattern.c_str());
  if (!listFiles(log, reading, pattern, files)) return false;
  if (files.empty()) log.line(2, "No file Deleted. Failed Dump Files present = %d", 0);
  return true;
}

// Returns whether there was anything to delete.
bool CDumpFile::deleteFailedJobs(const OperationLog& log, DirectoryReading& reading, std::map<std::int64_t, int> jobs) {
  for (const auto& [jobId, count] : jobs) {
    log.line(4, "FAILED DUMP FILES for JobId %lld going to be pruned", static_cast<long long>(jobId));
  }
  if (jobs.empty()) return false;
  std::vector<CJxString> patterns;
  getDeleteFilePatterns(std::move(jobs), patterns);
  reading.deleteFiles(patternOfEveryFailedDump(beginName_), patterns);
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
