// The process ends at every call of the operating system that an operation on dumps makes.

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <iostream>
#include <sstream>

#include "kdxcommon/sinks/rotating_file_sink.h"
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

// Lines with numbers, two in a file. Those before the death are all there, and the next one is on a line of its own.
TEST(Crashes, LoseNoLineOfARotatedLog) {
  const testing::TemporaryDirectory directory;
  const auto write = [&](int from, int to) {
    RotatingFileLineSink sink(directory.path("log").c_str(), {.maxBytes = 120, .olderFiles = 9});
    for (int number = from; number < to; ++number) sink.write({2, "f", 1, {}, std::to_string(number)});
  };
  testing::FixedClock sound;
  const os::ScopedOperatingSystem scope(sound);
  int crashes = -1;  // the last process ends well
  for (int call = 1, status = testing::FaultySystem::kDeath; status != 0; ++call, ++crashes) {
    for (const auto& entry : std::filesystem::directory_iterator(directory.path())) std::filesystem::remove(entry);
    status = statusOfChild(call, [&] { write(0, 8); });
    write(8, 9);
    std::string numbers, all = directory.read("log");
    for (int older = 1; older <= 9; ++older) all.insert(0, directory.read("log." + std::to_string(older)));
    std::istringstream lines(all);
    for (std::string line; std::getline(lines, line);) numbers += line.substr(line.find(": ") + 2);
    EXPECT_TRUE(numbers.ends_with('8') && std::string("01234567").starts_with(numbers.substr(0, numbers.size() - 1)))
        << call << ": " << numbers;
  }
  std::cout << crashes << " processes ended\n";
}

}  // namespace
}  // namespace kdx
