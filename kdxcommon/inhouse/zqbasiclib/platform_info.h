// ZQPlatformInfo reads the installation's settings: numbers by section and key, hosts of clients. ZQPI_Base keeps the
// installation's records readable during a look-up.
//
//   std::uint32_t limit = 1;   // the default
//   kdx::ZQPlatformInfo().getNumber("KDX", "nDUMPFILELIMIT", &limit);
//
// All data come from the embedded site. Thread-safe. Throws only std::bad_alloc.

#ifndef KDXCOMMON_INHOUSE_ZQBASICLIB_PLATFORM_INFO_H_
#define KDXCOMMON_INHOUSE_ZQBASICLIB_PLATFORM_INFO_H_

#include <cstdint>

#include "kdxcommon/base/export.h"

namespace kdx {

/// The installation's settings. An object has no state.
class KDX_EXPORT ZQPlatformInfo {
 public:
  /// Sets `*value` to the key's number and returns non-zero; returns 0 and leaves `*value` unchanged if the key is
  /// missing. A null `section` or `key` is the empty name; `value` must not be null.
  int getNumber(const char* section, const char* key, std::uint32_t* value) const;

  /// Writes the name of the client's host into `buffer`, which has `size` bytes, and returns non-zero. Returns 0 and
  /// leaves `buffer` unchanged if the client is unknown or the name doesn't fit with its terminating NUL. A null
  /// `clientName` is the empty name.
  int getClientHostName(const char* clientName, char* buffer, std::uint32_t size) const;
};

/// Keep an object of this class while reading a subclient's directory. The embedded site is always readable, so it does
/// nothing.
class KDX_EXPORT ZQPI_Base {
 public:
  ZQPI_Base();
  ~ZQPI_Base();
  ZQPI_Base(const ZQPI_Base&) = delete;
  ZQPI_Base& operator=(const ZQPI_Base&) = delete;
};

}  // namespace kdx

#endif  // KDXCOMMON_INHOUSE_ZQBASICLIB_PLATFORM_INFO_H_
