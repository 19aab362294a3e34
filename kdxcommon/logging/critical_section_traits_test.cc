#include "kdxcommon/logging/critical_section_traits.h"

#include <gtest/gtest.h>

#include <thread>

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

}  // namespace
}  // namespace kdx
