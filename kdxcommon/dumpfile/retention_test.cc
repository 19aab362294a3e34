// What stands in the directory after any mixture of dumps, limits and ages is in fuzz/dump_retention_fuzz.cc; here are
// ages that no clock reaches.

#include "kdxcommon/dumpfile/retention.h"

#include <gtest/gtest.h>

namespace kdx {
namespace {

TEST(Retention, HoldsAgesWithin32Bits) {
  constexpr std::int64_t kDay = 86400;
  EXPECT_EQ(ageInDays(kDay << 32, 0), INT32_MAX);
  EXPECT_EQ(ageInDays(1, INT64_MAX), INT32_MIN);
}

}  // namespace
}  // namespace kdx
