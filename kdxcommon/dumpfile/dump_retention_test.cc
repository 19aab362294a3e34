// What stands in the directory after any mixture of dumps, limits, failures and ages, and after faults of the system.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <random>
#include <set>
#include <string_view>

#include "kdxcommon/dumpfile/dump_file.h"
#include "kdxcommon/dumpfile/retention.h"
#include "kdxcommon/testing/dump_site.h"
#include "kdxcommon/testing/recording_line_sink.h"
#include "kdxcommon/testing/wide_text.h"

namespace kdx {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsSupersetOf;
using testing::ScopedLog;
using testing::wide;

constexpr std::uint32_t kSql = 602;
constexpr std::int64_t kDay = 86400;

// One dump in the model: what its name says, and its date.
struct ModelFile {
  std::string series;  // what the names of a subclient and job type have in common
  std::int64_t job;
  std::string end;
  bool failed;
  std::int64_t date;

  std::string name() const { return series + std::to_string(job) + end + (failed ? ".failed" : ""); }
};

// The rules in their plainest form: a list of files, and a loop for each rule.
struct Model {
  std::vector<ModelFile> files;

  void prune(const std::string& series, std::int64_t currentJob, std::int64_t limit) {
    const auto isDump = [&](const ModelFile& file) { return !file.failed && file.series == series; };
    if (std::none_of(files.begin(), files.end(), isDump)) return;
    if (limit == 0) std::erase_if(files, [](const ModelFile& file) { return !file.failed; });
    while (limit > 0 && std::count_if(files.begin(), files.end(), isDump) >= limit) {
      std::set<std::int64_t> others;
      for (const ModelFile& file : files) {
        if (isDump(file) && file.job != currentJob) others.insert(file.job);
      }
      if (others.empty()) return;
      std::erase_if(files, [&](const ModelFile& file) { return isDump(file) && file.job == *others.begin(); });
    }
  }
  void pruneOtherFailed(const std::string& series, std::int64_t job) {
    std::erase_if(files,
                  [&](const ModelFile& file) { return file.failed && file.series == series && file.job != job; });
  }
  void pruneExpired(std::int64_t now, std::int64_t days) {
    std::set<std::int64_t> jobs;
    for (const ModelFile& file : files) {
      if (file.failed && now - file.date >= (days + 1) * kDay) jobs.insert(file.job);
    }
    std::erase_if(files, [&](const ModelFile& file) { return file.failed && jobs.contains(file.job); });
  }
  void put(const ModelFile& file) {
    std::erase_if(files, [&](const ModelFile& other) { return other.name() == file.name(); });
    files.push_back(file);
  }
  void markFailed(const std::string& series, std::int64_t job) {
    for (ModelFile file : std::vector(files)) {
      if (file.failed || file.series != series || file.job != job) continue;
      std::erase_if(files, [&](const ModelFile& other) { return other.name() == file.name(); });
      file.failed = true;
      put(file);
    }
  }
};

TEST(DumpRetention, KeepsTheRulesOnAnyMixture) {
  const ScopedLog silent(-2);
  testing::DumpSite site;
  testing::FixedClock clock;
  const ScopedOperatingSystem scope(clock);
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
  for (int step = 0; step < 3000; ++step) {
    const auto subclient = static_cast<std::uint32_t>(pick(1, 2, 12));
    const ZQBkpLevel type = random() % 3 == 0 ? DISCOVERY_JOB : ITERATION_JOB;
    const std::int64_t job = pick(1, 2, 8, 9, 10, 11, 12, 100, 3'000'000'000);
    const std::int64_t itr = pick(-1, 0, 1, 2, 10);
    const std::string series =
        "KDXSQLDump_SC_" + std::to_string(subclient) + (type == DISCOVERY_JOB ? "_DISCOVERY_JOB_" : "_JOB_");
    CDumpFile dump(type, kSql, subclient, job, itr);
    switch (random() % 8) {
      case 0:
        site.setLimit(static_cast<std::uint32_t>(limit = pick(0, 1, 1, 2, 3, 5, 8, 20)));
        break;
      case 1:
        site.setDays(static_cast<std::uint32_t>(days = pick(0, 1, 5, 30)));
        break;
      case 2:
        clock.now += pick(1, kDay - 1, kDay, 3 * kDay, 40 * kDay);
        break;
      case 3:
        ASSERT_TRUE(dump.markAsFailed());
        model.pruneOtherFailed(series, job);
        model.pruneExpired(clock.now, days);
        model.markFailed(series, job);
        break;
      default:
        ASSERT_TRUE(dump.dumpXMLBlob(wide(u"<a/>")));
        model.prune(series, job, limit);
        model.pruneExpired(clock.now, days);
        if (limit == 0) break;
        clock.date(dump.getFullName(), clock.now);
        model.put(
            {series, job, (type == DISCOVERY_JOB ? "" : "_ITR_" + std::to_string(itr)) + ".txt", false, clock.now});
    }
    std::set<std::string> expected = foreign;
    for (const ModelFile& file : model.files) expected.insert(file.name());
    ASSERT_EQ(site.names(), expected) << "step " << step;
  }
}

TEST(DumpRetention, CountsAgesInWholeDays) {
  const struct {
    std::int64_t seconds;
    std::int32_t age;
    bool expiredAfter30;
  } rows[] = {
      {kDay - 1, 0, false},  {31 * kDay - 1, 30, false},
      {31 * kDay, 31, true}, {1 - kDay, 0, false},  // dated ahead of the clock by less than a day
      {-kDay, -1, true},     {(std::int64_t{1} << 32) * kDay, INT32_MAX, true},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(ageInDays(1'000'000'000, 1'000'000'000 - row.seconds), row.age);
    EXPECT_EQ(hasExpired(row.age, 30), row.expiredAfter30) << row.seconds;
  }
  EXPECT_EQ(ageInDays(1, INT64_MAX), INT32_MIN);
}

// The machine's own system, less what a test takes away.
class FaultySystem : public OperatingSystemWrapper {
 public:
  int remove(const char* path) override {
    return std::string_view(path).ends_with(undeletable) ? -1 : OperatingSystemWrapper::remove(path);
  }
  int _stat64(const char* path, FileTimes& times) override {
    return timesUnreadable ? -1 : OperatingSystemWrapper::_stat64(path, times);
  }
  int _close(int descriptor) override {
    const int closed = OperatingSystemWrapper::_close(descriptor);
    return closeFails ? -1 : closed;
  }
  int rename(const char* from, const char* to) override {
    return renameFails ? -1 : OperatingSystemWrapper::rename(from, to);
  }
  std::unique_ptr<DirectoryStream> opendir(const char* path) override {
    auto stream = OperatingSystemWrapper::opendir(path);
    if (!listingFails || !stream) return stream;
    return std::make_unique<BrokenStream>(std::move(stream));
  }
  std::uint32_t GetLastError() override { return 5; }

  std::string undeletable = "\n";
  bool timesUnreadable = false;
  bool closeFails = false;
  bool renameFails = false;
  bool listingFails = false;

 private:
  // Gives names until the first regular file has been given, then fails.
  class BrokenStream : public DirectoryStream {
   public:
    explicit BrokenStream(std::unique_ptr<DirectoryStream> stream) : stream_(std::move(stream)) {}
    int readdir(DirectoryEntry& entry) override {
      if (broken_) return -1;
      const int result = stream_->readdir(entry);
      broken_ = entry.regularFile;
      return result;
    }

   private:
    std::unique_ptr<DirectoryStream> stream_;
    bool broken_ = false;
  };
};

class DumpFaultsTest : public ::testing::Test {
 protected:
  DumpFaultsTest() { site_.add(kSql, 7); }

  std::string path(const std::string& name) const { return site_.directory.path(name); }
  std::string add(const char* jobAndEnding) {
    const std::string name = "KDXSQLDump_SC_7_JOB_" + std::string(jobAndEnding);
    site_.directory.write(name, "<old/>");
    return name;
  }

  testing::DumpSite site_;
  FaultySystem system_;
  ScopedOperatingSystem scope_{system_};
  ScopedLog log_{-1};
};

TEST_F(DumpFaultsTest, AFullDiskIsToldInTheLogAndKeepsWhatTheRulesKeep) {
  if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "this system has no device that is always full";
  site_.setLimit(3);
  const std::string kept = add("4_ITR_0.txt");
  std::filesystem::create_symlink("/dev/full", path("KDXSQLDump_SC_7_JOB_5_ITR_0.txt"));
  EmbeddedSite::current().setDebugLevel(2);
  system_.closeFails = true;
  EXPECT_TRUE(CDumpFile(ITERATION_JOB, kSql, 7, 5, 0).dumpXMLBlob(wide(u"<a/>")));
  const std::string full = path("KDXSQLDump_SC_7_JOB_5_ITR_0.txt");
  EXPECT_THAT(log_->takeTexts(2),
              IsSupersetOf({"Failed to write dump to file [" + full + "]", std::string("Bytes written :: [0]"),
                            "Error Closing file [" + full + "]", std::string("Exit")}));
  EXPECT_THAT(site_.names(), Contains(kept));
}

TEST_F(DumpFaultsTest, ADirectoryThatIsNoneGivesFalse) {
  const std::string gone = path("gone");
  const std::string file = site_.directory.write("file");
  for (const std::string& directory : {gone, file}) {
    CDumpFile dump(ITERATION_JOB, kSql, 7, 5, 0, directory.c_str());
    EXPECT_FALSE(dump.dumpXMLBlob(wide(u"<a/>")));
    const auto listing = [&](const std::string& pattern) {
      return std::vector<std::string>{"Error Opening file [" + directory + "]\\[" + pattern + "], ErrorCode :: [5] ",
                                      "Error getting files [" + pattern + "] in [" + directory + "]"};
    };
    std::vector<std::string> expected = listing("KDXSQLDump_SC_7_JOB_*_*.txt");
    for (const std::string& line : listing("KDXSQLDump_*.failed")) expected.push_back(line);
    expected.push_back("Error Opening File [" + dump.getFullName() + "]");
    EXPECT_EQ(log_->takeTexts(-1), expected);
    EXPECT_FALSE(dump.markAsFailed());
    EXPECT_TRUE(CDumpFile::delFilesOfPattern(directory.c_str(), "*").IsErrorSet());
    log_->take();
  }
}

TEST_F(DumpFaultsTest, AListingThatFailsHalfWayDeletesNothing) {
  const std::set<std::string> names = {add("1_ITR_0.txt"), add("2_ITR_0.txt"), add("3_ITR_0.txt.failed")};
  system_.listingFails = true;
  CDumpFile dump(ITERATION_JOB, kSql, 7, 5, 0);
  EXPECT_FALSE(dump.pruneDumpXMLBlob());
  EXPECT_FALSE(dump.markAsFailed());
  EXPECT_EQ(site_.names(), names);
  log_->take();
  std::vector<CJxString> files;
  EXPECT_EQ(CDumpFile::getFilesOfPattern(site_.directory.path().c_str(), "*", files).GetErrorCode(), 5u);
  ASSERT_EQ(files.size(), 1u);
  EXPECT_THAT(log_->takeTexts(-1),
              ElementsAre("Error getting a File. Error [5], Current Entry [" + std::string(files[0].c_str()) + "]"));
  EXPECT_EQ(CDumpFile::delFilesOfPattern(site_.directory.path().c_str(), "*").GetErrorCode(), 5u);
  EXPECT_THAT(log_->takeTexts(-1), ElementsAre("Error Happened in GetEntry()"));
  EXPECT_EQ(site_.names().size(), 2u);
}

TEST_F(DumpFaultsTest, AFileThatCannotBeDeletedDoesNotStopTheOthers) {
  const std::string stays = add("2_ITR_0.txt");
  add("1_ITR_0.txt");
  add("3_ITR_0.txt");
  system_.undeletable = stays;
  EXPECT_TRUE(CDumpFile(ITERATION_JOB, kSql, 7, 5, 0).pruneDumpXMLBlob());
  EXPECT_THAT(site_.names(), ElementsAre(stays));
  EXPECT_THAT(log_->takeTexts(-1), ElementsAre("File [" + path(stays) + "] is Not Deleted, ERROR = [5]"));
}

TEST_F(DumpFaultsTest, AFailedDumpStaysWhereItsAgeOrItsNameCannotBeHad) {
  site_.setDays(0);
  const std::string old = add("2_ITR_0.txt.failed");
  testing::FixedClock clock;
  clock.date(path(old), 1'000);
  system_.timesUnreadable = true;
  CDumpFile dump(ITERATION_JOB, kSql, 7, 5, 0);
  EXPECT_TRUE(dump.pruneTimeExceededFailedDumpFiles());
  EXPECT_THAT(site_.names(), ElementsAre(old));

  const std::string own = add("5_ITR_0.txt");
  system_.renameFails = true;
  EXPECT_TRUE(dump.markAsFailed());
  EXPECT_THAT(site_.names(), ElementsAre(own));
  EXPECT_THAT(log_->takeTexts(-1), ElementsAre());
}

}  // namespace
}  // namespace kdx
