// Whether the machine belongs to a cluster, and which cluster group a host belongs to, from the embedded site.
// Thread-safe. On failure the functions return 0 and leave their outputs unchanged. They throw only std::bad_alloc.
//
//   int state = 0;
//   char group[kdx::kClusterGroupNameSize] = {};
//   if (kdx::IsMachineClusterConfigured(&state) && state > 0 && kdx::IsGetGroupNameFromFQDN(host, group)) use(group);

#ifndef KDXCOMMON_INHOUSE_CLUSTERUTILS_CLUSTER_H_
#define KDXCOMMON_INHOUSE_CLUSTERUTILS_CLUSTER_H_

#include <cstddef>

#include "kdxcommon/base/export.h"

namespace kdx {

/// The size in bytes of the buffer that `IsGetGroupNameFromFQDN` needs, including the terminating NUL.
inline constexpr std::size_t kClusterGroupNameSize = 1024;

/// Sets `*state`, which must not be null: above 0 if a cluster is configured on this machine. Returns non-zero on
/// success.
KDX_EXPORT int IsMachineClusterConfigured(int* state);

/// Writes the name of the host's cluster group into `groupName`, NUL-terminated. Returns non-zero on success, 0 if the
/// host has no group or its name is too long. Neither argument may be null.
KDX_EXPORT int IsGetGroupNameFromFQDN(const char* hostName, char* groupName);

}  // namespace kdx

#endif  // KDXCOMMON_INHOUSE_CLUSTERUTILS_CLUSTER_H_
