#include "kdxcommon/dumpfile/retention.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "kdxcommon/base/civil_date.h"

namespace kdx {
namespace {

constexpr char kDeletePatternsFunction[] = "CDumpFile::getDeleteFilePatterns";

void push(std::vector<CJxString>& patterns, CJxString pattern, EvEvent& log) {
  log.DebugLvl(kDeletePatternsFunction, 4, "File pattern %s pushed into vector", pattern.c_str());
  patterns.push_back(std::move(pattern));
}

}  // namespace

void JobCounter::add(std::int64_t jobId) {
  if (++counts_[jobId] == 1) {
    log_.DebugLvl(function_, 4, "JOBID = [%lld] is inserted into map%s", static_cast<long long>(jobId),
                  insertedEnding_);
  } else {
    log_.DebugLvl(function_, 4, "Count for JOBID = [%lld] is increamented by 1", static_cast<long long>(jobId));
  }
}

void JobCounter::addUnlessCurrent(std::int64_t jobId, std::int64_t currentJobId) {
  if (jobId != currentJobId) return add(jobId);
  log_.DebugLvl(function_, 4, "JOBID [%lld] is current Job. Should not be deleted", static_cast<long long>(jobId));
}

std::int64_t filesToDelete(std::size_t present, std::uint32_t limit) {
  return static_cast<std::int64_t>(present) - (static_cast<std::int64_t>(limit) - 1);
}

std::vector<CJxString> getDeleteFilePatterns(const DumpSeries& series, const JobCounts& jobs, std::int64_t surplus,
                                             std::uint32_t limit, EvEvent& log) {
  log.DebugLvl(kDeletePatternsFunction, 4, "Dump File Limit = %u", limit);
  if (limit == 0) return {patternOfEveryDump(series.beginName)};
  std::vector<CJxString> patterns;
  std::int64_t covered = 0;
  for (const auto& [jobId, files] : jobs) {
    if (covered >= surplus) break;
    covered += files;
    log.DebugLvl(kDeletePatternsFunction, 4,
                 "Previous Job [%lld]  with no of files [%d] should be deleted. Count = [%lld]",
                 static_cast<long long>(jobId), files, static_cast<long long>(covered));
    push(patterns, searchPatternOfJob(series, jobId), log);
  }
  return patterns;
}

std::vector<CJxString> getDeleteFilePatterns(const CJxString& beginName, const JobCounts& jobs, EvEvent& log) {
  std::vector<CJxString> patterns;
  for (const auto& [jobId, files] : jobs) {
    for (CJxString& pattern : patternsOfFailedJob(beginName, jobId)) push(patterns, std::move(pattern), log);
  }
  return patterns;
}

std::int32_t ageInDays(std::int64_t now, std::int64_t fileTime) {
  // A file system may hold any date. Ones beyond all clocks are brought near enough for a difference to be taken.
  constexpr std::int64_t kFarthest = std::int64_t{1} << 61;
  const std::int64_t days =
      (std::clamp(now, -kFarthest, kFarthest) - std::clamp(fileTime, -kFarthest, kFarthest)) / kSecondsPerDay;
  constexpr std::numeric_limits<std::int32_t> kLimits;
  return static_cast<std::int32_t>(std::clamp<std::int64_t>(days, kLimits.min(), kLimits.max()));
}

bool hasExpired(std::int32_t age, std::uint32_t daysToKeep) {
  return static_cast<std::uint32_t>(age) > daysToKeep;
}

}  // namespace kdx
