// Internal to the library: copies the addresses that the system's resolver returns out of its linked list.

#ifndef KDXCOMMON_OS_RESOLVED_ADDRESSES_H_
#define KDXCOMMON_OS_RESOLVED_ADDRESSES_H_

#include <memory>
#include <vector>

#include "kdxcommon/os/operating_system.h"

namespace kdx::os {

/// Returns copies of the entries of `chain`, the system's linked list, and releases it with `freeChain`. The resolver
/// repeats each address for each kind of socket; only the first kind is copied. Throws only std::bad_alloc.
template <typename SystemEntry>
std::vector<addrinfo> takeAddresses(SystemEntry* chain, void (*freeChain)(SystemEntry*)) {
  const std::unique_ptr<SystemEntry, decltype(freeChain)> owner(chain, freeChain);
  std::vector<addrinfo> addresses;
  for (const SystemEntry* entry = chain; entry; entry = entry->ai_next) {
    if (entry->ai_socktype != chain->ai_socktype) continue;
    const auto* bytes = reinterpret_cast<const unsigned char*>(entry->ai_addr);
    addresses.push_back({.ai_family = entry->ai_family, .ai_addr = {bytes, bytes + entry->ai_addrlen}});
  }
  return addresses;
}

}  // namespace kdx::os

#endif  // KDXCOMMON_OS_RESOLVED_ADDRESSES_H_
