// What the machine's cluster is, and which of its groups a host belongs to, as the embedded site knows it. Any thread
// may ask; a failure is 0, with what is to be filled untouched. Nothing throws but an allocation.
//
//   int state = 0;
//   char group[kdx::kClusterGroupNameSize] = {};
//   if (kdx::IsMachineClusterConfigured(&state) && state > 0 && kdx::IsGetGroupNameFromFQDN(host, group)) use(group);

#ifndef KDXCOMMON_INHOUSE_CLUSTERUTILS_CLUSTER_H_
#define KDXCOMMON_INHOUSE_CLUSTERUTILS_CLUSTER_H_

#include <cstddef>

#include "kdxcommon/base/export.h"

namespace kdx {

/// The bytes that the buffer of `IsGetGroupNameFromFQDN` needs, the zero behind the name among them.
inline constexpr std::size_t kClusterGroupNameSize = 1024;

/// Sets `*state`, above 0 where a cluster is configured on this machine. Non-zero on success.
KDX_EXPORT int IsMachineClusterConfigured(int* state);

/// Writes the name of the cluster group of the host into `groupName`. Non-zero on success; 0 where the host has none,
/// or one whose name doesn't fit.
KDX_EXPORT int IsGetGroupNameFromFQDN(const char* hostName, char* groupName);

}  // namespace kdx

#endif  // KDXCOMMON_INHOUSE_CLUSTERUTILS_CLUSTER_H_
