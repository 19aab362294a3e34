// What stands in the directory after any mixture of dumps, limits, failures and ages.

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <set>

#include "kdxcommon/dumpfile/dump_file.h"
#include "kdxcommon/dumpfile/retention.h"
#include "kdxcommon/testing/dump_site.h"
#include "kdxcommon/testing/recording_line_sink.h"
#include "kdxcommon/testing/wide_text.h"

namespace kdx {
namespace {

constexpr std::uint32_t kSql = 602;
constexpr std::int64_t kDay = 86400;

// What a dump's name and date say.
struct ModelDump {
  std::string series;  // what the names of a subclient and job type begin with
  std::int64_t job;
  int itr;
  std::int64_t date;
};

using ModelDumps = std::map<std::string, ModelDump>;  // by name

auto isOf(const std::string& series, std::int64_t job) {
  return [&series, job](const auto& named) { return named.second.series == series && named.second.job == job; };
}

// The rules in their plainest form: two lists of dumps, and a loop for each rule.
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
  void pruneExpired(std::int64_t now, std::int64_t days) {
    pruneFailed([&](const ModelDump& dump) { return now - dump.date >= (days + 1) * kDay; });
  }
  void fail(const std::string& series, std::int64_t job) {
    for (const auto& named : dumps) {
      if (isOf(series, job)(named)) failed.insert_or_assign(named.first, named.second);
    }
    std::erase_if(dumps, isOf(series, job));
  }

 private:
  // One failed dump that goes takes all of its job along, those of other subclients too.
  void pruneFailed(const auto& goes) {
    std::set<std::int64_t> jobs;
    for (const auto& [name, dump] : failed) {
      if (goes(dump)) jobs.insert(dump.job);
    }
    std::erase_if(failed, [&](const auto& named) { return jobs.contains(named.second.job); });
  }
};

struct CountingClock : testing::FixedClock {
  std::unique_ptr<os::DirectoryStream> opendir(const char* path) override {
    ++readings;
    return FixedClock::opendir(path);
  }
  int readings = 0;
};

TEST(DumpRetention, KeepsTheRulesOnAnyMixture) {
  const testing::ScopedLog errors(-1);
  testing::DumpSite site;
  CountingClock clock;
  const os::ScopedOperatingSystem scope(clock);
  const std::set<std::string> foreign = {"KDXSQLDump", "KDXExchDump_SC_1_JOB_1_ITR_0.txt", "notes.txt",
                                         "KDXSQLDump_SC_1_JOB_9_ITR_0.txt.bak"};
  for (const std::string& name : foreign) site.directory.write(name);
  for (const std::uint32_t id : {1u, 2u, 12u}) site.add(kSql, id);

  std::mt19937 random(20260101);
  const auto pick = [&](auto... values) {
    const std::int64_t choices[] = {values...};
    return choices[random() % std::size(choices)];
  };
  Model model;
  std::int64_t limit = 1;
  std::int64_t days = 30;
  for (int step = 0; step < 2000; ++step) {
    SCOPED_TRACE(step);
    if (random() % 6 == 0) site.setLimit(static_cast<std::uint32_t>(limit = pick(0, 1, 1, 2, 3, 5, 8, 20)));
    if (random() % 6 == 0) site.setDays(static_cast<std::uint32_t>(days = pick(0, 1, 5, 30)));
    if (random() % 6 == 0) clock.now += pick(1, kDay - 1, kDay, 3 * kDay, 40 * kDay);

    const auto subclient = static_cast<std::uint32_t>(pick(1, 2, 12));
    const std::int64_t job = pick(1, 2, 8, 9, 10, 11, 12, 100, 3'000'000'000);
    const int itr = static_cast<int>(pick(-1, 0, 1, 2, 10));
    const bool discovery = random() % 3 == 0;
    const std::string series = "KDXSQLDump_SC_" + std::to_string(subclient) + (discovery ? "_DISCOVERY_JOB_" : "_JOB_");
    const std::string end = discovery ? ".txt" : "_ITR_" + std::to_string(itr) + ".txt";
    CDumpFile dump(discovery ? DISCOVERY_JOB : ITERATION_JOB, kSql, subclient, job, itr);
    clock.readings = 0;
    switch (random() % 10) {
      case 0:
        ASSERT_TRUE(dump.pruneDumpXMLBlob());
        model.prune(series, job, limit);
        break;
      case 1:
        ASSERT_TRUE(dump.pruneFailedDumpXMLBlob());
        model.pruneOthersFailed(series, job);
        break;
      case 2:
        ASSERT_TRUE(dump.pruneTimeExceededFailedDumpFiles());
        model.pruneExpired(clock.now, days);
        break;
      case 3:
      case 4:
        ASSERT_TRUE(dump.markAsFailed());
        model.pruneOthersFailed(series, job);
        model.pruneExpired(clock.now, days);
        model.fail(series, job);
        break;
      default:
        ASSERT_TRUE(dump.dumpXMLBlob(testing::wide(u"<a/>")));
        model.prune(series, job, limit);
        model.pruneExpired(clock.now, days);
        if (limit == 0) break;
        clock.date(dump.getFullName(), clock.now);
        model.dumps[series + std::to_string(job) + end] = {series, job, discovery ? 0 : itr, clock.now};
    }
    ASSERT_EQ(clock.readings, 1);
    ASSERT_EQ(errors->take(), std::vector<testing::LoggedLine>());

    std::set<std::string> expected = foreign;
    std::map<int, CJxString> expectedOfJob;
    for (const auto& [name, other] : model.failed) expected.insert(name + ".failed");
    for (const auto& [name, other] : model.dumps) {
      expected.insert(name);
      if (other.series == series && other.job == job) expectedOfJob[other.itr] = name.c_str();
    }
    ASSERT_EQ(site.names(), expected);
    std::map<int, CJxString> ofJob;
    std::int64_t last = 0;
    ASSERT_TRUE(dump.getAllXmlDumpFilesCreated(ofJob) && dump.getLastItrIdUsedForDumping(last));
    ASSERT_TRUE(ofJob == expectedOfJob);
    ASSERT_EQ(last, ofJob.empty() ? -1 : ofJob.rbegin()->first);
  }
}

TEST(DumpRetention, TakesAFileDatedADayAheadOfTheClockForTooOld) {
  EXPECT_EQ(ageInDays(kDay, 2 * kDay - 1), 0);
  EXPECT_TRUE(hasExpired(ageInDays(kDay, 2 * kDay), 30));
  EXPECT_EQ(ageInDays(kDay << 32, 0), INT32_MAX);
  EXPECT_EQ(ageInDays(1, INT64_MAX), INT32_MIN);
}

}  // namespace
}  // namespace kdx
