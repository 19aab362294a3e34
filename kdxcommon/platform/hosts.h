// Names and addresses of hosts: the local host's own, and three lookups between a name and an address, each by a road
// of its own: the socket layer, the in-house network layer, the resolver.
//
//   kdx::ZQLastError error;
//   kdx::string address;
//   if (!kdx::platformGetIPbyHostname("files.example.com", address, error)) report(error.message());
//
//   std::set<kdx::string> names;   // an address without a name stands for itself
//   if (kdx::platformGetHostnamesByIPAddr("10.1.2.3", names, error)) use(names);
//
// Thread rule: no state of their own, any thread; a lookup blocks its thread for as long as the resolver takes. Failure
// rule: false, and the error argument says why: 0x56000002 for a bad argument, else the number of the system or of its
// resolver (on POSIX one of its negative EAI_ numbers), whose text is the system's. Nothing throws but an allocation.
//
// On Windows the operations that say so start the socket layer, each call once more, and none of them stops it.

#ifndef KDXCOMMON_PLATFORM_HOSTS_H_
#define KDXCOMMON_PLATFORM_HOSTS_H_

#include <cstdint>
#include <set>
#include <vector>

#include "kdxcommon/base/export.h"
#include "kdxcommon/base/string_types.h"

namespace kdx {

class ZQLastError;

/// What the socket layer knows of a host. Of its addresses it holds the first.
struct LD_hostent_s {
  string name;                      ///< the official name; empty where the layer has none
  std::vector<string> aliases;      ///< further names, in the layer's order
  std::int32_t addressType = 0;     ///< the address family: 2 is IPv4
  std::uint32_t addressNumber = 0;  ///< the address, its first octet highest
  string addressText;               ///< the address as "10.1.2.3"
};

/// The local host's name as the socket layer has it (`gethostname`): its first 257 bytes, in the system's narrow
/// encoding. Starts the socket layer. On failure `name` stays, and `lastError`, unless null, becomes critical.
KDX_EXPORT bool platformGethostname(string& name, ZQLastError* lastError);

/// The first address of the local host (`gethostname`, `gethostbyname`) as a number, first octet highest: 0x0A010203
/// for 10.1.2.3, as many octets as the address has, four at most; 0 where the host has no address at all. Starts the
/// socket layer. On failure `error` becomes the system's last error, and `hostid` 0, unless the socket layer can't be
/// started: then it stays. On success `error` stays.
KDX_EXPORT bool platformHostid(std::uint32_t& hostid, int& error);

/// The host of that name, or IPv4 address in text, as the socket layer knows it (`gethostbyname`), IPv4 only. The
/// aliases are appended to those that `host` holds already, all else is replaced; an address of less than four octets
/// has zeros behind, and so has a host without one. Starts the socket layer. On failure `host` stays, and `lastError`,
/// unless null, becomes critical: 0x56000002 for an empty name, else the system's last error.
KDX_EXPORT bool platformGethostbynameV2(const string& hostName, LD_hostent_s& host, ZQLastError* lastError);

/// The first address of a host, IPv4 or IPv6, as the in-house network layer gives it (`CJxIPAddr`). On failure
/// `address` stays and `lastError` becomes critical: 0x56000002 for an empty name or one without an address, else the
/// layer's code.
KDX_EXPORT bool platformGetIPbyHostname(const string& hostName, string& address, ZQLastError& lastError);

/// The names behind an IPv4 address in text, or behind the addresses of a host whose name has a point in it
/// (`getaddrinfo`, `getnameinfo`). `hostNames` becomes the set of them; where an address has no name the resolver may
/// give that address, and where it fails, which the log tells, `address` itself stands in the set. On failure the set
/// is empty and `lastError` becomes critical with 0x56000002 for a text with neither a point nor a colon, or major with
/// the resolver's code for one that it doesn't know; so for every IPv6 address. On Windows the socket layer must have
/// been started before.
KDX_EXPORT bool platformGetHostnamesByIPAddr(const string& address, std::set<string>& hostNames,
                                             ZQLastError& lastError);

}  // namespace kdx

#endif  // KDXCOMMON_PLATFORM_HOSTS_H_
