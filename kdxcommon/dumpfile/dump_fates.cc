// What the rules do to each file, in words.

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

#include "kdxcommon/dumpfile/pruning.h"
#include "kdxcommon/dumpfile/retention.h"
#include "kdxcommon/inhouse/jxutils/wildcard.h"

namespace kdx {
namespace {

constexpr char kNoDumpName[] = "not named as a dump";

std::int64_t jobOf(const CJxString& name) {
  return decimalNumber(jobIdInFileName(name).text);
}

string jobText(std::int64_t job) {
  return "job " + std::to_string(job);
}

string daysText(std::int64_t days) {
  return std::to_string(days) + (days == 1 ? " day" : " days");
}

string ageText(std::int32_t age) {
  return age < 0 ? "dated " + daysText(-std::int64_t{age}) + " ahead of the clock" : daysText(age) + " old";
}

string ordinal(std::size_t rank) {
  constexpr const char* kEndings[] = {"th", "st", "nd", "rd"};
  const bool regular = rank / 10 % 10 == 1 || rank % 10 > 3;
  return std::to_string(rank) + kEndings[regular ? 0 : rank % 10];
}

class Explanation {
 public:
  Explanation(const Pruning& pruning, const PruningSituation& situation);
  DumpFate fateOf(std::size_t position) const;

 private:
  struct Chosen {
    const PruningPlan* plan;
    std::size_t pattern;
  };

  void note(const PruningPlan& plan);
  bool isExpired(std::int32_t age) const { return hasExpired(age, situation_.daysToKeep); }
  DumpFate fateOfMarked(const MarkedDump& dump, string_view name) const;
  string whyItGoes(const Chosen& chosen, string_view name) const;
  string whyItExpires(std::int64_t job, string_view name) const;
  string whyItStays(string_view name) const;
  string whyTheLimitKeeps(string_view name) const;

  const Pruning& pruning_;
  const PruningSituation& situation_;
  const Wildcard ofSeries_;
  std::unordered_map<std::size_t, Chosen> chosen_;  // by position
  std::unordered_set<std::int64_t> jobsOverLimit_;
  std::unordered_map<string_view, std::int32_t> ages_;
  std::unordered_map<std::int64_t, std::int32_t> expiredJobs_;  // each with the age of an expired dump
  std::unordered_map<string, const MarkedDump*> marked_;        // by the names before and after
};

Explanation::Explanation(const Pruning& pruning, const PruningSituation& situation)
    : pruning_(pruning), situation_(situation), ofSeries_(string_view(patternOfAllJobs(situation.series))) {
  for (const PruningPlan& plan : pruning.plans) note(plan);
  for (const FileAge& file : pruning.ages) {
    ages_[string_view(file.name)] = file.days;
    if (isExpired(file.days)) expiredJobs_.try_emplace(jobOf(file.name), file.days);
  }
  for (const MarkedDump& dump : pruning.marked) {
    marked_[dump.name.c_str()] = &dump;
    marked_[failedNameOf(dump.name).c_str()] = &dump;
  }
}

void Explanation::note(const PruningPlan& plan) {
  for (const DirectoryReading::Choice& choice : plan.choices) chosen_[choice.position] = {&plan, choice.pattern};
  if (plan.rule != DumpRule::kLimit) return;
  for (const CJxString& pattern : plan.patterns) {
    for (const std::int64_t job : jobIdsIn(string_view(pattern))) jobsOverLimit_.insert(job);
  }
}

DumpFate Explanation::fateOf(std::size_t position) const {
  const string_view name = pruning_.reading.name(position);
  if (const auto chosen = chosen_.find(position); chosen != chosen_.end()) {
    const string reason = whyItGoes(chosen->second, name);
    if (pruning_.reading.isDeleted(position)) return {string(name), DumpFate::kGoes, reason};
    return {string(name), DumpFate::kRefused, "can't be deleted: " + reason};
  }
  if (const auto marked = marked_.find(string(name)); marked != marked_.end()) {
    return fateOfMarked(*marked->second, name);
  }
  return {string(name), DumpFate::kStays, whyItStays(name)};
}

// `name` is the dump's, or that of an older failed dump in its place.
DumpFate Explanation::fateOfMarked(const MarkedDump& dump, string_view name) const {
  if (isFailedName(name)) {
    if (dump.replaces) return {string(name), DumpFate::kGoes, "replaced by the dump that is marked"};
    return {string(name), DumpFate::kRefused, "can't be replaced by the dump that is marked"};
  }
  if (dump.renamed) return {string(name), DumpFate::kMarked, "renamed, with .failed at its end"};
  return {string(name), DumpFate::kRefused, "can't be renamed"};
}

string Explanation::whyItGoes(const Chosen& chosen, string_view name) const {
  const std::vector<CJxString>& patterns = chosen.plan->patterns;
  const std::vector<std::int64_t> jobs = jobIdsIn(string_view(patterns[chosen.pattern]));
  if (jobs.empty()) return "a limit of 0 keeps no dump";
  if (chosen.plan->rule == DumpRule::kAge) return whyItExpires(jobs.front(), name);
  if (chosen.plan->rule == DumpRule::kOtherFailedJobs) return "only the failed dumps of the marked job are kept";
  const string rank = chosen.pattern == 0 ? "" : ordinal(chosen.pattern + 1) + ' ';
  const string others =
      patterns.size() == 1 ? " and must go" : " of " + std::to_string(patterns.size()) + " that must go";
  return jobText(jobs.front()) + " is the " + rank + "lowest" + others;
}

string Explanation::whyItExpires(std::int64_t job, string_view name) const {
  if (const auto age = ages_.find(name); age != ages_.end() && isExpired(age->second)) {
    return ageText(age->second) + ", with its job";
  }
  return jobText(job) + " has a failed dump " + ageText(expiredJobs_.at(job));
}

string Explanation::whyItStays(string_view name) const {
  if (const auto age = ages_.find(name); age != ages_.end()) {
    if (isExpired(age->second)) return kNoDumpName;  // no pattern of its job matches
    return ageText(age->second) + ", kept for " + daysText(situation_.daysToKeep);
  }
  if (!parseDumpName(name) && !ofSeries_.matches(name)) return kNoDumpName;
  if (situation_.marks) return "not a dump of " + jobText(situation_.jobId);
  return whyTheLimitKeeps(name);
}

string Explanation::whyTheLimitKeeps(string_view name) const {
  if (!ofSeries_.matches(name)) return "of another subclient or job type";
  const std::int64_t job = jobOf(string(name).c_str());
  if (job == situation_.jobId) return "the running job's";
  if (jobsOverLimit_.contains(job)) return "counted for " + jobText(job) + ", but not named as its dump";
  return "within the limit of " + std::to_string(situation_.limit) + (situation_.limit == 1 ? " dump" : " dumps");
}

}  // namespace

std::vector<DumpFate> fatesOf(const Pruning& pruning, const PruningSituation& situation) {
  const Explanation explanation(pruning, situation);
  std::vector<DumpFate> fates;
  fates.reserve(pruning.reading.count());
  for (std::size_t position = 0; position < pruning.reading.count(); ++position) {
    fates.push_back(explanation.fateOf(position));
  }
  return fates;
}

}  // namespace kdx
