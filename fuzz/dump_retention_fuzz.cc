// Any mixture of dumps, limits, failures and ages: the directory must contain what a model leaves, and each operation
// must read the directory once. What is explained beforehand is what then happens.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "kdxcommon/dumpfile/dump_directory.h"
#include "kdxcommon/dumpfile/dump_file.h"
#include "kdxcommon/testing/dump_site.h"
#include "kdxcommon/testing/recording_line_sink.h"
#include "kdxcommon/testing/wide_text.h"

namespace {

constexpr std::uint32_t kSql = 602;
constexpr std::int64_t kDay = 86400;

// What a dump's name and date state.
struct ModelDump {
  std::string series;  // prefix of the names of a subclient and job type
  std::int64_t job;
  int itr;
  std::int64_t date;
};

using ModelDumps = std::map<std::string, ModelDump>;  // by name

auto isOf(const std::string& series, std::int64_t job) {
  return [&series, job](const auto& named) { return named.second.series == series && named.second.job == job; };
}

// The rules in their simplest form: two lists of dumps, and a loop for each rule.
struct Model {
  ModelDumps dumps;
  ModelDumps failed;  // their names without ".failed"

  void prune(const std::string& series, std::int64_t running, std::int64_t limit) {
    const auto isOfSeries = [&](const auto& named) { return named.second.series == series; };
    const auto present = [&] { return std::count_if(dumps.begin(), dumps.end(), isOfSeries); };
    if (present() == 0) return;
    if (limit == 0) return dumps.clear();
    std::set<std::int64_t> others;
    for (const auto& [name, dump] : dumps) {
      if (dump.series == series && dump.job != running) others.insert(dump.job);
    }
    for (const std::int64_t job : others) {
      if (present() >= limit) std::erase_if(dumps, isOf(series, job));
    }
  }
  void pruneOthersFailed(const std::string& series, std::int64_t job) {
    pruneFailed([&](const ModelDump& dump) { return dump.series == series && dump.job != job; });
  }
  // A dump dated a day or more after the clock is expired, too.
  void pruneExpired(std::int64_t now, std::int64_t days) {
    pruneFailed([&](const ModelDump& dump) { return now - dump.date >= (days + 1) * kDay || dump.date - now >= kDay; });
  }
  void fail(const std::string& series, std::int64_t job) {
    for (const auto& named : dumps) {
      if (isOf(series, job)(named)) failed.insert_or_assign(named.first, named.second);
    }
    std::erase_if(dumps, isOf(series, job));
  }

 private:
  // Removing one failed dump removes all of its job's, those of other subclients included.
  void pruneFailed(const auto& goes) {
    std::set<std::int64_t> jobs;
    for (const auto& [name, dump] : failed) {
      if (goes(dump)) jobs.insert(dump.job);
    }
    std::erase_if(failed, [&](const auto& named) { return jobs.contains(named.second.job); });
  }
};

struct CountingClock : kdx::testing::FixedClock {
  std::unique_ptr<kdx::os::DirectoryStream> opendir(const char* path) override {
    ++readings;
    return FixedClock::opendir(path);
  }
  int readings = 0;
};

// The input, a byte for each choice.
class Choices {
 public:
  Choices(const std::uint8_t* data, std::size_t size) : next_(data), end_(data + size) {}
  bool any() const { return next_ != end_; }
  int below(int count) { return any() ? *next_++ % count : 0; }
  std::int64_t among(auto... values) {
    const std::int64_t choices[] = {values...};
    return choices[below(sizeof...(values))];
  }

 private:
  const std::uint8_t* next_;
  const std::uint8_t* end_;
};

class Site {
 public:
  Site() {
    for (const std::string& name : foreign_) site_.directory.write(name);
    for (const std::uint32_t id : {1u, 2u, 12u}) site_.add(kSql, id);
  }

  void configure(Choices& choices) {
    if (choices.below(6) == 0) site_.setLimit(static_cast<std::uint32_t>(limit_ = choices.among(0, 1, 2, 3, 5, 8, 20)));
    if (choices.below(6) == 0) site_.setDays(static_cast<std::uint32_t>(days_ = choices.among(0, 1, 5, 30)));
    if (choices.below(6) == 0) clock_.now += choices.among(1, kDay - 1, kDay, 3 * kDay, 40 * kDay, 1 - kDay, -kDay);
  }

  void operate(Choices& choices) {
    const auto subclient = static_cast<std::uint32_t>(choices.among(1, 2, 12));
    const std::int64_t job = choices.among(1, 2, 8, 9, 10, 11, 12, 100, 3'000'000'000);
    const int itr = static_cast<int>(choices.among(-1, 0, 1, 2, 10));
    const bool discovery = choices.below(3) == 0;
    const std::string series = "KDXSQLDump_SC_" + std::to_string(subclient) + (discovery ? "_DISCOVERY_JOB_" : "_JOB_");
    const std::string end = discovery ? ".txt" : "_ITR_" + std::to_string(itr) + ".txt";
    kdx::CDumpFile dump(discovery ? kdx::DISCOVERY_JOB : kdx::ITERATION_JOB, kSql, subclient, job, itr);
    const int operation = choices.below(10);
    std::vector<kdx::DumpFate> fates;
    if (operation >= 3) {
      require(operation < 5 ? dump.explainMarkAsFailed(fates) : dump.explainDumpXMLBlob(fates), "an explanation");
    }
    clock_.readings = 0;
    switch (operation) {
      case 0:
        require(dump.pruneDumpXMLBlob(), "pruneDumpXMLBlob");
        model_.prune(series, job, limit_);
        break;
      case 1:
        require(dump.pruneFailedDumpXMLBlob(), "pruneFailedDumpXMLBlob");
        model_.pruneOthersFailed(series, job);
        break;
      case 2:
        require(dump.pruneTimeExceededFailedDumpFiles(), "pruneTimeExceededFailedDumpFiles");
        model_.pruneExpired(clock_.now, days_);
        break;
      case 3:
      case 4:
        require(dump.markAsFailed(), "markAsFailed");
        model_.pruneOthersFailed(series, job);
        model_.pruneExpired(clock_.now, days_);
        model_.fail(series, job);
        break;
      default:
        require(dump.dumpXMLBlob(kdx::testing::wide(u"<a/>")), "dumpXMLBlob");
        model_.prune(series, job, limit_);
        model_.pruneExpired(clock_.now, days_);
        if (limit_ == 0) break;
        clock_.date(dump.getFullName(), clock_.now);
        model_.dumps[series + std::to_string(job) + end] = {series, job, discovery ? 0 : itr, clock_.now};
    }
    require(clock_.readings == 1, "the directory is read once");
    require(errors_->take().empty(), "no error is logged");
    compare();
    compareFates(fates, dump.GetName());
    compareJob(dump, series, job);
    ++steps_;
  }

 private:
  void require(bool holds, const char* what) const {
    if (holds) return;
    std::fprintf(stderr, "step %d: %s\n", steps_, what);
    std::abort();
  }

  void compare() const {
    std::set<std::string> expected = foreign_;
    for (const auto& [name, dump] : model_.failed) expected.insert(name + ".failed");
    for (const auto& [name, dump] : model_.dumps) expected.insert(name);
    require(site_.names() == expected, "what stands in the directory");
  }

  // A file that goes may have a successor of its name: a new dump, or one that is marked.
  void compareFates(const std::vector<kdx::DumpFate>& fates, const std::string& written) const {
    const std::set<std::string> names = site_.names();
    std::set<std::string> created = {written};
    for (const kdx::DumpFate& fate : fates) {
      if (fate.kind == kdx::DumpFate::kMarked) created.insert(fate.name + ".failed");
    }
    for (const kdx::DumpFate& fate : fates) {
      const bool stays = fate.kind == kdx::DumpFate::kStays;
      require(names.contains(fate.name) == stays || created.contains(fate.name), "what was explained");
    }
  }

  void compareJob(kdx::CDumpFile& dump, const std::string& series, std::int64_t job) const {
    std::map<int, kdx::CJxString> expected, found;
    for (const auto& [name, other] : model_.dumps) {
      if (other.series == series && other.job == job) expected[other.itr] = name.c_str();
    }
    std::int64_t last = 0;
    require(dump.getAllXmlDumpFilesCreated(found) && found == expected, "getAllXmlDumpFilesCreated");
    require(dump.getLastItrIdUsedForDumping(last), "getLastItrIdUsedForDumping");
    require(last == (expected.empty() ? -1 : expected.rbegin()->first), "the last iteration");
  }

  const std::set<std::string> foreign_ = {"KDXSQLDump", "KDXExchDump_SC_1_JOB_1_ITR_0.txt", "notes.txt",
                                          "KDXSQLDump_SC_1_JOB_9_ITR_0.txt.bak"};
  kdx::testing::ScopedLog errors_{-1};
  kdx::testing::DumpSite site_;
  CountingClock clock_;
  kdx::os::ScopedOperatingSystem scope_{clock_};
  Model model_;
  std::int64_t limit_ = 1;
  std::int64_t days_ = 30;
  int steps_ = 0;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Choices choices(data, size);
  Site site;
  while (choices.any()) {
    site.configure(choices);
    site.operate(choices);
  }
  return 0;
}
