#include "kdxcommon/dumpfile/dump_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "kdxcommon/testing/dump_site.h"
#include "kdxcommon/testing/recording_line_sink.h"
#include "kdxcommon/testing/wide_text.h"

namespace kdx {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsSupersetOf;
using testing::LoggedLine;
using testing::ScopedLog;
using testing::wide;

constexpr std::uint32_t kSql = 602;
constexpr std::uint32_t kSubclient = 7;
constexpr char kNotReady[] = "Object Not Initialized";

// Level, function without its class, and text.
std::string shown(const LoggedLine& line) {
  return std::to_string(line.level.value_or(-9)) + " " + line.function.substr(line.function.rfind(':') + 1) + " " +
         line.text;
}

class DumpFileTest : public ::testing::Test {
 protected:
  DumpFileTest() { site_.add(kSql, kSubclient); }

  CDumpFile dumpOf(std::int64_t jobId, std::int64_t itrId = 0, ZQBkpLevel type = ITERATION_JOB) {
    return {type, kSql, kSubclient, jobId, itrId};
  }
  std::string directory() const { return site_.directory.path(); }

  testing::DumpSite site_;
};

TEST_F(DumpFileTest, IsReadyOnlyWithSoundArguments) {
  site_.add(608, 1);
  site_.add(606, 0);
  const std::string dir = directory();
  const ScopedLog silent(-2);
  const auto type = [](unsigned value) { return static_cast<ZQBkpLevel>(value); };
  const struct {
    CDumpFile dump;
    const char* name;  // null: refused
  } rows[] = {
      {{ITERATION_JOB, kSql, 7, 1, -1}, "KDXSQLDump_SC_7_JOB_1_ITR_-1.txt"},
      {{DISCOVERY_JOB, kSql, 7, 1, 5, dir.c_str()}, "KDXSQLDump_SC_7_DISCOVERY_JOB_1.txt"},
      {{type(0x10000), kSql, 7, 1, 0}, nullptr},
      {{type(0x60000), kSql, 7, 1, 0}, nullptr},
      {{ITERATION_JOB, 608, 1, 1, 0}, nullptr},       // no prefix
      {{ITERATION_JOB, 606, 0, 1, 0}, nullptr},       // subclient id 0
      {{ITERATION_JOB, kSql, 8, 1, 0}, nullptr},      // unknown subclient
      {{ITERATION_JOB, kSql, 7, 0, 0}, nullptr},      // job id
      {{ITERATION_JOB, kSql, 7, 1, -2}, nullptr},     // iteration id
      {{ITERATION_JOB, kSql, 7, 1, 0, ""}, nullptr},  // directory
      {{ITERATION_JOB, kSql, 7, 1, 0, nullptr}, nullptr},
  };
  for (const auto& row : rows) {
    CDumpFile dump = row.dump;
    EXPECT_EQ(dump.dumpXMLBlob({}), row.name != nullptr);
    EXPECT_EQ(dump.getFullName(), row.name ? site_.directory.path(row.name) : "");
  }
  EXPECT_THAT(site_.names(), ElementsAre(rows[1].name, rows[0].name));
}

TEST_F(DumpFileTest, RefusesAllWorkWhenNotReady) {
  ScopedLog log(4);
  CDumpFile dump(ITERATION_JOB, kSql, kSubclient, 0, 0);
  EXPECT_THAT(log->take(),
              ElementsAre(LoggedLine{-1, "CDumpFile::CDumpFile", 0, "",
                                     "Object Initialisation Failed. Please Check the constructor parameters."}));
  std::int64_t last = 5;
  std::map<int, CJxString> files{{3, "kept"}};
  EXPECT_FALSE(dump.dumpXMLBlob(wide(u"<a/>")) || dump.markAsFailed() || dump.getLastItrIdUsedForDumping(last) ||
               dump.getAllXmlDumpFilesCreated(files));
  EXPECT_EQ(last, -1);
  EXPECT_EQ(files.size(), 1u);
  std::vector<std::string> lines;
  for (int operation = 0; operation < 4; ++operation) lines.insert(lines.end(), {"Enter", kNotReady, "Exit"});
  EXPECT_EQ(log->takeTexts(4), lines);
  EXPECT_FALSE(dump.pruneDumpXMLBlob() || dump.pruneFailedDumpXMLBlob() || dump.pruneTimeExceededFailedDumpFiles());
  EXPECT_EQ(dump.getFullName(), "");
  EXPECT_EQ(log->takeTexts(4), std::vector<std::string>(4, kNotReady));
}

TEST_F(DumpFileTest, FollowsTheIterationAtTheNextName) {
  CDumpFile dump = dumpOf(5, 1);
  dump.setItrId(2);
  EXPECT_STREQ(dump.GetName(), "KDXSQLDump_SC_7_JOB_5_ITR_1.txt");
  EXPECT_TRUE(dump.dumpXMLBlob(wide(u"<a/>")));
  const CDumpFile copy = dump;
  EXPECT_STREQ(copy.GetName(), "KDXSQLDump_SC_7_JOB_5_ITR_2.txt");
  dump.setName(CJxString("own"));
  EXPECT_EQ(dump.getFullName(), site_.directory.path("own"));
  EXPECT_TRUE(dump.setName());
  EXPECT_STREQ(dump.GetName(), copy.GetName());
}

TEST_F(DumpFileTest, WritesTheTextAsUtf8InPlaceOfAnEarlierOne) {
  const std::u16string zero = u"<a>" + std::u16string(1, u'\0') + u"</a>";
  const struct {
    wstring text;
    const char* bytes;
  } rows[] = {
      {wide(u"<a>longer than what follows</a>"), "<a>longer than what follows</a>"},
      {wide(u"<\u00e9\u4e2d\U0001F600/>"), "<\xC3\xA9\xE4\xB8\xAD\xF0\x9F\x98\x80/>"},
      {wide(zero), "<a>"},
      {wide(u"<a>").append(1, static_cast<wchar>(0xD800)), ""},  // not UTF-16
      {wide(u""), ""},
  };
  CDumpFile dump = dumpOf(5);
  for (const auto& row : rows) {
    EXPECT_TRUE(dump.dumpXMLBlob(row.text));
    EXPECT_EQ(site_.directory.read("KDXSQLDump_SC_7_JOB_5_ITR_0.txt"), row.bytes);
  }
  EXPECT_EQ(site_.names().size(), 1u);
}

TEST_F(DumpFileTest, LogsADumpStepByStep) {
  site_.setLimit(5);
  for (const char* name : {"10_ITR_0", "10_ITR_1", "11_ITR_0", "12_ITR_0", "12_ITR_1", "13_ITR_0"}) {
    site_.directory.write("KDXSQLDump_SC_7_JOB_" + std::string(name) + ".txt");
  }
  CDumpFile dump = dumpOf(13, 1);
  ScopedLog log(4);
  ASSERT_TRUE(dump.dumpXMLBlob(wide(u"<\u00e9/>")));
  std::vector<std::string> steps;
  std::vector<std::string> aboutFiles;  // in the directory's order
  for (const LoggedLine& line : log->take()) {
    const bool jobless = line.function.find("FilesOfPattern") != std::string::npos;
    EXPECT_EQ(line.jobId, jobless ? -123456 : 13) << line.text;
    const bool aboutFile = line.text.find("JOBID") != std::string::npos;
    (aboutFile ? aboutFiles : steps).push_back(shown(line));
  }
  EXPECT_THAT(aboutFiles, IsSupersetOf({
                              "4 parseJobIdFromFileName Start Position = [20], Length = [2], JOBID = [10]",
                              "4 pruneDumpXMLBlob JOBID = [10] is inserted into map with value 1",
                              "4 pruneDumpXMLBlob Count for JOBID = [10] is increamented by 1",
                              "4 pruneDumpXMLBlob JOBID [13] is current Job. Should not be deleted",
                          }));
  EXPECT_EQ(aboutFiles.size(), 12u);
  const std::string dir = directory();
  const std::string written = site_.directory.path("KDXSQLDump_SC_7_JOB_13_ITR_1.txt");
  const std::string loaded = "4 getDumpFileLimit Loaded nDUMPFILELIMIT [5]";
  std::vector<std::string> deleted = {
      "4 delFilesOfPattern File Deleted [" + site_.directory.path("KDXSQLDump_SC_7_JOB_10_ITR_0.txt]"),
      "4 delFilesOfPattern File Deleted [" + site_.directory.path("KDXSQLDump_SC_7_JOB_10_ITR_1.txt]")};
  const std::vector<std::string> expected = {
      "2 dumpXMLBlob Enter",
      "4 pruneDumpXMLBlob Searching for files [KDXSQLDump_SC_7_JOB_*_*.txt]",
      "4 getFilesOfPattern Files of pattern [KDXSQLDump_SC_7_JOB_*_*.txt] in dir [" + dir + "] stored in a vector",
      loaded,
      "4 pruneDumpXMLBlob No of Dump files for JobId 10 is 2",
      "4 pruneDumpXMLBlob No of Dump files for JobId 11 is 1",
      "4 pruneDumpXMLBlob No of Dump files for JobId 12 is 2",
      loaded,
      "4 getDeleteFilePatterns Dump File Limit = 5",
      "4 getDeleteFilePatterns Previous Job [10]  with no of files [2] should be deleted. Count = [2]",
      "4 getDeleteFilePatterns File pattern KDXSQLDump_SC_7_JOB_10_*.txt pushed into vector",
      "2 delFilesOfPattern Deleting Files of pattern [" + dir + "\\KDXSQLDump_SC_7_JOB_10_*.txt] ",
      deleted[0],
      deleted[1],
      "4 pruneTimeExceededFailedDumpFiles Searching for files [KDXSQLDump_*.failed]",
      "4 getFilesOfPattern No File Found. Pattern [KDXSQLDump_*.failed] in dir [" + dir + "]. Error [0]",
      "2 pruneTimeExceededFailedDumpFiles No file Deleted. Failed Dump Files present = 0",
      loaded,
      "2 dumpXMLBlob DUMPFILELIMIT = [5]... Dumping xml blob size [4] to file [" + written + "]",
      "2 dumpXMLBlob Bytes written :: [5]",
      "2 dumpXMLBlob Exit",
  };
  ASSERT_EQ(steps.size(), expected.size());
  std::sort(steps.begin() + 12, steps.begin() + 14);  // the two deletions, in the directory's order
  EXPECT_EQ(steps, expected);
}

TEST_F(DumpFileTest, LogsAFailureStepByStep) {
  testing::FixedClock clock;
  const ScopedOperatingSystem scope(clock);
  const std::string begin = "KDXSQLDump_SC_7_JOB_";
  const std::string dir = directory();
  for (const char* name : {"6_ITR_0.txt", "6_ITR_0.txt.failed", "5_ITR_0.txt.failed", "5_ITR_1.txt.failed"}) {
    clock.date(site_.directory.write(begin + name), clock.now);
  }
  const std::string expired = site_.directory.write("KDXSQLDump_SC_8_JOB_4_ITR_0.txt.failed");
  clock.date(expired, clock.now - 31 * 86400);
  site_.setDays(30);
  CDumpFile dump = dumpOf(6);
  ScopedLog log(4);
  ASSERT_TRUE(dump.markAsFailed());
  std::vector<std::string> steps;
  for (const LoggedLine& line : log->take()) {
    const bool listing = line.function.find("FilesOfPattern") != std::string::npos;
    if (!listing && line.function.find("parse") == std::string::npos) steps.push_back(shown(line));
  }
  const std::string own = site_.directory.path(begin + "6_ITR_0.txt");
  EXPECT_THAT(steps,
              ::testing::UnorderedElementsAre(
                  "2 markAsFailed Enter", "4 pruneFailedDumpXMLBlob Searching for files [" + begin + "*_*.txt.failed]",
                  "4 pruneFailedDumpXMLBlob JOBID = [5] is inserted into map",
                  "4 pruneFailedDumpXMLBlob Count for JOBID = [5] is increamented by 1",
                  "4 pruneFailedDumpXMLBlob JOBID [6] is current Job. Should not be deleted",
                  "4 pruneFailedDumpXMLBlob FAILED DUMP FILES for JobId 5 going to be pruned",
                  "4 getDeleteFilePatterns File pattern KDXSQLDump_SC_*_DISCOVERY_JOB_5.txt.failed pushed into vector",
                  "4 getDeleteFilePatterns File pattern KDXSQLDump_SC_*_JOB_5_*.txt.failed pushed into vector",
                  "4 pruneTimeExceededFailedDumpFiles Searching for files [KDXSQLDump_*.failed]",
                  "4 getDaysToKeepFailedJobDumpFiles Loaded nDAYSTOKEEPFAILEDJOBDUMPFILES [30]",
                  "3 pruneTimeExceededFailedDumpFiles Getting times of file [" + own + ".failed]",
                  "4 pruneTimeExceededFailedDumpFiles No of Days = 0, Need not be pruned",
                  "3 pruneTimeExceededFailedDumpFiles Getting times of file [" + expired + "]",
                  "4 pruneTimeExceededFailedDumpFiles Time Exceeded for the file [" + expired + "], No of Days = 31",
                  "4 pruneTimeExceededFailedDumpFiles JOBID = [4] is inserted into map",
                  "4 pruneTimeExceededFailedDumpFiles FAILED DUMP FILES for JobId 4 going to be pruned",
                  "4 getDeleteFilePatterns File pattern KDXSQLDump_SC_*_DISCOVERY_JOB_4.txt.failed pushed into vector",
                  "4 getDeleteFilePatterns File pattern KDXSQLDump_SC_*_JOB_4_*.txt.failed pushed into vector",
                  "2 pruneTimeExceededFailedDumpFiles Time Exceeded FAILED DUMP FILES file have been deleted Deleted",
                  "4 markAsFailed Searching for files " + begin + "6_*.txt",
                  "4 markAsFailed Deleting file if present - [" + own + ".failed] ",
                  "4 markAsFailed Renaming file [" + own + "] to [" + own + ".failed]",
                  "2 markAsFailed Dump File found for this job are marked as failed", "2 markAsFailed Exit"));
  EXPECT_THAT(site_.names(), ElementsAre(begin + "6_ITR_0.txt.failed"));

  ASSERT_TRUE(dump.markAsFailed());
  EXPECT_THAT(log->takeTexts(2), ElementsAre("Enter", "No file is Deleted", "No file is Deleted",
                                             "No Dump File found for this job. No file is marked as failed", "Exit"));
}

TEST_F(DumpFileTest, WithALimitOfZeroEmptiesThePrefixAndWritesNothing) {
  for (const char* name : {"KDXSQLDump_SC_7_JOB_5_ITR_0.txt", "KDXSQLDump_SC_8_DISCOVERY_JOB_1.txt",
                           "KDXSQLDump_SC_7_JOB_5_ITR_0.txt.failed", "KDXExchDump_SC_7_JOB_1_ITR_0.txt"}) {
    site_.directory.write(name);
  }
  site_.setLimit(0);
  ScopedLog log(2);
  EXPECT_TRUE(dumpOf(5).dumpXMLBlob(wide(u"<a/>")));
  EXPECT_THAT(log->takeTexts(2), Contains("Dump Limit = [0]... XML blob Dumping Not Done"));
  EXPECT_THAT(site_.names(), ElementsAre("KDXExchDump_SC_7_JOB_1_ITR_0.txt", "KDXSQLDump_SC_7_JOB_5_ITR_0.txt.failed"));
}

TEST_F(DumpFileTest, TellsWhatStandsOfTheCurrentJob) {
  site_.setLimit(10);
  CDumpFile dump = dumpOf(5);
  for (const std::int64_t itr : {0, 3, 1, -1}) {
    dump.setItrId(itr);
    ASSERT_TRUE(dump.dumpXMLBlob(wide(u"<a/>")));
  }
  dumpOf(6, 9).dumpXMLBlob({});
  std::int64_t last = 7;
  std::map<int, CJxString> files{{8, "kept"}};
  EXPECT_TRUE(dump.getLastItrIdUsedForDumping(last));
  EXPECT_TRUE(dump.getAllXmlDumpFilesCreated(files));
  EXPECT_EQ(last, 3);
  EXPECT_EQ(files.size(), 5u);
  EXPECT_STREQ(files[-1].c_str(), "KDXSQLDump_SC_7_JOB_5_ITR_-1.txt");
  ASSERT_TRUE(dump.markAsFailed());
  EXPECT_TRUE(dump.getLastItrIdUsedForDumping(last));
  EXPECT_EQ(last, -1);
  CDumpFile discovery = dumpOf(5, 4, DISCOVERY_JOB);
  ASSERT_TRUE(discovery.dumpXMLBlob({}));
  EXPECT_TRUE(discovery.getLastItrIdUsedForDumping(last));
  EXPECT_EQ(last, 0);
}

}  // namespace
}  // namespace kdx
