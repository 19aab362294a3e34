#include "kdxcommon/logging/critical_section_traits.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

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

  int count = 0;
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&] {
      for (int round = 0; round < 5000; ++round) {
        lock.enter(true);
        ++count;
        lock.leave();
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(count, 20000);
}

TEST(MDPrimitives, TellTheTimeOfTheirSource) {
  MDEvent event(7);
  const MDEvent source(INT64_MIN);
  EXPECT_EQ((event = source).getLastTimeAcquired(), INT64_MIN);
  EXPECT_EQ(MDLock().getLastTimeAcquired() + MDMutex(8).getLastTimeAcquired(), 8);
}

}  // namespace
}  // namespace kdx
