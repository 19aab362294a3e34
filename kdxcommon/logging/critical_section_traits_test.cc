#include "kdxcommon/logging/critical_section_traits.h"

#include <gtest/gtest.h>

#include <thread>

#include "kdxcommon/logging/md_primitives.h"

namespace kdx {
namespace {

TEST(CriticalSectionTraitsConcurrency, IsOneRecursiveLock) {
  KDXCriticalSectionTraits section;
  JxCriticalSectionTraits& lock = section;
  const auto another = [&](bool free) {
    std::thread([&] {
      EXPECT_EQ(lock.enter(false), free);
      EXPECT_TRUE(lock.locked());
      if (free) lock.leave();
    }).join();
  };
  EXPECT_FALSE(lock.locked());
  EXPECT_TRUE(lock.enter(true) && lock.enter(false));
  lock.leave();
  another(false);
  lock.leave();
  another(true);
  EXPECT_FALSE(lock.locked());
}

TEST(MDPrimitives, ReturnTheTimeThatTheyWereGiven) {
  EXPECT_TRUE(MDLock(1).getLastTimeAcquired() == 1 && MDLock().getLastTimeAcquired() == 0);
  EXPECT_TRUE(MDEvent(2).getLastTimeAcquired() == 2 && MDMutex(3).getLastTimeAcquired() == 3);
}

}  // namespace
}  // namespace kdx
