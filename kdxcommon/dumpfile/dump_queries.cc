// The queries of the rules and the callers: search patterns, ids in names, and this job's dumps in the directory.

#include <algorithm>
#include <limits>

#include "kdxcommon/dumpfile/dump_file.h"
#include "kdxcommon/dumpfile/dump_names.h"
#include "kdxcommon/dumpfile/operation_log.h"
#include "kdxcommon/dumpfile/pruning.h"

namespace kdx {

bool CDumpFile::checkInitialized(const OperationLog& log) const {
  if (!initialized_) log.line(-1, "Object Not Initialized");
  return initialized_;
}

bool CDumpFile::getSearchFilePattern(CJxString& pattern, bool thisJobOnly) {
  const OperationLog log(debug_, "CDumpFile::getSearchFilePattern");
  if (!checkInitialized(log)) return false;
  if (!isDumpJobType(jobType_)) {
    log.line(-1, "Unknown Job Type [%u]", static_cast<unsigned>(jobType_));
    return false;
  }
  pattern = thisJobOnly ? patternOfJob(series(), dumpJobId_) : patternOfAllJobs(series());
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

bool CDumpFile::getPattern(const OperationLog& log, CJxString& pattern, bool thisJobOnly) {
  if (getSearchFilePattern(pattern, thisJobOnly)) return true;
  log.line(-1, "Failed to get Search File Pattern");
  return false;
}

Pruning CDumpFile::startPruning(bool rehearses) const {
  return {.reading = {dumpDir_, patternOfPrefix(beginName_)}, .rehearses = rehearses};
}

std::vector<DumpFate> CDumpFile::fatesAfter(const Pruning& pruning, bool marks) {
  return fatesOf(pruning, {series(), dumpJobId_, getDumpFileLimit(), getDaysToKeepFailedJobDumpFiles(), marks});
}

bool CDumpFile::listFiles(const OperationLog& log, DirectoryReading& reading, const CJxString& pattern,
                          std::vector<CJxString>& files) const {
  if (!reading.list(pattern, files).IsErrorSet()) return true;
  log.line(-1, "Error getting files [%s] in [%s]", pattern.c_str(), dumpDir_.c_str());
  return false;
}

bool CDumpFile::listDumpsOfThisJob(const OperationLog& log, std::vector<CJxString>& files) {
  CJxString pattern;
  if (!checkInitialized(log) || !getPattern(log, pattern, true)) return false;
  DirectoryReading reading(dumpDir_, pattern);
  return listFiles(log, reading, pattern, files);
}

bool CDumpFile::getLastItrIdUsedForDumping(std::int64_t& itrId) {
  itrId = -1;
  const ScopeLog log(debug_, "CDumpFile::getLastItrIdUsedForDumping");
  std::vector<CJxString> files;
  if (!listDumpsOfThisJob(log, files)) return false;
  for (const CJxString& file : files) itrId = std::max(itrId, decimalNumber(parseItrIdFromFileName(file)));
  if (!files.empty()) log.line(3, "Last Iteration Id used is [%lld]", static_cast<long long>(itrId));
  return true;
}

bool CDumpFile::getAllXmlDumpFilesCreated(std::map<int, CJxString>& files) {
  ScopeLog log(debug_, "CDumpFile::getAllXmlDumpFilesCreated");
  std::vector<CJxString> names;
  if (!listDumpsOfThisJob(log, names)) return false;
  for (const CJxString& name : names) {
    constexpr std::numeric_limits<int> kIds;
    const std::int64_t itrId = decimalNumber(parseItrIdFromFileName(name));
    files[static_cast<int>(std::clamp<std::int64_t>(itrId, kIds.min(), kIds.max()))] = name;
  }
  log.skipExit();
  return true;
}

}  // namespace kdx
