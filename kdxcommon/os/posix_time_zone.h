// Internal to the library: the local zone and the clock conversions on POSIX systems. The C library supplies the zone's
// rules; frequent requests use a cache of each thread's own, renewed once a second.

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

/// Returns the C library's local zone at `now`, in seconds since 1970-01-01 00:00:00 UTC; the time that is not in force
/// is the one that `otherTimeNear` finds. The smaller offset is standard time. A zone with one offset all year has no
/// daylight time.
PosixTimeZone timeZoneAt(std::int64_t now);

/// Returns the calling thread's cached zone, which is read again if `tick` differs from that of the thread's last call.
/// Valid until the thread's next call.
const PosixTimeZone& cachedTimeZone(std::int64_t tick);

/// Returns the present zone, at most a second old.
const PosixTimeZone& currentTimeZone();

/// Makes the calling thread's next call see a change of the zone (TZ or the system's file), however recent its cached
/// zone is.
void lookForChangedZone();

/// Implement the operations of `OperatingSystem` with similar names.
int timeZoneName(char* buffer, std::size_t size, int index);
std::int64_t secondOfStandardTime(const BrokenDownTime& local);
bool breakDownUtc(std::int64_t seconds, BrokenDownTime& utc);
bool breakDownLocal(std::int64_t seconds, BrokenDownTime& local);

}  // namespace kdx::os

#endif  // KDXCOMMON_OS_POSIX_TIME_ZONE_H_
