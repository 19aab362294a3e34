// Internal: the unix times of the date and time classes, and their conversion to timestamps.

#ifndef KDXCOMMON_DATETIME_UNIX_TIME_H_
#define KDXCOMMON_DATETIME_UNIX_TIME_H_

#include <cstdint>

#include "kdxcommon/datetime/timestamp.h"

namespace kdx {

/// Returns the low 32 bits of the current unix time (`platformTime`).
std::uint32_t currentUnixTime();

/// Set `timeStamp` to a unix time in UTC (`_gmtime64`), or in the local time in force at that instant (`_localtime64`),
/// with fraction 0. Set all fields to 0 if the system call fails.
void utcTimeStamp(std::uint32_t unixTime, tagTIMESTAMP_STRUCT& timeStamp);
void localTimeStamp(std::uint32_t unixTime, tagTIMESTAMP_STRUCT& timeStamp);

}  // namespace kdx

#endif  // KDXCOMMON_DATETIME_UNIX_TIME_H_
