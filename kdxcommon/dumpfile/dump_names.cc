#include "kdxcommon/dumpfile/dump_names.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "kdxcommon/base/decimal_text.h"
#include "kdxcommon/dumpfile/dump_directory.h"
#include "kdxcommon/os/operating_system.h"

namespace kdx {
namespace {

struct ApplicationPrefix {
  std::uint32_t applicationType;
  string_view beginName;  // ends with a NUL
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
constexpr char kSubclientMarker[] = "_SC_";
constexpr char kItrMarker[] = "_ITR_";

bool hasIterations(const DumpSeries& series) {
  return series.jobType == ITERATION_JOB;
}

CJxString beginOfSeries(const DumpSeries& series) {
  return series.beginName + kSubclientMarker + series.scId +
         (hasIterations(series) ? kIterationMarker : kDiscoveryMarker);
}

// Returns the piece after `marker` and the character that follows it, up to the next `end`.
NamePiece pieceBehind(const CJxString& name, const char* marker, char end) {
  constexpr int kMarkerAndFollower = 4;
  NamePiece piece;
  piece.start = name.Find(marker, 0) + kMarkerAndFollower;
  piece.length = name.Find(end, piece.start) - piece.start;
  piece.text = name.SubStr(piece.start, piece.length);
  return piece;
}

// The following remove a piece from an end of `text`. They return false and leave it unchanged if it isn't there.

bool takeStart(string_view& text, string_view start) {
  if (!text.starts_with(start)) return false;
  text.remove_prefix(start.size());
  return true;
}

bool takeEnding(string_view& text, string_view ending) {
  if (!text.ends_with(ending)) return false;
  text.remove_suffix(ending.size());
  return true;
}

// A number as `std::to_chars` writes it.
template <typename Number>
bool takeNumber(string_view& text, Number& number) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc()) return false;
  const auto length = static_cast<std::size_t>(end - text.data());
  if (length > 1 && text[text.starts_with('-') ? 1 : 0] == '0') return false;
  text.remove_prefix(length);
  return true;
}

const ApplicationPrefix* prefixOf(string_view beginName) {
  for (const ApplicationPrefix& prefix : kApplicationPrefixes) {
    if (prefix.beginName == beginName) return &prefix;
  }
  return nullptr;
}

}  // namespace

std::optional<DumpName> parseDumpName(string_view text) {
  DumpName name;
  name.failed = takeEnding(text, kFailedEnding);
  if (!takeEnding(text, kDumpEnding)) return {};
  name.beginName = text.substr(0, text.find(kSubclientMarker));
  const ApplicationPrefix* const prefix = prefixOf(name.beginName);
  if (prefix == nullptr) return {};
  name.beginName = prefix->beginName;  // outlives `text`
  text.remove_prefix(name.beginName.size());
  if (!takeStart(text, kSubclientMarker) || !takeNumber(text, name.scId) || name.scId == 0) return {};
  name.jobType = takeStart(text, kDiscoveryMarker) ? DISCOVERY_JOB : ITERATION_JOB;
  if (name.jobType == ITERATION_JOB && !takeStart(text, kIterationMarker)) return {};
  if (!takeNumber(text, name.jobId) || name.jobId < 1) return {};
  if (name.jobType == ITERATION_JOB && !(takeStart(text, kItrMarker) && takeNumber(text, name.itrId))) return {};
  return text.empty() ? std::optional(name) : std::nullopt;
}

std::uint32_t applicationTypeOf(string_view beginName) {
  const ApplicationPrefix* const prefix = prefixOf(beginName);
  return prefix == nullptr ? 0 : prefix->applicationType;
}

const char* beginNameOfApplicationType(std::uint32_t applicationType) {
  for (const ApplicationPrefix& prefix : kApplicationPrefixes) {
    if (prefix.applicationType == applicationType) return prefix.beginName.data();
  }
  return nullptr;
}

bool isDumpJobType(ZQBkpLevel jobType) {
  return jobType == DISCOVERY_JOB || jobType == ITERATION_JOB;
}

CJxString dumpFileName(const DumpSeries& series, std::int64_t jobId, std::int64_t itrId) {
  CJxString name = beginOfSeries(series) + jobId;
  if (hasIterations(series)) name = name + kItrMarker + itrId;
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
  const CJxString anySubclient = beginName + kSubclientMarker + "*";
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
