// The clock, the local zone and the calendar of Windows.

#include <time.h>
#include <windows.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "kdxcommon/os/windows_operating_system.h"

namespace kdx::os {
namespace {

// Returns whether every C runtime of Windows can convert the time; some support a few later ones.
bool convertible(std::int64_t seconds) {
  return seconds >= 0 && seconds <= kLastConvertibleSecond;
}

// Makes the C runtime notice a changed zone, which it otherwise reads only once. Each thread checks once a second,
// since a check costs far more than a conversion.
void lookForChangedZone() {
  thread_local std::int64_t lastLook = -1;
  const std::int64_t now = ::_time64(nullptr);
  if (now != lastLook) ::_tzset();
  lastLook = now;
}

bool take(const tm* from, BrokenDownTime& to) {
  if (!from) return false;
  to = {.tm_sec = from->tm_sec,
        .tm_min = from->tm_min,
        .tm_hour = from->tm_hour,
        .tm_mday = from->tm_mday,
        .tm_mon = from->tm_mon,
        .tm_year = from->tm_year,
        .tm_wday = from->tm_wday,
        .tm_yday = from->tm_yday,
        .tm_isdst = from->tm_isdst};
  return true;
}

}  // namespace

std::int64_t WindowsOperatingSystem::_time64(std::int64_t* seconds) {
  const std::int64_t now = ::_time64(nullptr);
  if (seconds) *seconds = now;
  return now;
}

std::uint64_t WindowsOperatingSystem::GetSystemTimeAsFileTime() {
  FILETIME now;
  ::GetSystemTimeAsFileTime(&now);
  return std::uint64_t{now.dwHighDateTime} << 32 | now.dwLowDateTime;
}

std::uint32_t WindowsOperatingSystem::GetTimeZoneInformation(TIME_ZONE_INFORMATION& zone) {
  ::TIME_ZONE_INFORMATION now;
  const std::uint32_t id = ::GetTimeZoneInformation(&now);
  if (id == kTimeZoneIdInvalid) return id;
  zone.Bias = now.Bias;
  std::ranges::copy(now.StandardName, zone.StandardName);
  zone.StandardBias = now.StandardBias;
  std::ranges::copy(now.DaylightName, zone.DaylightName);
  zone.DaylightBias = now.DaylightBias;
  return id;
}

void WindowsOperatingSystem::_tzset() {
  ::_tzset();
}

// The system's own C runtime has no `_get_tzname`; later ones copy from this array.
int WindowsOperatingSystem::_get_tzname(char* buffer, std::size_t size, int index) {
  if (!buffer || (index != 0 && index != 1)) return EINVAL;
  const char* name = _tzname[index];  // an array or, in later runtimes, a macro
  const std::size_t needed = std::strlen(name) + 1;
  if (needed > size) return ERANGE;
  std::memcpy(buffer, name, needed);
  buffer[needed - 1] = '\0';  // also if another thread rereads the zone meanwhile
  return 0;
}

std::int64_t WindowsOperatingSystem::_mktime64(const BrokenDownTime& local) {
  if (local.tm_isdst != 0) return -1;
  lookForChangedZone();
  tm fields{};
  fields.tm_sec = local.tm_sec;
  fields.tm_min = local.tm_min;
  fields.tm_hour = local.tm_hour;
  fields.tm_mday = local.tm_mday;
  fields.tm_mon = local.tm_mon;
  fields.tm_year = local.tm_year;
  const std::int64_t seconds = ::_mktime64(&fields);
  return convertible(seconds) ? seconds : -1;
}

bool WindowsOperatingSystem::_gmtime64(std::int64_t seconds, BrokenDownTime& utc) {
  return convertible(seconds) && take(::_gmtime64(&seconds), utc);
}

bool WindowsOperatingSystem::_localtime64(std::int64_t seconds, BrokenDownTime& local) {
  if (!convertible(seconds)) return false;
  lookForChangedZone();
  return take(::_localtime64(&seconds), local);
}

}  // namespace kdx::os
