#include "kdxcommon/os/posix_time_zone.h"

#include <time.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <iterator>

#include "kdxcommon/base/civil_date.h"

namespace kdx::os {
namespace {

constexpr std::int64_t kSecondsPerWeek = 7 * kSecondsPerDay;
constexpr int kWeeksPerYear = 53;  // a little more than a year; no daylight time is shorter than a week

std::atomic<std::uint32_t> changes{0};  // counts the calls of forgetTimeZone

struct CachedTimeZone {
  std::int64_t second = -1;  // when the zone was read
  std::uint32_t changes = 0;
  PosixTimeZone zone;
};
thread_local constinit CachedTimeZone cached;

// The nearest time, in steps of a week from `now`, at which the zone has the other kind of time.
bool findOtherTime(std::int64_t now, std::int64_t step, bool daylightNow, tm& found) {
  for (int week = 1; week <= kWeeksPerYear; ++week) {
    const time_t then = now + week * step;
    if (::localtime_r(&then, &found) && (found.tm_isdst > 0) != daylightNow) return true;
  }
  return false;
}

std::int32_t biasMinutes(const tm& time) {
  return static_cast<std::int32_t>(-time.tm_gmtoff / 60);
}

void copyName(const char* name, wchar (&target)[32]) {
  wchar* out = target;
  for (; *name && out != std::end(target) - 1; ++name) *out++ = static_cast<unsigned char>(*name);
  *out = 0;
}

}  // namespace

PosixTimeZone timeZoneAt(std::int64_t now) {
  PosixTimeZone zone;
  tm here;
  const time_t start = now;
  if (!::localtime_r(&start, &here)) return zone;
  const bool daylightNow = here.tm_isdst > 0;
  tm other;
  const bool hasOther = findOtherTime(now, kSecondsPerWeek, daylightNow, other) ||
                        (daylightNow && findOtherTime(now, -kSecondsPerWeek, daylightNow, other));
  const tm& standard = daylightNow && hasOther ? other : here;
  zone.information.Bias = biasMinutes(standard);
  copyName(standard.tm_zone, zone.information.StandardName);
  zone.id = kTimeZoneIdUnknown;
  if (!hasOther) return zone;

  const tm& daylight = daylightNow ? here : other;
  zone.information.DaylightBias = biasMinutes(daylight) - biasMinutes(standard);
  copyName(daylight.tm_zone, zone.information.DaylightName);
  zone.id = daylightNow ? kTimeZoneIdDaylight : kTimeZoneIdStandard;
  return zone;
}

const PosixTimeZone& timeZoneInSecond(std::int64_t second) {
  const std::uint32_t changesNow = changes.load(std::memory_order_acquire);
  if (cached.second != second || cached.changes != changesNow) {
    ::tzset();  // looks at TZ and at the system's file
    cached = {second, changesNow, timeZoneAt(::time(nullptr))};
  }
  return cached.zone;
}

const PosixTimeZone& currentTimeZone() {
  return timeZoneInSecond(::time(nullptr));  // the cheapest clock there is
}

void forgetTimeZone() {
  changes.fetch_add(1, std::memory_order_release);
}

int timeZoneName(char* buffer, std::size_t size, int index) {
  if (!buffer || index < 0 || index > 1) return EINVAL;
  const TIME_ZONE_INFORMATION& zone = currentTimeZone().information;
  const wstring_view name = index == 0 ? zone.StandardName : zone.DaylightName;
  if (size <= name.size()) return ERANGE;
  *std::transform(name.begin(), name.end(), buffer, [](wchar unit) { return static_cast<char>(unit); }) = '\0';
  return 0;
}

std::int64_t secondOfStandardTime(const BrokenDownTime& local) {
  const PosixTimeZone& zone = currentTimeZone();
  if (local.tm_isdst != 0 || zone.id == kTimeZoneIdInvalid) return -1;
  const std::int64_t months = local.tm_mon;
  const std::int64_t years = (months >= 0 ? months : months - 11) / 12;
  const auto month = static_cast<std::uint32_t>(months - 12 * years + 1);
  const std::int64_t days = daysFromCivil(std::int64_t{local.tm_year} + 1900 + years, month, local.tm_mday);
  const std::int64_t minutes = std::int64_t{local.tm_hour} * 60 + local.tm_min + zone.information.Bias;
  const std::int64_t seconds = days * kSecondsPerDay + minutes * 60 + local.tm_sec;
  return seconds >= 0 && seconds <= kLastConvertibleSecond ? seconds : -1;
}

bool breakDownUtc(std::int64_t seconds, BrokenDownTime& utc) {
  if (seconds < 0 || seconds > kLastConvertibleSecond) return false;
  const auto days = static_cast<std::int32_t>(seconds / kSecondsPerDay);
  const auto secondOfDay = static_cast<std::int32_t>(seconds % kSecondsPerDay);
  const CivilDate date = civilFromDays(days);
  utc = {.tm_sec = secondOfDay % 60,
         .tm_min = secondOfDay / 60 % 60,
         .tm_hour = secondOfDay / 3600,
         .tm_mday = static_cast<int>(date.day),
         .tm_mon = static_cast<int>(date.month) - 1,
         .tm_year = date.year - 1900,
         .tm_wday = (days + 4) % 7,  // 1970-01-01 was a Thursday
         .tm_yday = dayOfYear(date),
         .tm_isdst = 0};
  return true;
}

bool breakDownLocal(std::int64_t seconds, BrokenDownTime& local) {
  if (seconds < 0 || seconds > kLastConvertibleSecond) return false;
  currentTimeZone();  // has the C library notice a changed zone, which localtime_r leaves to its callers
  tm fields;
  const time_t instant = seconds;
  if (!::localtime_r(&instant, &fields)) return false;
  local = {fields.tm_sec,  fields.tm_min,  fields.tm_hour, fields.tm_mday, fields.tm_mon,
           fields.tm_year, fields.tm_wday, fields.tm_yday, fields.tm_isdst};
  return true;
}

}  // namespace kdx::os
