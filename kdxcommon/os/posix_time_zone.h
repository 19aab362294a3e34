// Internal to the library: the local zone and the clock conversions on POSIX systems. The C library knows the zone's
// rules; what is asked often is answered from a record of each thread's own, read anew once a second.

#ifndef KDXCOMMON_OS_POSIX_TIME_ZONE_H_
#define KDXCOMMON_OS_POSIX_TIME_ZONE_H_

#include <cstddef>
#include <cstdint>

#include "kdxcommon/os/operating_system.h"

namespace kdx::os {

/// A zone and the result of `GetTimeZoneInformation` that goes with it.
struct PosixTimeZone {
  std::uint32_t id = kTimeZoneIdInvalid;
  TIME_ZONE_INFORMATION information{};
};

/// Returns the C library's local zone as it is at `now`, seconds since 1970, with what `otherTimeNear` finds for the
/// time that is not in force. The smaller offset is standard time. A zone with one offset all year has no daylight
/// time.
PosixTimeZone timeZoneAt(std::int64_t now);

/// Returns the calling thread's record of the present zone, which is read anew when `tick` is another one than at that
/// thread's last call. Valid until the thread asks again.
const PosixTimeZone& cachedTimeZone(std::int64_t tick);

/// Returns the zone at present, no older than a second.
const PosixTimeZone& currentTimeZone();

/// Makes the calling thread's next question find a zone that has changed, TZ or the system's file, however young its
/// record is.
void lookForChangedZone();

/// The operations of `OperatingSystem` that bear nearly the same names.
int timeZoneName(char* buffer, std::size_t size, int index);
std::int64_t secondOfStandardTime(const BrokenDownTime& local);
bool breakDownUtc(std::int64_t seconds, BrokenDownTime& utc);
bool breakDownLocal(std::int64_t seconds, BrokenDownTime& local);

}  // namespace kdx::os

#endif  // KDXCOMMON_OS_POSIX_TIME_ZONE_H_
