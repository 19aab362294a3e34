#include "kdxcommon/dumpfile/dump_names.h"

#include <gtest/gtest.h>

namespace kdx {
namespace {

TEST(DumpNames, FollowTheGrammarOfTheJobType) {
  const DumpSeries discovery{"KDXWinFSDump", DISCOVERY_JOB, 12};
  const DumpSeries iteration{"KDXSQLDump", ITERATION_JOB, 7};
  const struct {
    CJxString built;
    const char* expected;
  } rows[] = {
      {dumpFileName(discovery, 3456, 2), "KDXWinFSDump_SC_12_DISCOVERY_JOB_3456.txt"},
      {dumpFileName(iteration, 3456, 2), "KDXSQLDump_SC_7_JOB_3456_ITR_2.txt"},
      {dumpFileName(iteration, 9'000'000'000, 5'000'000'000), "KDXSQLDump_SC_7_JOB_9000000000_ITR_5000000000.txt"},
      {searchPatternOfAllJobs(discovery), "KDXWinFSDump_SC_12_DISCOVERY_JOB_*.txt"},
      {searchPatternOfAllJobs(iteration), "KDXSQLDump_SC_7_JOB_*_*.txt"},
      {searchPatternOfJob(discovery, 8), "KDXWinFSDump_SC_12_DISCOVERY_JOB_8.txt"},
      {searchPatternOfJob(iteration, 8), "KDXSQLDump_SC_7_JOB_8_*.txt"},
      {patternOfEveryDump("KDXSPDump"), "KDXSPDump_*.txt"},
      {patternOfEveryFailedDump("KDXSPDump"), "KDXSPDump_*.failed"},
      {patternsOfFailedJob("KDXSPDump", 8)[0], "KDXSPDump_SC_*_DISCOVERY_JOB_8.txt.failed"},
      {patternsOfFailedJob("KDXSPDump", 8)[1], "KDXSPDump_SC_*_JOB_8_*.txt.failed"},
  };
  for (const auto& row : rows) EXPECT_STREQ(row.built.c_str(), row.expected);
}

TEST(DumpNames, ReadJobAndIterationBack) {
  const struct {
    const char* name;
    std::int64_t job;
    std::int64_t itr;
  } rows[] = {
      {"KDXWinFSDump_SC_12_DISCOVERY_JOB_3456.txt", 3456, 0},
      {"KDXSQLDump_SC_7_JOB_3456_ITR_2.txt", 3456, 2},
      {"KDXSQLDump_SC_7_JOB_3456_ITR_2.txt.failed", 3456, 2},
      {"KDXSQLDump_SC_7_JOB_9000000000_ITR_-1.txt", 9'000'000'000, -1},
      {"KDXSQLDump_SC_7_JOB__ITR_x.txt", 0, 0},
      {"KDXSQLDump_SC_7_JOB_99999999999999999999_ITR_1.txt", INT64_MAX, 1},
      {"", 0, 0},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(decimalNumber(jobIdInFileName(row.name).text), row.job) << row.name;
    EXPECT_EQ(decimalNumber(itrIdInFileName(row.name).text), row.itr) << row.name;
  }
}

TEST(DumpNames, BeginWithThePrefixOfTheApplicationType) {
  EXPECT_STREQ(beginNameOfApplicationType(53), "KDXExchDump");
  EXPECT_STREQ(beginNameOfApplicationType(606), "KDXExchDump");
  for (const std::uint32_t type : {0u, 10u, 12u, 599u, 608u, 0xFFFFFFFFu}) {
    EXPECT_EQ(beginNameOfApplicationType(type), nullptr) << type;
  }
}

}  // namespace
}  // namespace kdx
