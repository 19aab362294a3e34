// Internal: unix times of the date and time classes, and the records that they break down into.

#ifndef KDXCOMMON_DATETIME_UNIX_TIME_H_
#define KDXCOMMON_DATETIME_UNIX_TIME_H_

#include <cstdint>

#include "kdxcommon/datetime/timestamp.h"

namespace kdx {

/// Returns the current unix time (`platformTime`), its low 32 bits.
std::uint32_t currentUnixTime();

/// Set `timeStamp` to a unix time in UTC (`_gmtime64`), or in the local time in force at that instant (`_localtime64`),
/// with fraction 0; all fields become 0 when the system refuses.
void utcTimeStamp(std::uint32_t unixTime, tagTIMESTAMP_STRUCT& timeStamp);
void localTimeStamp(std::uint32_t unixTime, tagTIMESTAMP_STRUCT& timeStamp);

}  // namespace kdx

#endif  // KDXCOMMON_DATETIME_UNIX_TIME_H_
