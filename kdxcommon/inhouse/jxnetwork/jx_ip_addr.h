// CJxIPAddr: a host's addresses, of IPv4 and IPv6, as texts.
//
//   std::vector<kdx::CJxIPAddr> addresses;
//   kdx::CJxString text;
//   if (kdx::CJxIPAddr::GetAllByName("localhost", addresses, kdx::IP_FAMILY_ANY).IsErrorSet()) ...
//   for (const kdx::CJxIPAddr& address : addresses) if (!address.GetAddressString(text).IsErrorSet()) use(text);
//
// Thread safety: that of std::vector; lookups may run on any thread at once. A failed operation returns the resolver's
// or the system's error number, or CJxError::kNoSystemCode where there is none, and leaves its argument unchanged.
// Throws only std::bad_alloc.

#ifndef KDXCOMMON_INHOUSE_JXNETWORK_JX_IP_ADDR_H_
#define KDXCOMMON_INHOUSE_JXNETWORK_JX_IP_ADDR_H_

#include <vector>

#include "kdxcommon/base/export.h"
#include "kdxcommon/inhouse/jxutils/jx_error.h"
#include "kdxcommon/inhouse/jxutils/jx_string.h"

namespace kdx {

/// The addresses to look for.
enum IP_FAMILY : int { IP_FAMILY_ANY = 0 };

/// One address of a host, or none.
class KDX_EXPORT CJxIPAddr {
 public:
  /// No address.
  CJxIPAddr() = default;

  /// Sets `addresses` to those of the host `name`, or to the one that `name` spells, in the resolver's own order
  /// (`getaddrinfo`). Starts the socket layer first. `name` must not be null; otherwise the call fails.
  static CJxError GetAllByName(const char* name, std::vector<CJxIPAddr>& addresses, IP_FAMILY family);

  /// Sets `text` to the address, "10.1.2.3" or an IPv6 address in its shortest form with its scope if it has one
  /// (`getnameinfo`). Fails if this object holds no address.
  CJxError GetAddressString(CJxString& text) const;

 private:
  std::vector<unsigned char> socketAddress_;  // the system's own record
};

}  // namespace kdx

#endif  // KDXCOMMON_INHOUSE_JXNETWORK_JX_IP_ADDR_H_
