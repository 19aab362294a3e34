#include "kdxcommon/logging/job_identity.h"

#include <gtest/gtest.h>

#include <thread>

#include "kdxcommon/logging/job_registry.h"

namespace kdx {
namespace {

TEST(JobRegistry, KeepsOneEntryAThreadBehindItsCache) {
  JobRegistry registry;
  EXPECT_EQ(registry.removeJobID(1), 0);
  registry.addJobID(1, 55);
  EXPECT_EQ(registry.getJobID(2), UNDEFINED_JOB_ID);  // while thread 1 is cached
  registry.addJobID(2, -7);
  EXPECT_EQ(registry.getJobID(1), 55);  // from the map
  EXPECT_EQ(registry.getJobID(2), -7);
  registry.addJobID(1, 56);
  EXPECT_EQ(registry.removeJobID(2), -7);  // not the cached thread
  EXPECT_EQ(registry.removeJobID(1), 56);
  EXPECT_EQ(registry.getJobID(1), UNDEFINED_JOB_ID);
}

TEST(JobIdentity, BelongsToTheCallingThreadAndMonitorsDoNotNest) {
  setJobIDForCurrentThread(std::int64_t{-9'000'000'000});
  std::thread([] { EXPECT_EQ(getJobIDForCurrentThread(), UNDEFINED_JOB_ID); }).join();
  EvDebug debug;
  setJobIDForCurrentThread(debug);
  EXPECT_EQ(debug.getJobId(), -9'000'000'000);
  KDXJobIDForCurrentThreadMonitor outer(0xFFFFFFFF);
  EXPECT_EQ(getJobIDForCurrentThread(), 4294967295);
  { const KDXJobIDForCurrentThreadMonitor inner; }
  EXPECT_EQ(getJobIDForCurrentThread(), UNDEFINED_JOB_ID);
  outer.setJobID(0);
  EXPECT_EQ(getJobIDForCurrentThread(), 0);
}

}  // namespace
}  // namespace kdx
