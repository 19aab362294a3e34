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
  /// Non-zero with `*value` set to the key's number; 0 with `*value` untouched where the key is missing.
  int getNumber(const char* section, const char* key, std::uint32_t* value) const;

  /// Non-zero with the name of the client's host written into `buffer`, which has `size` bytes; 0 with it untouched
  /// where the client is unknown or the name doesn't fit with the zero behind it.
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
