// What an object takes, writes and logs. Which dumps stand afterwards is in fuzz/dump_retention_fuzz.cc, what happens
// where the system fails in testing/faults_test.cc.

#include "kdxcommon/dumpfile/dump_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string_view>
#include <utility>

#include "kdxcommon/dumpfile/dump_directory.h"
#include "kdxcommon/dumpfile/dump_writing.h"
#include "kdxcommon/testing/dump_site.h"
#include "kdxcommon/testing/recording_line_sink.h"
#include "kdxcommon/testing/wide_text.h"

namespace kdx {
namespace {

using std::string_literals::operator""s;
using ::testing::ElementsAre;
using ::testing::IsSupersetOf;
using testing::LoggedLine;
using testing::ScopedLog;
using testing::wide;

constexpr std::uint32_t kSql = 602;

class DumpFileTest : public ::testing::Test {
 protected:
  std::string path(const std::string& name) const { return site_.directory.path(name); }

  // Creates a dump of subclient 7, given its name from the job id on. Returns its name.
  std::string add(const std::string& jobAndEnding) const {
    const std::string name = "KDXSQLDump_SC_7_JOB_" + jobAndEnding;
    site_.directory.write(name);
    return name;
  }

  testing::DumpSite site_{kSql, 7};
};

TEST_F(DumpFileTest, WorksOnlyWithSoundArguments) {
  site_.add(608, 1);
  site_.add(606, 0);
  site_.addApplication(kSql, 9);
  ScopedLog log(-1);
  CDumpFile iteration(ITERATION_JOB, kSql, 7, 1, -1);
  CDumpFile discovery(DISCOVERY_JOB, kSql, 7, 1, 5, site_.directory.path().c_str());
  EXPECT_EQ(iteration.getFullName(), path("KDXSQLDump_SC_7_JOB_1_ITR_-1.txt"));
  EXPECT_EQ(discovery.getFullName(), path("KDXSQLDump_SC_7_DISCOVERY_JOB_1.txt"));
  EXPECT_EQ(iteration.getDumpFileLimit(), 1u);
  EXPECT_EQ(iteration.getDaysToKeepFailedJobDumpFiles(), 30u);
  CDumpFile refused[] = {
      {static_cast<ZQBkpLevel>(0x10000), kSql, 7, 1, 0},
      {static_cast<ZQBkpLevel>(0x60000), kSql, 7, 1, 0},
      {ITERATION_JOB, 608, 1, 1, 0},       // no prefix
      {ITERATION_JOB, 606, 0, 1, 0},       // subclient id 0
      {ITERATION_JOB, kSql, 8, 1, 0},      // unknown application
      {ITERATION_JOB, kSql, 9, 1, 0},      // no subclient
      {ITERATION_JOB, kSql, 7, 0, 0},      // job id
      {ITERATION_JOB, kSql, 7, 1, -2},     // iteration id
      {ITERATION_JOB, kSql, 7, 1, 0, ""},  // directory
      {ITERATION_JOB, kSql, 7, 1, 0, nullptr},
  };
  const std::vector<LoggedLine> told = log->take();
  ASSERT_EQ(told.size(), std::size(refused));
  EXPECT_EQ(told.back(), (LoggedLine{-1, "CDumpFile::CDumpFile", 1, "",
                                     "Object Initialisation Failed. Please Check the constructor parameters."}));
  std::int64_t last = 5;
  std::map<int, CJxString> files{{3, "kept"}};
  for (CDumpFile& dump : refused) {
    EXPECT_FALSE(dump.dumpXMLBlob(wide(u"<a/>")) || dump.markAsFailed() || dump.pruneDumpXMLBlob() ||
                 dump.pruneFailedDumpXMLBlob() || dump.pruneTimeExceededFailedDumpFiles() ||
                 dump.getLastItrIdUsedForDumping(last) || dump.getAllXmlDumpFilesCreated(files));
    EXPECT_EQ(dump.getFullName(), "");
    EXPECT_EQ(log->takeTexts(-1), std::vector<std::string>(8, "Object Not Initialized"));
  }
  EXPECT_EQ(last, -1);
  EXPECT_EQ(files.size(), 1u);
  EXPECT_TRUE(site_.names().empty());
}

TEST_F(DumpFileTest, WritesTheTextAsUtf8InPlaceOfAnEarlierOne) {
  const std::u16string zero = u"<a>" + std::u16string(1, u'\0') + u"</a>";
  const std::pair<wstring, const char*> rows[] = {
      {wide(u"<a>longer than what follows</a>"), "<a>longer than what follows</a>"},
      {wide(u"<\u00e9\u4e2d\U0001F600/>"), "<\xC3\xA9\xE4\xB8\xAD\xF0\x9F\x98\x80/>"},
      {wide(zero), "<a>"},
      {wide(u"<a>").append(1, static_cast<wchar>(0xD800)), ""},  // not UTF-16
      {wide(u""), ""},
  };
  CDumpFile dump(ITERATION_JOB, kSql, 7, 5, 1);
  dump.setItrId(2);
  EXPECT_STREQ(dump.GetName(), "KDXSQLDump_SC_7_JOB_5_ITR_1.txt");  // the name changes at the next dump
  for (const auto& [text, bytes] : rows) {
    dump.setName(CJxString("own"));
    EXPECT_TRUE(CDumpFile(dump).dumpXMLBlob(text));
    EXPECT_EQ(site_.directory.read("KDXSQLDump_SC_7_JOB_5_ITR_2.txt"), bytes);
  }
  EXPECT_EQ(site_.names().size(), 1u);
}

TEST_F(DumpFileTest, ATextThatIsTooLargeLeavesTheEarlierOne) {
  CJxFile file;
  const std::string dump = site_.directory.write("dump", "earlier");
  const DumpWriting refused = writeDump(file, dump.c_str(), "12345", 4);
  EXPECT_TRUE(refused.writeFailed && !refused.openFailed && !refused.closeFailed && refused.written == 0);
  EXPECT_EQ(site_.directory.read("dump"), "earlier");
  EXPECT_FALSE(writeDump(file, dump.c_str(), "12345", 5).writeFailed);
  EXPECT_EQ(site_.directory.read("dump"), "12345");
}

TEST_F(DumpFileTest, WithALimitOfZeroWritesNothing) {
  site_.setLimit(0);
  ScopedLog log(4);
  EXPECT_TRUE(CDumpFile(ITERATION_JOB, kSql, 7, 5, 0).dumpXMLBlob(wide(u"<a/>")));
  EXPECT_THAT(
      log->takeTexts(4),
      IsSupersetOf({"No File Found. Pattern [KDXSQLDump_*.failed] in dir [" + site_.directory.path() + "]. Error [0]",
                    "No file Deleted. Either Dump Files present = 0 or less than Dump Limit"s,
                    "No file Deleted. Failed Dump Files present = 0"s,
                    "Dump Limit = [0]... XML blob Dumping Not Done"s}));
  EXPECT_TRUE(site_.names().empty());
}

TEST_F(DumpFileTest, LogsEachStepOfADumpAndOfAFailure) {
  testing::FixedClock clock;
  const os::ScopedOperatingSystem scope(clock);
  for (const char* end : {"10_ITR_0.txt", "10_ITR_1.txt", "13_ITR_0.txt", "13_ITR_0.txt.failed", "5_ITR_0.txt.failed",
                          "5_ITR_1.txt.failed"}) {
    clock.date(path(add(end)), clock.now);
  }
  const std::string expired = site_.directory.write("KDXSQLDump_SC_8_JOB_4_ITR_0.txt.failed");
  clock.date(expired, clock.now - 31 * 86400);
  site_.setLimit(3);
  site_.setDays(30);
  CDumpFile dump(ITERATION_JOB, kSql, 7, 13, 1);
  ScopedLog log(4);
  std::int64_t last = 0;
  ASSERT_TRUE(dump.dumpXMLBlob(wide(u"<\u00e9/>")) && dump.getLastItrIdUsedForDumping(last));
  clock.date(dump.getFullName(), clock.now);
  ASSERT_TRUE(dump.markAsFailed());

  std::vector<std::string> steps;
  for (const LoggedLine& line : log->take()) {
    const bool jobless = line.function.ends_with("FilesOfPattern");
    EXPECT_EQ(line.jobId, jobless ? -123456 : 13) << line.text;
    const std::string function = line.function.substr(line.function.rfind(':') + 1);
    steps.push_back(std::to_string(line.level.value_or(-9)) + " " + function + ": " + line.text);
  }
  const std::string dir = site_.directory.path();
  const std::string own = path("KDXSQLDump_SC_7_JOB_13_ITR_0.txt");
  std::vector<std::string> expected = {
      "2 dumpXMLBlob: Enter",
      "4 pruneDumpXMLBlob: Searching for files [KDXSQLDump_SC_7_JOB_*_*.txt]",
      "4 getFilesOfPattern: Files of pattern [KDXSQLDump_SC_7_JOB_*_*.txt] in dir [" + dir + "] stored in a vector",
      "4 getDumpFileLimit: Loaded nDUMPFILELIMIT [3]",
      "4 parseJobIdFromFileName: Start Position = [20], Length = [2], JOBID = [10]",
      "4 pruneDumpXMLBlob: JOBID = [10] is inserted into map with value 1",
      "4 pruneDumpXMLBlob: Count for JOBID = [10] is increamented by 1",
      "4 pruneDumpXMLBlob: JOBID [13] is current Job. Should not be deleted",
      "4 pruneDumpXMLBlob: No of Dump files for JobId 10 is 2",
      "4 getDeleteFilePatterns: Dump File Limit = 3",
      "4 getDeleteFilePatterns: Previous Job [10]  with no of files [2] should be deleted. Count = [2]",
      "4 getDeleteFilePatterns: File pattern KDXSQLDump_SC_7_JOB_10_*.txt pushed into vector",
      "2 delFilesOfPattern: Deleting Files of pattern [" + dir + "\\KDXSQLDump_SC_7_JOB_10_*.txt] ",
      "4 delFilesOfPattern: File Deleted [" + path("KDXSQLDump_SC_7_JOB_10_ITR_1.txt]"),
      "4 delFilesOfPattern: No File Deleted of type [" + dir +
          "\\KDXSQLDump_SC_*_DISCOVERY_JOB_4.txt.failed]. Error [0]",
      "4 pruneTimeExceededFailedDumpFiles: Searching for files [KDXSQLDump_*.failed]",
      "4 getDaysToKeepFailedJobDumpFiles: Loaded nDAYSTOKEEPFAILEDJOBDUMPFILES [30]",
      "3 pruneTimeExceededFailedDumpFiles: Getting times of file [" + own + ".failed]",
      "4 pruneTimeExceededFailedDumpFiles: No of Days = 0, Need not be pruned",
      "4 pruneTimeExceededFailedDumpFiles: Time Exceeded for the file [" + expired + "], No of Days = 31",
      "4 pruneTimeExceededFailedDumpFiles: JOBID = [4] is inserted into map",
      "4 pruneTimeExceededFailedDumpFiles: FAILED DUMP FILES for JobId 4 going to be pruned",
      "2 pruneTimeExceededFailedDumpFiles: Time Exceeded FAILED DUMP FILES file have been deleted Deleted",
      "2 dumpXMLBlob: DUMPFILELIMIT = [3]... Dumping xml blob size [4] to file [" + dump.getFullName() + "]",
      "2 dumpXMLBlob: Bytes written :: [5]",
      "2 dumpXMLBlob: Exit",
      "2 getLastItrIdUsedForDumping: Enter",
      "4 parseItrIdFromFileName: Start Position = [27], Length = [1], ITRID = [1]",
      "3 getLastItrIdUsedForDumping: Last Iteration Id used is [1]",
      "2 getLastItrIdUsedForDumping: Exit",
      "2 markAsFailed: Enter",
      "4 pruneFailedDumpXMLBlob: Searching for files [KDXSQLDump_SC_7_JOB_*_*.txt.failed]",
      "4 pruneFailedDumpXMLBlob: FAILED DUMP FILES for JobId 5 going to be pruned",
      "4 markAsFailed: Searching for files KDXSQLDump_SC_7_JOB_13_*.txt",
      "4 markAsFailed: Deleting file if present - [" + own + ".failed] ",
      "4 markAsFailed: Renaming file [" + own + "] to [" + own + ".failed]",
      "2 markAsFailed: Dump File found for this job are marked as failed",
      "2 markAsFailed: Exit",
  };
  EXPECT_THAT(steps, IsSupersetOf(expected));
  const std::string deletedByMark = path("KDXSQLDump_SC_7_JOB_5_ITR_0.txt.failed");
  EXPECT_EQ(
      std::ranges::count(steps, "3 pruneTimeExceededFailedDumpFiles: Getting times of file [" + deletedByMark + "]"),
      1);  // by the dump
  // Lines of level 2 have this order; more detailed ones may follow the order of the directory.
  const auto isFiner = [](const std::string& step) { return !step.starts_with("2 "); };
  std::erase_if(steps, [&](const std::string& step) { return isFiner(step) || !std::ranges::count(expected, step); });
  std::erase_if(expected, isFiner);
  EXPECT_EQ(steps, expected);

  ASSERT_TRUE(dump.markAsFailed());
  EXPECT_THAT(log->takeTexts(2), ElementsAre("Enter", "No file is Deleted", "No file is Deleted",
                                             "No Dump File found for this job. No file is marked as failed", "Exit"));
}

// A system that refuses one call.
struct RefusingSystem : testing::FixedClock {
  int remove(const char* path) override { return refused == "remove" ? -1 : FixedClock::remove(path); }
  int rename(const char* from, const char* to) override {
    return refused == "rename" ? -1 : FixedClock::rename(from, to);
  }
  std::unique_ptr<os::DirectoryStream> opendir(const char* path) override {
    return refused == "opendir" ? nullptr : FixedClock::opendir(path);
  }
  std::string_view refused;
};

TEST_F(DumpFileTest, TellsAsAFateWhatTheSystemRefuses) {
  RefusingSystem system;
  const os::ScopedOperatingSystem scope(system);
  CDumpFile dump(ITERATION_JOB, kSql, 7, 5, 0);
  for (const char* end : {"1_ITR_0.txt", "5_ITR_0.txt"}) add(end);
  std::vector<DumpFate> fates;
  system.refused = "remove";
  ASSERT_TRUE(dump.makeRoom(fates));
  EXPECT_EQ(fates.at(fates[0].name == "KDXSQLDump_SC_7_JOB_1_ITR_0.txt" ? 0 : 1).reason,
            "can't be deleted: job 1 is the lowest and must go");
  system.refused = "rename";
  ASSERT_TRUE(dump.markAsFailed(fates));
  EXPECT_EQ(std::ranges::count(fates, DumpFate::kRefused, &DumpFate::kind), 1);
  system.refused = "opendir";
  EXPECT_FALSE(dump.explainDumpXMLBlob(fates) || dump.explainMarkAsFailed(fates));
  EXPECT_EQ(fates.size(), 2u);
}

}  // namespace
}  // namespace kdx
