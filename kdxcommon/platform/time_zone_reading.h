// Internal to the library: the local zone's offsets. `platformGetTimeZone` is this reading and the names, which take
// most of its time.

#ifndef KDXCOMMON_PLATFORM_TIME_ZONE_READING_H_
#define KDXCOMMON_PLATFORM_TIME_ZONE_READING_H_

#include <cstdint>

namespace kdx {

/// The local zone at present. UTC is local time plus `biasSeconds` plus `daylightBiasSeconds`.
struct TimeZoneReading {
  bool readable = false;                 ///< the system could tell; if not, the rest is of no use
  std::int32_t biasSeconds = 0;          ///< of standard time, positive west of Greenwich
  bool daylightActive = false;           ///< daylight time is in force now
  std::int32_t daylightBiasSeconds = 0;  ///< while daylight time is in force, else 0

  /// Returns the seconds to add to the local time of now to reach UTC.
  std::int32_t toUtc() const { return biasSeconds + daylightBiasSeconds; }
};

/// Asks `GetTimeZoneInformation`. Where the zone is not readable, the thread's last error says why.
TimeZoneReading readTimeZone();

}  // namespace kdx

#endif  // KDXCOMMON_PLATFORM_TIME_ZONE_READING_H_
