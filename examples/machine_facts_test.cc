// Runs the program as a user does and looks at its output.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "kdxcommon/inhouse/zqlib/last_error.h"
#include "kdxcommon/platform/os_identity.h"
#include "kdxcommon/testing/run_program.h"
#include "kdxcommon/testing/temporary_directory.h"

namespace {

TEST(MachineFacts, AreATableOrJsonWithReasonsInPlaceOfWhatIsMissing) {
  const kdx::testing::TemporaryDirectory directory;
  const auto run = [&directory](const std::string& arguments) {
    const kdx::testing::Outcome outcome = kdx::testing::runProgram(KDX_MACHINE_FACTS, arguments, directory);
    return outcome.status == 0 ? outcome.out : outcome.err;
  };
  std::istringstream table(run(""));
  int rows = 0, error = 0;
  for (std::string line; std::getline(table, line); ++rows) EXPECT_EQ(line.find("  platform"), 25u) << line;
  kdx::LD_OSInformation_s system;
  const std::string first =
      kdx::platformOSInformation(system, error)
          ? "value\": \"" + system.name
          : std::string("error\": \"") + kdx::ZQLastError(static_cast<std::uint32_t>(error), kdx::ZQLE_MAJOR).message();
  const std::string json = run("--json");
  EXPECT_EQ(std::ranges::count(json, '\n'), rows + 2);
  EXPECT_THAT(json, ::testing::StartsWith("[\n  {\"fact\": \"operating system\", \"operation\": "));
  EXPECT_THAT(json, ::testing::HasSubstr("\"platformOSInformation\", \"" + first + "\"},\n"));
  EXPECT_THAT(json, ::testing::HasSubstr(R"("operation": "platformClustered", "value": "no"},)"));
  EXPECT_THAT(json, ::testing::EndsWith("\"}\n]\n"));
  EXPECT_THAT(run("--jsn"), ::testing::StartsWith("machine_facts: "));
}

}  // namespace
