#include "kdxcommon/platform/cluster.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>

#include "kdxcommon/inhouse/zqlib/last_error.h"
#include "kdxcommon/testing/recording_line_sink.h"

namespace kdx {
namespace {

TEST(Cluster, AnswersAsTheSiteKnows) {
  constexpr char kUnasked[] = "Error on IsMachineClusterConfigured.";
  constexpr char kNoHost[] = "Error obtaining client host name.";
  constexpr char kNoGroup[] = "Failed to get the group name for cn [cn] as hostname [cn.example.com].";
  const struct {
    std::optional<int> state;
    string host, group;  // empty: unknown
    bool answered, grouped;
    string groupName, line;
  } rows[] = {
      {std::nullopt, "cn.example.com", "g", false, false, "before", kUnasked},
      {0, "cn.example.com", "g", true, false, "before", ""},
      {-1, "", "", true, false, "before", ""},
      {1, "", "g", false, false, "before", kNoHost},
      {1, string(1024, 'h'), "g", false, false, "before", kNoHost},
      {1, "cn.example.com", "", false, false, "before", kNoGroup},
      {1, "cn.example.com", string(1024, 'g'), false, false, "before", kNoGroup},
      {7, string(1023, 'h'), string(1023, 'g'), true, true, string(1023, 'g'), ""},
  };
  EmbeddedSite& site = EmbeddedSite::current();
  const testing::ScopedLog log(0);
  for (const auto& row : rows) {
    site.setFocusClientName("cn");
    site.setClusterState(row.state);
    if (!row.host.empty()) site.setClientHostName("cn", row.host);
    if (!row.group.empty()) site.setClusterGroup(row.host, row.group);
    ZQLastError lastError(5, ZQLE_MINOR);
    for (ZQLastError* error : {&lastError, static_cast<ZQLastError*>(nullptr)}) {
      bool clustered = true;
      EXPECT_EQ(platformClustered(clustered, error), row.state.has_value());
      EXPECT_EQ(clustered, row.state > 0);
      for (const auto& line : log->take())
        EXPECT_EQ(line.function + line.text, string("platformClustered()") + kUnasked);

      string groupName = "before";
      clustered = true;
      EXPECT_EQ(platformClusteredForCN(clustered, groupName, error), row.answered);
      EXPECT_EQ(clustered, row.grouped);
      EXPECT_EQ(groupName, row.groupName);
      const auto lines = log->take();
      ASSERT_EQ(lines.size(), row.line.empty() ? 0u : 1u);
      if (!lines.empty()) {
        EXPECT_EQ(lines[0].function + lines[0].text, "platformClusteredForCN()" + row.line);
      }
    }
    EXPECT_TRUE(lastError.number() == 5 && lastError.isMinor());
    site.removeClient("cn");
    site.removeClusterGroup(row.host);
  }
  site.setFocusClientName("");
  site.setClusterState(0);
}

}  // namespace
}  // namespace kdx
