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

/// The C library's local zone as it is at `now`, seconds since 1970. Standard time is the one in force, or, while
/// daylight time is, the one that follows within a year, or else the last; a zone that has daylight time but no
/// standard time within a year of `now` counts as one without daylight time. Europe/Dublin is a zone whose daylight
/// time is in winter, an hour back.
PosixTimeZone timeZoneAt(std::int64_t now);

/// The zone as the calling thread's own record has it, which is read anew when `second`, of any clock, is another than
/// at that thread's last question. Valid until the thread asks again.
const PosixTimeZone& timeZoneInSecond(std::int64_t second);

/// The zone at present, no older than a second.
const PosixTimeZone& currentTimeZone();

/// For tests: has every thread read the zone anew at its next question.
void forgetTimeZone();

/// The operations of `OperatingSystem` that bear nearly the same names.
int timeZoneName(char* buffer, std::size_t size, int index);
std::int64_t secondOfStandardTime(const BrokenDownTime& local);
bool breakDownUtc(std::int64_t seconds, BrokenDownTime& utc);
bool breakDownLocal(std::int64_t seconds, BrokenDownTime& local);

}  // namespace kdx::os

#endif  // KDXCOMMON_OS_POSIX_TIME_ZONE_H_
