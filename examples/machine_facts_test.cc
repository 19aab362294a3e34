// Runs the program as a user does and looks at its output.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <sstream>

#include "kdxcommon/testing/temporary_directory.h"

namespace {

TEST(MachineFacts, AreATableOrJsonWithReasonsInPlaceOfWhatIsMissing) {
  const kdx::testing::TemporaryDirectory directory;
  const auto run = [&directory](const std::string& arguments) {
    const int status = std::system((KDX_MACHINE_FACTS " " + arguments + " >" + directory.path("out")).c_str());
    return status == 0 ? directory.read("out") : std::to_string(status >> 8);
  };
  std::istringstream table(run(""));
  int rows = 0;
  for (std::string line; std::getline(table, line); ++rows) EXPECT_EQ(line.find("  platform"), 25u) << line;
  const std::string json = run("--json"), reason = std::strerror(ENOSYS);
  EXPECT_EQ(std::ranges::count(json, '\n'), rows + 2);
  EXPECT_EQ(json.find(R"([
  {"fact": "operating system", "operation": "platformOSInformation", "error": ")" +
                      reason + "\"},\n"),
            0u);
  EXPECT_THAT(json, ::testing::HasSubstr(R"("operation": "platformClustered", "value": "no"},)"));
  EXPECT_THAT(json, ::testing::EndsWith("\"}\n]\n"));
  EXPECT_EQ(run("--jsn 2>/dev/null"), "2");
}

}  // namespace
