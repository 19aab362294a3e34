#include "kdxcommon/datetime/unix_time.h"

#include "kdxcommon/os/installed_system.h"
#include "kdxcommon/platform/files_and_clock.h"

namespace kdx {
namespace {

void assign(tagTIMESTAMP_STRUCT& timeStamp, const os::BrokenDownTime& time) {
  timeStamp.year = static_cast<std::int16_t>(time.tm_year + 1900);
  timeStamp.month = static_cast<std::uint16_t>(time.tm_mon + 1);
  timeStamp.day = static_cast<std::uint16_t>(time.tm_mday);
  timeStamp.hour = static_cast<std::uint16_t>(time.tm_hour);
  timeStamp.minute = static_cast<std::uint16_t>(time.tm_min);
  timeStamp.second = static_cast<std::uint16_t>(time.tm_sec);
  timeStamp.fraction = 0;
}

}  // namespace

std::uint32_t currentUnixTime() {
  return static_cast<std::uint32_t>(platformTime(nullptr));
}

void utcTimeStamp(std::uint32_t unixTime, tagTIMESTAMP_STRUCT& timeStamp) {
  os::BrokenDownTime utc;
  if (os::installedSystem()._gmtime64(unixTime, utc)) {
    assign(timeStamp, utc);
  } else {
    timeStamp = {};
  }
}

void localTimeStamp(std::uint32_t unixTime, tagTIMESTAMP_STRUCT& timeStamp) {
  os::BrokenDownTime local;
  if (os::installedSystem()._localtime64(unixTime, local)) {
    assign(timeStamp, local);
  } else {
    timeStamp = {};
  }
}

}  // namespace kdx
