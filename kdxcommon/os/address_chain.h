// Internal to the library: a resolver's chain of addresses, copied into entries of ours.

#ifndef KDXCOMMON_OS_ADDRESS_CHAIN_H_
#define KDXCOMMON_OS_ADDRESS_CHAIN_H_

#include <memory>

#include "kdxcommon/os/operating_system.h"

namespace kdx::os {

/// An entry with the address that it points to.
struct AddressEntry : addrinfo {
  string address;
};

inline void freeAddressChain(addrinfo* chain) {
  while (chain) {
    const std::unique_ptr<AddressEntry> entry(static_cast<AddressEntry*>(chain));
    chain = chain->ai_next;
  }
}

/// A copy of the system's chain, for `freeAddressChain` to release.
template <typename SystemEntry>
addrinfo* copyAddressChain(const SystemEntry* found) {
  addrinfo* first = nullptr;
  addrinfo** end = &first;
  try {
    for (; found; found = found->ai_next, end = &(*end)->ai_next) {
      auto entry = std::make_unique<AddressEntry>();
      entry->address.assign(reinterpret_cast<const char*>(found->ai_addr), found->ai_addrlen);
      entry->ai_family = found->ai_family;
      entry->ai_addr = entry->address.data();
      entry->ai_addrlen = entry->address.size();
      *end = entry.release();
    }
  } catch (...) {
    freeAddressChain(first);
    throw;
  }
  return first;
}

}  // namespace kdx::os

#endif  // KDXCOMMON_OS_ADDRESS_CHAIN_H_
