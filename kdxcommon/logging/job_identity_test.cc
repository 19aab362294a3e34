// What the registry behind it holds is in fuzz/job_registry_fuzz.cc.

#include "kdxcommon/logging/job_identity.h"

#include <gtest/gtest.h>

#include <thread>

namespace kdx {
namespace {

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
