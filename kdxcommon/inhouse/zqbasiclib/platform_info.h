// ZQPlatformInfo reads what the installation has set: numbers by section and key, hosts of clients. ZQPI_Base keeps the
// installation's records readable while a look-up needs them.
//
//   std::uint32_t limit = 1;   // the default
//   kdx::ZQPlatformInfo().getNumber("KDX", "nDUMPFILELIMIT", &limit);
//
// All of it comes from the embedded site. Any thread may use an object of its own at any time; nothing throws but an
// allocation.

#ifndef KDXCOMMON_INHOUSE_ZQBASICLIB_PLATFORM_INFO_H_
#define KDXCOMMON_INHOUSE_ZQBASICLIB_PLATFORM_INFO_H_

#include <cstdint>

#include "kdxcommon/base/export.h"

namespace kdx {

/// The installation's settings. An object holds nothing.
class KDX_EXPORT ZQPlatformInfo {
 public:
  /// Sets `*value` to the key's number and returns non-zero; returns 0 and leaves `*value` unchanged if the key is
  /// missing. A null `section` or `key` is the empty name.
  int getNumber(const char* section, const char* key, std::uint32_t* value) const;

  /// Writes the name of the client's host into `buffer`, which has `size` bytes, and returns non-zero. Returns 0 and
  /// leaves `buffer` unchanged if the client is unknown or the name doesn't fit with its terminating NUL. A null
  /// `clientName` is the empty name.
  int getClientHostName(const char* clientName, char* buffer, std::uint32_t size) const;
};

/// Hold one while asking for a subclient's directory. The embedded site is readable at any time, so there is nothing to
/// do.
class KDX_EXPORT ZQPI_Base {
 public:
  ZQPI_Base();
  ~ZQPI_Base();
  ZQPI_Base(const ZQPI_Base&) = delete;
  ZQPI_Base& operator=(const ZQPI_Base&) = delete;
};

}  // namespace kdx

#endif  // KDXCOMMON_INHOUSE_ZQBASICLIB_PLATFORM_INFO_H_
