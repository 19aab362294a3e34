#include "kdxcommon/platform/cluster.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "kdxcommon/inhouse/zqlib/last_error.h"
#include "kdxcommon/testing/recording_line_sink.h"

namespace kdx {
namespace {

TEST(Cluster, AnswersAsTheSiteKnows) {
  const string unasked = "Error on IsMachineClusterConfigured.", noHost = "Error obtaining client host name.";
  const string noGroup = "Failed to get the group name for cn [cn] as hostname [cn.example.com].";
  const string longest(1023, 'x'), tooLong(1024, 'x');
  // Cluster state, host and group (empty: unknown), answered, line.
  const std::tuple<std::optional<int>, string, string, bool, string> rows[] = {
      {std::nullopt, "h", "g", false, unasked},
      {0, "h", "g", true, ""},
      {-1, "", "", true, ""},
      {1, "", "g", false, noHost},
      {1, tooLong, "g", false, noHost},
      {1, "cn.example.com", "", false, noGroup},
      {1, "cn.example.com", tooLong, false, noGroup},
      {7, longest, longest, true, ""}};
  EmbeddedSite& site = EmbeddedSite::current();
  const testing::ScopedLog log(0);
  site.setFocusClientName("cn");
  for (const auto& [state, host, group, answered, failure] : rows) {
    site.setClusterState(state);
    if (!host.empty()) site.setClientHostName("cn", host);
    if (!group.empty()) site.setClusterGroup(host, group);
    ZQLastError lastError(5, ZQLE_MINOR);
    bool configured = true, clustered = true;
    string groupName = "before", lines;
    EXPECT_EQ(platformClustered(configured, nullptr), state.has_value());
    EXPECT_EQ(configured, state > 0);
    EXPECT_EQ(platformClusteredForCN(clustered, groupName, &lastError), answered);
    EXPECT_EQ(clustered, state == 7);
    EXPECT_EQ(groupName, clustered ? group : "before");
    for (const auto& line : log->take()) lines += line.function + ' ' + line.text;
    EXPECT_EQ(lines, (state ? "" : "platformClustered() " + unasked) +
                         (failure.empty() ? "" : "platformClusteredForCN() " + failure));
    EXPECT_TRUE(lastError.number() == 5 && lastError.isMinor());
    site.removeClient("cn");
    site.removeClusterGroup(host);
  }
  site.setFocusClientName("");
  site.setClusterState(0);
}

}  // namespace
}  // namespace kdx
