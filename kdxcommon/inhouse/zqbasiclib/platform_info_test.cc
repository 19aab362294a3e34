#include "kdxcommon/inhouse/zqbasiclib/platform_info.h"

#include <gtest/gtest.h>

#include "kdxcommon/inhouse/embedded_site.h"

namespace kdx {
namespace {

TEST(PlatformInfo, TakesNullNamesForEmptyOnes) {
  std::uint32_t value = 5;
  char host[8] = "kept";
  const ZQPlatformInfo info;
  EXPECT_EQ(info.getNumber(nullptr, "key", &value), 0);
  EXPECT_EQ(info.getClientHostName(nullptr, host, sizeof host), 0);
  EXPECT_STREQ(host, "kept");
  EmbeddedSite::current().setNumber("", "", 7);
  EXPECT_NE(info.getNumber(nullptr, nullptr, &value), 0);
  EmbeddedSite::current().removeNumber("", "");
  EXPECT_EQ(value, 7u);
}

}  // namespace
}  // namespace kdx
