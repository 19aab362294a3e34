#include "kdxcommon/platform/cluster.h"

#include <gtest/gtest.h>

#include "kdxcommon/testing/recording_line_sink.h"

namespace kdx {
namespace {

TEST(Cluster, AnswersAsTheSiteKnows) {
  const string longest(1023, 'x'), tooLong(1024, 'x');
  const struct {
    std::optional<int> state;
    string host, group;  // of the client in focus
    bool answered;
    const char* lines;
  } rows[] = {{std::nullopt, "h", "g", false,
               "0 platformClustered() Error on IsMachineClusterConfigured.\n"
               "0 platformClusteredForCN() Error on IsMachineClusterConfigured.\n"},
              {0, "h", "g", true, ""},
              {-1, tooLong, tooLong, true, ""},
              {1, tooLong, "g", false, "0 platformClusteredForCN() Error obtaining client host name.\n"},
              {1, "h", tooLong, false,
               "0 platformClusteredForCN() Failed to get the group name for cn [cn] as hostname [h].\n"},
              {7, longest, longest, true, ""}};
  EmbeddedSite& site = EmbeddedSite::current();
  const testing::ScopedLog log(0);
  site.setFocusClientName("cn");
  for (const auto& row : rows) {
    site.setClusterState(row.state);
    site.setClientHostName("cn", row.host);
    site.setClusterGroup(row.host, row.group);
    bool configured = true, clustered = true;
    string group = "before", lines;
    EXPECT_EQ(platformClustered(configured, nullptr), row.state.has_value());
    EXPECT_EQ(configured, row.state > 0);
    EXPECT_EQ(platformClusteredForCN(clustered, group, nullptr), row.answered);
    EXPECT_EQ(clustered, row.state == 7);
    EXPECT_EQ(group, clustered ? row.group : "before");
    for (const auto& line : log->take()) {
      lines += std::to_string(line.level.value()) + ' ' + line.function + ' ' + line.text + '\n';
    }
    EXPECT_EQ(lines, row.lines);
  }
  site.setFocusClientName("");
  site.setClusterState(0);
}

}  // namespace
}  // namespace kdx
