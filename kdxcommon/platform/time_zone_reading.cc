#include "kdxcommon/platform/time_zone_reading.h"

#include "kdxcommon/os/installed_system.h"

namespace kdx {

TimeZoneReading readTimeZone() {
  constexpr std::int32_t kSecondsPerMinute = 60;
  os::TIME_ZONE_INFORMATION zone;
  const std::uint32_t inForce = os::installedSystem().GetTimeZoneInformation(zone);
  const bool daylight = inForce == os::kTimeZoneIdDaylight;
  return {.readable = inForce != os::kTimeZoneIdInvalid,
          .biasSeconds = zone.Bias * kSecondsPerMinute,
          .daylightActive = daylight,
          .daylightBiasSeconds = daylight ? zone.DaylightBias * kSecondsPerMinute : 0};
}

}  // namespace kdx
