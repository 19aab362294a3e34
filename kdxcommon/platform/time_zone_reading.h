// Internal to the library: the local zone's offsets. `platformGetTimeZone` adds the zone's names, which take most of
// its time.

#ifndef KDXCOMMON_PLATFORM_TIME_ZONE_READING_H_
#define KDXCOMMON_PLATFORM_TIME_ZONE_READING_H_

#include <cstdint>

namespace kdx {

/// The current offsets of the local zone. UTC is local time plus `biasSeconds` plus `daylightBiasSeconds`.
struct TimeZoneReading {
  bool readable = false;                 ///< whether the call succeeded; if not, the rest is meaningless
  std::int32_t biasSeconds = 0;          ///< of standard time, positive west of Greenwich
  bool daylightActive = false;           ///< daylight time is in force now
  std::int32_t daylightBiasSeconds = 0;  ///< 0 unless daylight time is in force

  /// Returns the seconds to add to the current local time to convert it to UTC.
  std::int32_t toUtc() const { return biasSeconds + daylightBiasSeconds; }
};

/// Calls `GetTimeZoneInformation`. If that fails, `readable` is false, and the thread's last error is the reason.
TimeZoneReading readTimeZone();

}  // namespace kdx

#endif  // KDXCOMMON_PLATFORM_TIME_ZONE_READING_H_
