// CJxIPAddr: a host's addresses, of IPv4 and IPv6, as texts.
//
//   std::vector<kdx::CJxIPAddr> addresses;
//   kdx::CJxString text;
//   if (kdx::CJxIPAddr::GetAllByName("localhost", addresses, kdx::IP_FAMILY_ANY).IsErrorSet()) ...
//   for (const kdx::CJxIPAddr& address : addresses) if (!address.GetAddressString(text).IsErrorSet()) use(text);
//
// Thread rule: as std::vector; any thread may look names up. Failure rule: a failed operation gives the resolver's or
// the system's number, or CJxError::kNoSystemCode where there is none, with what it fills untouched. Nothing throws but
// an allocation.

#ifndef KDXCOMMON_INHOUSE_JXNETWORK_JX_IP_ADDR_H_
#define KDXCOMMON_INHOUSE_JXNETWORK_JX_IP_ADDR_H_

#include <vector>

#include "kdxcommon/base/export.h"
#include "kdxcommon/inhouse/jxutils/jx_error.h"
#include "kdxcommon/inhouse/jxutils/jx_string.h"

namespace kdx {

/// Which addresses to look for.
enum IP_FAMILY : int { IP_FAMILY_ANY = 0 };

/// One address of a host, or none.
class KDX_EXPORT CJxIPAddr {
 public:
  /// No address.
  CJxIPAddr() = default;

  /// Replaces `addresses` by those of the host `name`, or the one that `name` spells, in the resolver's own order
  /// (`getaddrinfo`). Starts the socket layer first. A null `name` is an error.
  static CJxError GetAllByName(const char* name, std::vector<CJxIPAddr>& addresses, IP_FAMILY family);

  /// Sets `text` to the address: "10.1.2.3", or an IPv6 one in its shortest form, with its scope if it has one
  /// (`getnameinfo`). An error where there is no address.
  CJxError GetAddressString(CJxString& text) const;

 private:
  std::vector<unsigned char> socketAddress_;  // the system's own record
};

}  // namespace kdx

#endif  // KDXCOMMON_INHOUSE_JXNETWORK_JX_IP_ADDR_H_
