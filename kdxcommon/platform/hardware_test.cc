#include "kdxcommon/platform/hardware.h"

#include <gtest/gtest.h>

#include "kdxcommon/testing/fake_machine.h"

namespace kdx {
namespace {

TEST(Hardware, MemoryIsRoundedUpAndNamesFitTheirBuffer) {
  constexpr std::uint64_t kMebibyte = 1048576, kEight = 8192 * kMebibyte;
  testing::FakeMachine machine;
  const ScopedOperatingSystem scope(machine);
  int error = 7;
  std::uint64_t bytes = 0;
  for (const auto& [memory, expected] : {std::pair(kEight, kEight + kMebibyte), {kEight - 1000, kEight}}) {
    machine.memory = memory;
    EXPECT_TRUE(platformSystemRAM(bytes, error));
    EXPECT_EQ(bytes, expected);
  }
  string name;
  for (const std::size_t length : {0, 1024, 2000}) {
    machine.computerName.assign(length, 'c');
    EXPECT_TRUE(platformComputerName(name, error));
    EXPECT_EQ(name, string(std::min<std::size_t>(length, 1024), 'c'));
  }
  EXPECT_EQ(error, 7);

  machine.failing = {{"GetVersionExA148", 120}, {"GlobalMemoryStatusEx", 8}, {"GetComputerNameA", 111}};
  string type = "before";
  EXPECT_TRUE(!platformTypeOfCPU(type, error) && error == 120 && type.empty());
  EXPECT_TRUE(!platformSystemRAM(bytes, error) && error == 8 && bytes == 0);
  EXPECT_TRUE(!platformComputerName(name, error) && error == 111 && name.size() == 1024);
}

}  // namespace
}  // namespace kdx
