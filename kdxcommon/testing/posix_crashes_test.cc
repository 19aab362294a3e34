// The process ends at every call of the operating system that an operation on dumps makes.

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <iostream>

#include "kdxcommon/testing/dump_scenarios.h"
#include "kdxcommon/testing/faulty_system.h"

namespace kdx {
namespace {

// Runs `scenario` in a child that dies at a call. Returns its status.
template <typename Scenario>
int statusOfChild(int call, const Scenario& scenario) {
  const pid_t child = ::fork();
  if (child == 0) {
    testing::FaultySystem system(call, 0, true, true);
    const os::ScopedOperatingSystem scope(system);
    scenario();
    std::_Exit(0);
  }
  int status = -1;
  EXPECT_EQ(::waitpid(child, &status, 0), child);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST(Crashes, LeaveDumpsThatTheNextRunPutsInOrder) {
  const testing::DumpStage stage;
  testing::FixedClock sound;
  const os::ScopedOperatingSystem scope(sound);
  const testing::ScopedLog log(4);
  int crashes = 0;
  for (const testing::DumpScenario& scenario : testing::kDumpScenarios) {
    const testing::DumpStage::Files untouched = filesAfter(stage, scenario);
    for (int call = 1, status = testing::FaultySystem::kDeath; status != 0; ++call) {
      SCOPED_TRACE(std::string(scenario.name) + ", call " + std::to_string(call));
      stage.restore();
      status = statusOfChild(call, [&] { scenario.run(stage); });
      ASSERT_TRUE(status == 0 || status == testing::FaultySystem::kDeath) << status;
      crashes += status != 0;
      stage.expectSound(untouched, scenario.written);
      expectNextRunSound(stage, scenario, untouched);
    }
  }
  std::cout << crashes << " processes ended\n";
}

}  // namespace
}  // namespace kdx
