#include "kdxcommon/inhouse/clusterutils/cluster.h"

#include "kdxcommon/inhouse/copy_text.h"
#include "kdxcommon/inhouse/embedded_site.h"

namespace kdx {

int IsMachineClusterConfigured(int* state) {
  const std::optional<int> known = EmbeddedSite::current().clusterState();
  if (!known) return 0;
  *state = *known;
  return 1;
}

int IsGetGroupNameFromFQDN(const char* hostName, char* groupName) {
  return copyText(EmbeddedSite::current().clusterGroup(hostName), groupName, kClusterGroupNameSize);
}

}  // namespace kdx
