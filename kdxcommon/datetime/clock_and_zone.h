// Internal: what the date and time classes ask the system for.

#ifndef KDXCOMMON_DATETIME_CLOCK_AND_ZONE_H_
#define KDXCOMMON_DATETIME_CLOCK_AND_ZONE_H_

#include <cstdint>

#include "kdxcommon/datetime/timestamp.h"

namespace kdx {

/// The local zone's offsets as `platformGetTimeZone` tells them, without its names, which take most of its time.
struct ZoneBias {
  std::int32_t standard = 0;  ///< seconds to add to local standard time to reach UTC, positive west of Greenwich
  std::int32_t daylight = 0;  ///< seconds to add besides while daylight time is in force, else 0
};

/// False, with `bias` untouched, when the zone can't be read.
bool readZoneBias(ZoneBias& bias);

/// Puts into `timeStamp` a unix time broken down in UTC (`_gmtime64`), or in the local time in force at that instant
/// (`_localtime64`), with fraction 0; all fields become 0 when the system refuses.
void breakDownUtc(std::uint32_t unixTime, tagTIMESTAMP_STRUCT& timeStamp);
void breakDownLocal(std::uint32_t unixTime, tagTIMESTAMP_STRUCT& timeStamp);

/// The current unix time (`platformTime`), its low 32 bits.
std::uint32_t currentUnixTime();

}  // namespace kdx

#endif  // KDXCOMMON_DATETIME_CLOCK_AND_ZONE_H_
