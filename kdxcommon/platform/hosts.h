// Names and addresses of hosts: those of the local host, and three lookups between a name and an address, each through
// a different interface: the socket layer, the in-house network layer, the resolver.
//
//   kdx::ZQLastError error;
//   kdx::string address;
//   if (!kdx::platformGetIPbyHostname("files.example.com", address, error)) report(error.message());
//
//   std::set<kdx::string> names;   // contains the address itself if it has no name
//   if (kdx::platformGetHostnamesByIPAddr("10.1.2.3", names, error)) use(names);
//
// Thread safety: the operations keep no state and may be called from any thread; a lookup blocks its thread until the
// resolver returns. On failure they return false and set the error argument: to 0x56000002 for an invalid argument,
// otherwise to the error number of the system or of its resolver (on POSIX one of the negative EAI_ numbers), whose
// text comes from the system. Throws only std::bad_alloc.
//
// On Windows the operations that are documented to start the socket layer do so on each call (`WSAStartup`), and none
// of them stops it.

#ifndef KDXCOMMON_PLATFORM_HOSTS_H_
#define KDXCOMMON_PLATFORM_HOSTS_H_

#include <cstdint>
#include <set>
#include <vector>

#include "kdxcommon/base/export.h"
#include "kdxcommon/base/string_types.h"

namespace kdx {

class ZQLastError;

/// A host as the socket layer describes it, with only the first of its addresses.
struct LD_hostent_s {
  string name;                      ///< the official name; empty if there is none
  std::vector<string> aliases;      ///< other names, in the socket layer's order
  std::int32_t addressType = 0;     ///< the address family: 2 is IPv4
  std::uint32_t addressNumber = 0;  ///< the address; its first octet is the most significant
  string addressText;               ///< the address as "10.1.2.3"
};

/// Sets `name` to the local host's name in the socket layer (`gethostname`), up to 257 bytes in the system's narrow
/// encoding. Starts the socket layer. On failure `name` is unchanged, and `lastError`, unless null, is set to a
/// critical error with the system's last error.
KDX_EXPORT bool platformGethostname(string& name, ZQLastError* lastError);

/// Sets `hostid` to the first address of the local host (`gethostname`, `gethostbyname`) as a number, with the first
/// octet as the most significant: 0x0A010203 for 10.1.2.3. The number has as many octets as the address, at most four;
/// 0 if the host has no address. Starts the socket layer. On failure sets `error` to the system's last error and
/// `hostid` to 0; if the socket layer can't be started, `hostid` is unchanged. On success `error` is unchanged.
KDX_EXPORT bool platformHostid(std::uint32_t& hostid, int& error);

/// Sets `host` to the host with the name or textual IPv4 address `hostName` (`gethostbyname`); IPv4 only. The aliases
/// are appended to those already in `host`, all other fields are replaced. An address of fewer than four octets, or
/// none, is padded with zeros at its end. Starts the socket layer. On failure `host` is unchanged, and `lastError`,
/// unless null, is set to a critical error: 0x56000002 for an empty name, otherwise the system's last error.
KDX_EXPORT bool platformGethostbynameV2(const string& hostName, LD_hostent_s& host, ZQLastError* lastError);

/// Sets `address` to the first address of a host, IPv4 or IPv6, as text, from the in-house network layer (`CJxIPAddr`).
/// On failure `address` is unchanged, and `lastError` is set to a critical error: 0x56000002 if the name is empty or
/// has no address, otherwise the layer's error code.
KDX_EXPORT bool platformGetIPbyHostname(const string& hostName, string& address, ZQLastError& lastError);

/// Sets `hostNames` to the names of a textual IPv4 address, or of the addresses of a host whose name contains a dot
/// (`getaddrinfo`, `getnameinfo`). For an address without a name the resolver may return that address. If `getnameinfo`
/// fails, the failure is logged, and the set contains `address` itself. On failure `hostNames` is empty, and
/// `lastError` is set to a critical error 0x56000002 if `address` contains neither a dot nor a colon, or to a major
/// error with the resolver's code if the resolver doesn't know `address`, as is the case for every IPv6 address. On
/// Windows the socket layer must have been started before.
KDX_EXPORT bool platformGetHostnamesByIPAddr(const string& address, std::set<string>& hostNames,
                                             ZQLastError& lastError);

}  // namespace kdx

#endif  // KDXCOMMON_PLATFORM_HOSTS_H_
