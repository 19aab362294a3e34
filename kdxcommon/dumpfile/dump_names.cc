#include "kdxcommon/dumpfile/dump_names.h"

#include <utility>

#include "kdxcommon/base/decimal_text.h"
#include "kdxcommon/os/operating_system.h"

namespace kdx {
namespace {

struct ApplicationPrefix {
  std::uint32_t applicationType;
  const char* beginName;
};

constexpr ApplicationPrefix kApplicationPrefixes[] = {
    {11, "KDXWinFSDump"},  {33, "KDXWinFSDump"}, {34, "KDXWinFSDump"}, {42, "KDXWinFSDump"}, {43, "KDXWinFSDump"},
    {600, "KDXWinFSDump"}, {13, "KDXNASDump"},   {603, "KDXNASDump"},  {17, "KDXUxFSDump"},  {19, "KDXUxFSDump"},
    {21, "KDXUxFSDump"},   {29, "KDXUxFSDump"},  {605, "KDXUxFSDump"}, {53, "KDXExchDump"},  {606, "KDXExchDump"},
    {601, "KDXOraDump"},   {602, "KDXSQLDump"},  {604, "KDXNETWDump"}, {607, "KDXSPDump"},
};

constexpr char kDumpEnding[] = ".txt";
constexpr char kFailedEnding[] = ".failed";
constexpr char kDiscoveryMarker[] = "_DISCOVERY_JOB_";
constexpr char kIterationMarker[] = "_JOB_";

bool hasIterations(const DumpSeries& series) {
  return series.jobType == ITERATION_JOB;
}

CJxString beginOfSeries(const DumpSeries& series) {
  return series.beginName + "_SC_" + series.scId + (hasIterations(series) ? kIterationMarker : kDiscoveryMarker);
}

// The piece behind `marker` and the character that follows it, up to the next `end`.
NamePiece pieceBehind(const CJxString& name, const char* marker, char end) {
  constexpr int kMarkerAndFollower = 4;
  NamePiece piece;
  piece.start = name.Find(marker, 0) + kMarkerAndFollower;
  piece.length = name.Find(end, piece.start) - piece.start;
  piece.text = name.SubStr(piece.start, piece.length);
  return piece;
}

}  // namespace

const char* beginNameOfApplicationType(std::uint32_t applicationType) {
  for (const ApplicationPrefix& prefix : kApplicationPrefixes) {
    if (prefix.applicationType == applicationType) return prefix.beginName;
  }
  return nullptr;
}

bool isDumpJobType(ZQBkpLevel jobType) {
  return jobType == DISCOVERY_JOB || jobType == ITERATION_JOB;
}

CJxString dumpFileName(const DumpSeries& series, std::int64_t jobId, std::int64_t itrId) {
  CJxString name = beginOfSeries(series) + jobId;
  if (hasIterations(series)) name = name + "_ITR_" + itrId;
  return name + kDumpEnding;
}

CJxString patternOfPrefix(const CJxString& beginName) {
  return beginName + "_*";
}

CJxString patternOfAllJobs(const DumpSeries& series) {
  return beginOfSeries(series) + (hasIterations(series) ? "*_*" : "*") + kDumpEnding;
}

CJxString patternOfJob(const DumpSeries& series, std::int64_t jobId) {
  return beginOfSeries(series) + jobId + (hasIterations(series) ? "_*" : "") + kDumpEnding;
}

CJxString patternOfEveryDump(const CJxString& beginName) {
  return patternOfPrefix(beginName) + kDumpEnding;
}

CJxString patternOfEveryFailedDump(const CJxString& beginName) {
  return failedNameOf(patternOfPrefix(beginName));
}

std::array<CJxString, 2> patternsOfFailedJob(const CJxString& beginName, std::int64_t jobId) {
  const CJxString anySubclient = beginName + "_SC_*";
  return {failedNameOf(anySubclient + kDiscoveryMarker + jobId + kDumpEnding),
          failedNameOf(anySubclient + kIterationMarker + jobId + "_*" + kDumpEnding)};
}

CJxString failedNameOf(CJxString nameOrPattern) {
  return std::move(nameOrPattern) + kFailedEnding;
}

bool isFailedName(string_view nameOrPattern) {
  return nameOrPattern.ends_with(kFailedEnding);
}

NamePiece jobIdInFileName(const CJxString& name) {
  const bool discovery = name.Find("DISCOVERY", 0) > 0;
  return pieceBehind(name, "JOB", discovery ? '.' : '_');
}

NamePiece itrIdInFileName(const CJxString& name) {
  return pieceBehind(name, "ITR", '.');
}

std::vector<std::int64_t> jobIdsIn(string_view nameOrPattern) {
  constexpr string_view kMarker = "JOB_";
  std::vector<std::int64_t> jobIds;
  for (std::size_t at = 0; (at = nameOrPattern.find(kMarker, at)) != string_view::npos;) {
    at += kMarker.size();
    jobIds.push_back(decimalSigned64(nameOrPattern.substr(at)));
  }
  return jobIds;
}

std::int64_t decimalNumber(const CJxString& text) {
  return decimalSigned64(string_view(text.c_str()));
}

CJxString joinPath(const CJxString& directory, const char* name) {
  return directory + os::pathSeparator() + name;
}

}  // namespace kdx
