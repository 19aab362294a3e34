// The cluster that the machine belongs to: whether there is one, and which of its groups contains the client in focus.
// Both facts come from the in-house cluster library.
//
//   bool clustered = false;
//   kdx::string group;
//   if (kdx::platformClusteredForCN(clustered, group, nullptr) && clustered) store(group);
//
// Thread safety: the operations keep no state and may be called from any thread. The result is whether the call
// succeeded, not the fact itself; a failure is logged at level 0 with its reason. `lastError` is never written and may
// be null. Throws only std::bad_alloc.

#ifndef KDXCOMMON_PLATFORM_CLUSTER_H_
#define KDXCOMMON_PLATFORM_CLUSTER_H_

#include "kdxcommon/base/export.h"
#include "kdxcommon/base/string_types.h"

namespace kdx {

class ZQLastError;

/// Sets `clustered` to whether a cluster is configured on this machine (`IsMachineClusterConfigured`), and to false on
/// failure.
KDX_EXPORT bool platformClustered(bool& clustered, ZQLastError* lastError);

/// Sets `clustered` to whether the host of the client in focus belongs to a group of this machine's cluster, and if so
/// sets `groupName` to the name of that group (`IsGetGroupNameFromFQDN`). Otherwise `groupName` is unchanged. On a
/// machine without a cluster `clustered` is false, and the result is true. Returns false and sets `clustered` to false
/// if the cluster library fails, if the client's host isn't known (`getClientHostName`) or if that host is in no group.
KDX_EXPORT bool platformClusteredForCN(bool& clustered, string& groupName, ZQLastError* lastError);

}  // namespace kdx

#endif  // KDXCOMMON_PLATFORM_CLUSTER_H_
