#include <gtest/gtest.h>

#include "kdxcommon/os/operating_system_wrapper.h"

namespace kdx {
namespace {

struct FixedClock : OperatingSystemWrapper {
  explicit FixedClock(std::int64_t now) : time(now) {}
  std::int64_t _time64(std::int64_t*) override { return time; }
  std::int64_t time;
};

TEST(ScopedOperatingSystemTest, ScopesNestAndGiveBackWhatStoodBefore) {
  OperatingSystem& machine = OperatingSystem::current();
  FixedClock outer(1), inner(2);
  {
    const ScopedOperatingSystem outerScope(outer);
    {
      const ScopedOperatingSystem innerScope(inner);
      EXPECT_EQ(OperatingSystem::current()._time64(nullptr), 2);
    }
    EXPECT_EQ(OperatingSystem::current()._time64(nullptr), 1);
    EXPECT_EQ(OperatingSystem::current().GetCurrentThreadId(), machine.GetCurrentThreadId());
  }
  EXPECT_EQ(&OperatingSystem::current(), &machine);
}

}  // namespace
}  // namespace kdx
