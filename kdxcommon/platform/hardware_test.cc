#include "kdxcommon/platform/hardware.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <sstream>
#include <tuple>

#include "kdxcommon/platform/os_identity.h"
#include "kdxcommon/testing/fake_machine.h"

namespace kdx {
namespace {

using Hardware = testing::FakeMachine;

// Architecture, major version, type, count, text of uname and of the processor's type.
constexpr char kProcessors[] = R"(
0 4 586 1 Intel: x86 Family 6 Model 15 Stepping 11| x86 Family 6 Model 15 Stepping 11;
0 6 0 2 Intel: x86 Family 6 Model 15 Stepping 11: CPUs 2| x86 Family 6 Model 15 Stepping 11: CPUs 2;
0 3 586 2 Intel: x86 Family| x86 Family;    0 0 486 2 Intel: | ;    1 4 0 2 MIPS|MIPS;    3 4 0 2 PPC|PPC;
2 3 0 1 Alpha 6|Alpha 6;                    2 3 0 4 Alpha 6: CPUs 4|Alpha 6: CPUs 4;
6 4 0 0 Intel: |Itanium Family 6;           6 4 0 2 Intel: : CPUs 2|Itanium Family 6: CPUs 2;
6 5 0 2 Intel: Itanium Family 6: CPUs 2|Itanium Family 6: CPUs 2;
9 3 8664 8 ??? ???|x64 Family 6;            9 4 8664 8 ??? ???|x64 Family 6: CPUs 8;
4 6 0 2 ??? ???|??? ???;    5 6 0 2 ??? ???|??? ???;    7 6 0 2 ??? ???|??? ???;
8 6 0 2 ??? ???|??? ???;    10 6 0 2 ??? ???|??? ???;)";

TEST_F(Hardware, EveryProcessorHasTwoTexts) {
  processor = {.wProcessorLevel = 6, .wProcessorRevision = 0x0F0B};
  std::istringstream rows(kProcessors);
  int count = 0;
  for (string texts, type; rows >> processor.wProcessorArchitecture >> version.dwMajorVersion >>
                           processor.dwProcessorType >> processor.dwNumberOfProcessors >> std::ws;
       ++count) {
    LD_utsname_s uname;
    EXPECT_TRUE(platformUname(uname, nullptr) && platformTypeOfCPU(type, error));
    std::getline(rows, texts, ';');
    EXPECT_EQ(uname.machine + ('|' + type), texts);
  }
  EXPECT_EQ(count, 18);
}

TEST_F(Hardware, OnLinuxAProcessorHasItsOwnName) {
  const std::tuple<std::uint16_t, std::uint32_t, const char*, const char*> rows[] = {
      {9, 2, "AMD EPYC", "AMD EPYC Family 25 Model 17 Stepping 1: CPUs 2"},
      {0, 1, "VIA Nano", "VIA Nano Family 25 Model 17 Stepping 1"},
      {9, 1, "", "kind Family 25 Model 17 Stepping 1"},
      {12, 4, "unheard", "kind: CPUs 4"}};
  kernel.machine = "kind";
  string type;
  failing = {{"GetVersionExA148", ENOSYS}};
  for (const auto& [architecture, count, name, text] : rows) {
    processor = {architecture, count, 8664, 25, 0x1101};
    processorBrand = name;
    EXPECT_TRUE(platformTypeOfCPU(type, error));
    EXPECT_EQ(type, text);
  }
}

TEST_F(Hardware, MemoryIsRoundedUpAndTheNameFitsItsBuffer) {
  constexpr std::uint64_t kEight = 8589934592;
  std::uint64_t bytes = 0;
  string name;
  for (const auto& [physical, rounded] : {std::pair(kEight - 1000, kEight), {kEight, kEight + 1048576}}) {
    memory = physical;
    EXPECT_TRUE(platformSystemRAM(bytes, error) && bytes == rounded) << bytes;
  }
  ownName = string(2000, 'c');
  EXPECT_TRUE(platformComputerName(name, error) && name == string(1024, 'c'));
  EXPECT_EQ(error, 7);
}

}  // namespace
}  // namespace kdx
