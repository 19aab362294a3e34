#include <gtest/gtest.h>

#include <sstream>

#include "kdxcommon/platform/hardware.h"
#include "kdxcommon/platform/os_identity.h"
#include "kdxcommon/testing/fake_machine.h"

namespace kdx {
namespace {

// Architecture, major version, type, count, text of uname and of the processor's type.
constexpr char kProcessors[] = R"(
0 4 586 1 Intel: x86 Family 6 Model 15 Stepping 11| x86 Family 6 Model 15 Stepping 11;
0 6 0 2 Intel: x86 Family 6 Model 15 Stepping 11: CPUs 2| x86 Family 6 Model 15 Stepping 11: CPUs 2;
0 3 586 2 Intel: x86 Family| x86 Family;    0 3 486 2 Intel: | ;    1 4 0 2 MIPS|MIPS;    3 4 0 2 PPC|PPC;
2 3 0 1 Alpha 6|Alpha 6;                    2 3 0 4 Alpha 6: CPUs 4|Alpha 6: CPUs 4;
6 4 0 0 Intel: |Itanium Family 6;           6 4 0 2 Intel: : CPUs 2|Itanium Family 6: CPUs 2;
6 5 0 2 Intel: Itanium Family 6: CPUs 2|Itanium Family 6: CPUs 2;
9 3 8664 8 ??? ???|x64 Family 6;            9 4 8664 8 ??? ???|x64 Family 6: CPUs 8;
4 6 0 2 ??? ???|??? ???;    5 6 0 2 ??? ???|??? ???;    7 6 0 2 ??? ???|??? ???;
8 6 0 2 ??? ???|??? ???;    10 6 0 2 ??? ???|??? ???;)";

TEST(ProcessorText, EveryProcessorHasTwoTexts) {
  testing::FakeMachine machine;
  const ScopedOperatingSystem scope(machine);
  SYSTEM_INFO& processor = machine.processor = {.wProcessorLevel = 6, .wProcessorRevision = 0x0F0B};
  std::istringstream rows(kProcessors);
  int count = 0, error = 7;
  for (string expected, type; rows >> processor.wProcessorArchitecture >> machine.version.dwMajorVersion >>
                              processor.dwProcessorType >> processor.dwNumberOfProcessors >> std::ws;
       ++count) {
    LD_utsname_s uname;
    EXPECT_TRUE(platformUname(uname, nullptr) && platformTypeOfCPU(type, error));
    std::getline(rows, expected, ';');
    EXPECT_EQ(uname.machine + ('|' + type), expected);
  }
  EXPECT_EQ(count, 18);
}

}  // namespace
}  // namespace kdx
