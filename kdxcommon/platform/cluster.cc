#include "kdxcommon/platform/cluster.h"

#include "kdxcommon/inhouse/clusterutils/cluster.h"
#include "kdxcommon/inhouse/zqbasiclib/platform_info.h"
#include "kdxcommon/inhouse/zqfocus/focus.h"
#include "kdxcommon/logging/function_logger.h"

namespace kdx {
namespace {

bool askCluster(const FunctionLogger& log, bool& configured) {
  int state = 0;
  if (IsMachineClusterConfigured(&state) == 0) {
    log(0, "Error on IsMachineClusterConfigured.");
    return false;
  }
  configured = state > 0;
  return true;
}

}  // namespace

bool platformClustered(bool& clustered, ZQLastError* /*lastError*/) {
  const FunctionLogger log("platformClustered()");
  clustered = false;
  return askCluster(log, clustered);
}

bool platformClusteredForCN(bool& clustered, string& groupName, ZQLastError* /*lastError*/) {
  constexpr std::uint32_t kHostNameSize = 1024;
  const FunctionLogger log("platformClusteredForCN()");
  clustered = false;
  bool configured = false;
  if (!askCluster(log, configured)) return false;
  if (!configured) return true;

  char hostName[kHostNameSize] = {};
  const ZQPlatformInfo platformInfo;
  if (platformInfo.getClientHostName(ZQPI_Focus::getFocusClientName(true), hostName, kHostNameSize) == 0) {
    log(0, "Error obtaining client host name.");
    return false;
  }
  char group[kClusterGroupNameSize] = {};
  if (IsGetGroupNameFromFQDN(hostName, group) == 0) {
    log(0, "Failed to get the group name for cn [%s] as hostname [%s].", ZQPI_Focus::getFocusClientName(true),
        hostName);
    return false;
  }
  clustered = true;
  groupName = group;
  return true;
}

}  // namespace kdx
