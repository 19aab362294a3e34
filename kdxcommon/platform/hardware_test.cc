#include "kdxcommon/platform/hardware.h"

#include <gtest/gtest.h>

#include "kdxcommon/testing/fake_machine.h"

namespace kdx {
namespace {

struct Hardware : ::testing::Test {
  testing::FakeMachine machine;
  ScopedOperatingSystem scope{machine};
  int error = 7;
};

TEST_F(Hardware, EveryProcessorHasItsText) {
  const struct {
    std::uint16_t architecture;
    std::uint32_t major, type, count;
    const char* text;
  } rows[] = {{0, 4, 386, 1, " x86 Family 6 Model 15 Stepping 11"},
              {0, 6, 586, 2, " x86 Family 6 Model 15 Stepping 11: CPUs 2"},
              {0, 3, 586, 2, " x86 Family"},
              {0, 3, 486, 2, " "},
              {1, 6, 0, 2, "MIPS"},
              {2, 3, 0, 1, "Alpha 6"},
              {2, 3, 0, 2, "Alpha 6: CPUs 2"},
              {3, 6, 0, 2, "PPC"},
              {6, 4, 0, 2, "Itanium Family 6: CPUs 2"},
              {9, 6, 8664, 8, "x64 Family 6: CPUs 8"},
              {9, 6, 8664, 0, "x64 Family 6"},
              {9, 3, 8664, 8, "x64 Family 6"},
              {4, 6, 0, 2, "??? ???"},
              {5, 6, 0, 2, "??? ???"},
              {7, 6, 0, 2, "??? ???"},
              {8, 6, 0, 2, "??? ???"},
              {10, 6, 0, 2, "??? ???"},
              {0xFFFF, 6, 0, 2, "??? ???"}};
  string type;
  std::uint32_t count = 0;
  for (const auto& row : rows) {
    machine.version.dwMajorVersion = row.major;
    machine.processor = {row.architecture, row.count, row.type, 6, 0x0F0B};
    EXPECT_TRUE(platformTypeOfCPU(type, error) && platformNumberOfCPUs(count, error));
    EXPECT_EQ(type, row.text) << row.architecture << ' ' << row.major;
    EXPECT_EQ(count, row.count);
  }
  EXPECT_EQ(error, 7);
}

TEST_F(Hardware, MemoryIsTheNextMebibyteAboveIt) {
  constexpr std::uint64_t kMebibyte = 1048576, kEight = 8192 * kMebibyte;
  std::uint64_t bytes = 0;
  for (const auto& [memory, expected] :
       {std::pair(kEight, kEight + kMebibyte), {kEight - 1000, kEight}, {std::uint64_t{0}, kMebibyte}}) {
    machine.memory = memory;
    EXPECT_TRUE(platformSystemRAM(bytes, error));
    EXPECT_EQ(bytes, expected);
  }
}

TEST_F(Hardware, TheComputersNameFitsItsBuffer) {
  string name;
  for (const std::size_t length : {0, 15, 1023, 1024, 2000}) {
    machine.computerName.assign(length, 'c');
    EXPECT_TRUE(platformComputerName(name, error));
    EXPECT_EQ(name, string(std::min<std::size_t>(length, 1024), 'c'));
  }
}

TEST_F(Hardware, FailuresClearTypeAndMemoryAndLeaveTheName) {
  machine.failing = {{"GetVersionExA148", 120}, {"GlobalMemoryStatusEx", 8}, {"GetComputerNameA", 111}};
  string type = "before", name = "before";
  std::uint64_t bytes = 5;
  EXPECT_FALSE(platformTypeOfCPU(type, error));
  EXPECT_EQ(error, 120);
  EXPECT_FALSE(platformSystemRAM(bytes, error));
  EXPECT_EQ(error, 8);
  EXPECT_FALSE(platformComputerName(name, error));
  EXPECT_EQ(error, 111);
  EXPECT_EQ(type + name, "before");
  EXPECT_EQ(bytes, 0u);
}

}  // namespace
}  // namespace kdx
