// Pruning of a subclient's dumps, and what stands on disk of the current job.

#include <algorithm>
#include <limits>

#include "kdxcommon/dumpfile/dump_file.h"
#include "kdxcommon/dumpfile/dump_names.h"
#include "kdxcommon/dumpfile/retention.h"

namespace kdx {

bool CDumpFile::getSearchFilePattern(CJxString& pattern, bool thisJobOnly) {
  constexpr char kFunction[] = "CDumpFile::getSearchFilePattern";
  if (!checkInitialized(kFunction)) return false;
  if (!isDumpJobType(jobType_)) {
    debug_.DebugLvl(kFunction, -1, "Unknown Job Type [%u]", static_cast<unsigned>(jobType_));
    return false;
  }
  pattern = thisJobOnly ? searchPatternOfJob(series(), dumpJobId_) : searchPatternOfAllJobs(series());
  return true;
}

CJxString CDumpFile::parseJobIdFromFileName(CJxString name) {
  const NamePiece piece = jobIdInFileName(name);
  debug_.DebugLvl("CDumpFile::parseJobIdFromFileName", 4, "Start Position = [%d], Length = [%d], JOBID = [%s]",
                  piece.start, piece.length, piece.text.c_str());
  return piece.text;
}

CJxString CDumpFile::parseItrIdFromFileName(CJxString name) {
  const NamePiece piece = itrIdInFileName(name);
  debug_.DebugLvl("CDumpFile::parseItrIdFromFileName", 4, "Start Position = [%d], Length = [%d], ITRID = [%s]",
                  piece.start, piece.length, piece.text.c_str());
  return piece.text;
}

bool CDumpFile::searchPattern(const char* function, bool thisJobOnly, CJxString& pattern) {
  if (getSearchFilePattern(pattern, thisJobOnly)) return true;
  debug_.DebugLvl(function, -1, "Failed to get Search File Pattern");
  return false;
}

bool CDumpFile::listFiles(const char* function, const CJxString& pattern, std::vector<CJxString>& files) {
  if (!getFilesOfPattern(dumpDir_, pattern, files).IsErrorSet()) return true;
  debug_.DebugLvl(function, -1, "Error getting files [%s] in [%s]", pattern.c_str(), dumpDir_.c_str());
  return false;
}

void CDumpFile::deleteFiles(const std::vector<CJxString>& patterns) {
  for (const CJxString& pattern : patterns) delFilesOfPattern(dumpDir_, pattern);
}

bool CDumpFile::pruneDumpXMLBlob() {
  constexpr char kFunction[] = "CDumpFile::pruneDumpXMLBlob";
  CJxString pattern;
  if (!checkInitialized(kFunction) || !searchPattern(kFunction, false, pattern)) return false;
  debug_.DebugLvl(kFunction, 4, "Searching for files [%s]", pattern.c_str());
  std::vector<CJxString> files;
  if (!listFiles(kFunction, pattern, files)) return false;

  const std::uint32_t limit = getDumpFileLimit();
  if (files.size() < limit || files.empty()) {
    debug_.DebugLvl(kFunction, 2, "No file Deleted. Either Dump Files present = 0 or less than Dump Limit");
    return true;
  }
  JobCounter jobs(debug_, kFunction, " with value 1");
  for (const CJxString& file : files) {
    jobs.addUnlessCurrent(decimalNumber(parseJobIdFromFileName(file)), dumpJobId_);
  }
  for (const auto& [jobId, count] : jobs.counts()) {
    debug_.DebugLvl(kFunction, 4, "No of Dump files for JobId %lld is %d", static_cast<long long>(jobId), count);
  }
  const std::vector<CJxString> patterns =
      getDeleteFilePatterns(series(), jobs.counts(), filesToDelete(files.size(), limit), getDumpFileLimit(), debug_);
  deleteFiles(patterns);
  if (patterns.empty()) debug_.DebugLvl(kFunction, 2, "No file is Deleted");
  return true;
}

// The beginning that the two queries share; a failure ends with "Exit".
bool CDumpFile::listDumpsOfThisJob(const char* function, std::vector<CJxString>& files) {
  debug_.DebugLvl(function, 2, "Enter");
  CJxString pattern;
  if (checkInitialized(function) && searchPattern(function, true, pattern) && listFiles(function, pattern, files)) {
    return true;
  }
  debug_.DebugLvl(function, 2, "Exit");
  return false;
}

bool CDumpFile::getLastItrIdUsedForDumping(std::int64_t& itrId) {
  constexpr char kFunction[] = "CDumpFile::getLastItrIdUsedForDumping";
  itrId = -1;
  std::vector<CJxString> files;
  if (!listDumpsOfThisJob(kFunction, files)) return false;
  for (const CJxString& file : files) itrId = std::max(itrId, decimalNumber(parseItrIdFromFileName(file)));
  if (!files.empty()) {
    debug_.DebugLvl(kFunction, 3, "Last Iteration Id used is [%lld]", static_cast<long long>(itrId));
  }
  debug_.DebugLvl(kFunction, 2, "Exit");
  return true;
}

bool CDumpFile::getAllXmlDumpFilesCreated(std::map<int, CJxString>& files) {
  std::vector<CJxString> names;
  if (!listDumpsOfThisJob("CDumpFile::getAllXmlDumpFilesCreated", names)) return false;
  for (const CJxString& name : names) {
    const std::int64_t itrId = decimalNumber(parseItrIdFromFileName(name));
    files[static_cast<int>(
        std::clamp<std::int64_t>(itrId, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()))] = name;
  }
  return true;
}

}  // namespace kdx
