#include "kdxcommon/platform/cluster.h"

#include <gtest/gtest.h>

#include "kdxcommon/base/job_id.h"
#include "kdxcommon/testing/recording_line_sink.h"

namespace kdx {
namespace {

TEST(Cluster, AnswersAsTheSiteKnows) {
  const string longest(1023, 'x'), tooLong(1024, 'x');
  // Cluster state; host and group of the client in focus; what is logged, where there is no answer.
  const std::tuple<std::optional<int>, string, string, string> rows[] = {
      {std::nullopt, "h", "g", "Error on IsMachineClusterConfigured."},
      {0, "h", "g", ""},
      {-1, tooLong, tooLong, ""},
      {1, tooLong, "g", "Error obtaining client host name."},
      {1, "h", tooLong, "Failed to get the group name for cn [cn] as hostname [h]."},
      {7, longest, string(1023, 'y'), ""}};
  EmbeddedSite& site = EmbeddedSite::current();
  const testing::ScopedLog log(0);
  site.setFocusClientName("cn");
  for (const auto& [state, host, group, text] : rows) {
    site.setClusterState(state);
    site.setClientHostName("cn", host);
    site.setClusterGroup(host, group);
    bool configured = true, clustered = true;
    string groupName = "before";
    std::vector<testing::LoggedLine> lines;
    if (!state) lines.push_back({0, "platformClustered()", UNDEFINED_JOB_ID, "", text});
    if (!text.empty()) lines.push_back({0, "platformClusteredForCN()", UNDEFINED_JOB_ID, "", text});
    EXPECT_EQ(platformClustered(configured, nullptr), state.has_value());
    EXPECT_EQ(platformClusteredForCN(clustered, groupName, nullptr), text.empty());
    EXPECT_TRUE(configured == (state > 0) && clustered == (state == 7)) << text;
    EXPECT_EQ(groupName, clustered ? group : "before");
    EXPECT_EQ(log->take(), lines);
  }
  site.setFocusClientName("");
  site.setClusterState(0);
}

}  // namespace
}  // namespace kdx
