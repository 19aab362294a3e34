// Names and patterns are seen at work in fuzz/dump_retention_fuzz.cc; here are the prefixes, and what reads a name
// back.

#include "kdxcommon/dumpfile/dump_names.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "kdxcommon/dumpfile/dump_directory.h"

namespace kdx {
namespace {

using ::testing::ElementsAre;
using ::testing::Pair;

TEST(DumpNames, BeginWithThePrefixOfTheApplicationType) {
  std::map<std::string, std::vector<std::uint32_t>> typesByPrefix;
  for (std::uint32_t type = 0; type < 1000; ++type) {
    if (const char* prefix = beginNameOfApplicationType(type)) typesByPrefix[prefix].push_back(type);
  }
  EXPECT_THAT(typesByPrefix,
              ElementsAre(Pair("KDXExchDump", ElementsAre(53, 606)), Pair("KDXNASDump", ElementsAre(13, 603)),
                          Pair("KDXNETWDump", ElementsAre(604)), Pair("KDXOraDump", ElementsAre(601)),
                          Pair("KDXSPDump", ElementsAre(607)), Pair("KDXSQLDump", ElementsAre(602)),
                          Pair("KDXUxFSDump", ElementsAre(17, 19, 21, 29, 605)),
                          Pair("KDXWinFSDump", ElementsAre(11, 33, 34, 42, 43, 600))));
}

TEST(DumpNames, ReadJobAndIterationBack) {
  const std::tuple<const char*, std::int64_t, std::int64_t> rows[] = {
      {"KDXWinFSDump_SC_12_DISCOVERY_JOB_3456.txt.failed", 3456, 0},
      {"KDXSQLDump_SC_7_JOB_9000000000_ITR_-1.txt", 9'000'000'000, -1},
      {"KDXSQLDump_SC_7_JOB__ITR_x.txt", 0, 0},
      {"KDXSQLDump_SC_7_JOB_99999999999999999999_ITR_1.txt", INT64_MAX, 1},
      {"", 0, 0},
  };
  for (const auto& [name, job, itr] : rows) {
    EXPECT_EQ(decimalNumber(jobIdInFileName(name).text), job) << name;
    EXPECT_EQ(decimalNumber(itrIdInFileName(name).text), itr) << name;
  }
  for (const char* name : {"KDXSQLDump.txt", "KDXSQLDump_SC_0_JOB_1_ITR_0.txt"}) EXPECT_FALSE(parseDumpName(name));
  EXPECT_THAT(jobIdsIn("KDXSQLDump_SC_7_JOB_9_JOB_-5.txt"), ElementsAre(9, -5));
}

}  // namespace
}  // namespace kdx
