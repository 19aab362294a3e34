#include "kdxcommon/datetime/clock_and_zone.h"

#include "kdxcommon/os/operating_system.h"
#include "kdxcommon/platform/files_and_clock.h"

namespace kdx {
namespace {

tagTIMESTAMP_STRUCT timeStampOf(const BrokenDownTime& time) {
  return {.year = static_cast<std::int16_t>(time.tm_year + 1900),
          .month = static_cast<std::uint16_t>(time.tm_mon + 1),
          .day = static_cast<std::uint16_t>(time.tm_mday),
          .hour = static_cast<std::uint16_t>(time.tm_hour),
          .minute = static_cast<std::uint16_t>(time.tm_min),
          .second = static_cast<std::uint16_t>(time.tm_sec),
          .fraction = 0};
}

}  // namespace

bool readZoneBias(ZoneBias& bias) {
  TIME_ZONE_INFORMATION zone;
  const std::uint32_t inForce = OperatingSystem::current().GetTimeZoneInformation(zone);
  if (inForce == kTimeZoneIdInvalid) return false;
  bias.standard = zone.Bias * 60;
  bias.daylight = inForce == kTimeZoneIdDaylight ? zone.DaylightBias * 60 : 0;
  return true;
}

tagTIMESTAMP_STRUCT utcTimeStamp(std::uint32_t unixTime) {
  BrokenDownTime utc;
  if (!OperatingSystem::current()._gmtime64(unixTime, utc)) return {};
  return timeStampOf(utc);
}

tagTIMESTAMP_STRUCT localTimeStamp(std::uint32_t unixTime) {
  BrokenDownTime local;
  if (!OperatingSystem::current()._localtime64(unixTime, local)) return {};
  return timeStampOf(local);
}

std::uint32_t currentUnixTime() {
  return static_cast<std::uint32_t>(platformTime(nullptr));
}

}  // namespace kdx
