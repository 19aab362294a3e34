// The dumps of failed jobs: marking them, and the two rules under which they go.

#include "kdxcommon/dumpfile/dump_file.h"
#include "kdxcommon/dumpfile/dump_names.h"
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
  constexpr char kFunction[] = "CDumpFile::markAsFailed";
  debug_.DebugLvl(kFunction, 2, "Enter");
  const bool done = checkInitialized(kFunction) && renameDumps(kFunction);
  debug_.DebugLvl(kFunction, 2, "Exit");
  return done;
}

bool CDumpFile::renameDumps(const char* function) {
  // Both before the renames: the dumps that are being marked can't fall to them.
  pruneFailedDumpXMLBlob();
  pruneTimeExceededFailedDumpFiles();

  CJxString pattern;
  if (!searchPattern(function, true, pattern)) return false;
  debug_.DebugLvl(function, 4, "Searching for files %s", pattern.c_str());
  std::vector<CJxString> files;
  if (!listFiles(function, pattern, files)) return false;
  if (files.empty()) {
    debug_.DebugLvl(function, 2, "No Dump File found for this job. No file is marked as failed");
    return true;
  }
  for (const CJxString& file : files) {
    const CJxString oldPath = joinPath(dumpDir_, file);
    const CJxString newPath = failed(oldPath);
    debug_.DebugLvl(function, 4, "Deleting file if present - [%s] ", newPath.c_str());
    CJxUTFOSAPI::remove(newPath);
    debug_.DebugLvl(function, 4, "Renaming file [%s] to [%s]", oldPath.c_str(), newPath.c_str());
    CJxUTFOSAPI::rename(oldPath, newPath);
  }
  debug_.DebugLvl(function, 2, "Dump File found for this job are marked as failed");
  return true;
}

bool CDumpFile::pruneFailedDumpXMLBlob() {
  constexpr char kFunction[] = "CDumpFile::pruneFailedDumpXMLBlob";
  CJxString pattern;
  if (!checkInitialized(kFunction) || !searchPattern(kFunction, false, pattern)) return false;
  std::vector<CJxString> files;
  if (!listFailedDumps(kFunction, failed(pattern), files)) return false;
  if (files.empty()) return true;

  JobCounter jobs(debug_, kFunction, "");
  for (const CJxString& file : files) {
    jobs.addUnlessCurrent(decimalNumber(parseJobIdFromFileName(file)), dumpJobId_);
  }
  if (!deleteFailedJobs(kFunction, jobs.counts())) debug_.DebugLvl(kFunction, 2, "No file is Deleted");
  return true;
}

bool CDumpFile::pruneTimeExceededFailedDumpFiles() {
  constexpr char kFunction[] = "CDumpFile::pruneTimeExceededFailedDumpFiles";
  std::vector<CJxString> files;
  if (!checkInitialized(kFunction)) return false;
  if (!listFailedDumps(kFunction, patternOfEveryFailedDump(beginName_), files)) return false;
  if (files.empty()) return true;

  const std::uint32_t daysToKeep = getDaysToKeepFailedJobDumpFiles();
  JobCounter jobs(debug_, kFunction, "");
  for (const CJxString& file : files) {
    const CJxString path = joinPath(dumpDir_, file);
    const std::int64_t jobId = decimalNumber(parseJobIdFromFileName(file));
    debug_.DebugLvl(kFunction, 3, "Getting times of file [%s]", path.c_str());
    const std::int32_t age = ageOfFile(path);
    if (!hasExpired(age, daysToKeep)) {
      debug_.DebugLvl(kFunction, 4, "No of Days = %d, Need not be pruned", age);
      continue;
    }
    debug_.DebugLvl(kFunction, 4, "Time Exceeded for the file [%s], No of Days = %d", path.c_str(), age);
    jobs.add(jobId);
  }
  const bool deleted = deleteFailedJobs(kFunction, jobs.counts());
  debug_.DebugLvl(kFunction, 2, "%s",
                  deleted ? "Time Exceeded FAILED DUMP FILES file have been deleted Deleted" : "No file is Deleted");
  return true;
}

bool CDumpFile::listFailedDumps(const char* function, const CJxString& pattern, std::vector<CJxString>& files) {
  debug_.DebugLvl(function, 4, "Searching for files [%s]", pattern.c_str());
  if (!listFiles(function, pattern, files)) return false;
  if (files.empty()) debug_.DebugLvl(function, 2, "No file Deleted. Failed Dump Files present = %d", 0);
  return true;
}

// Whether there was anything to delete.
bool CDumpFile::deleteFailedJobs(const char* function, const std::map<std::int64_t, int>& jobs) {
  for (const auto& [jobId, count] : jobs) {
    debug_.DebugLvl(function, 4, "FAILED DUMP FILES for JobId %lld going to be pruned", static_cast<long long>(jobId));
  }
  deleteFiles(getDeleteFilePatterns(beginName_, jobs, debug_));
  return !jobs.empty();
}

}  // namespace kdx
