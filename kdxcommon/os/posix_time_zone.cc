#include "kdxcommon/os/posix_time_zone.h"

#include <sys/stat.h>
#include <time.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <iterator>
#include <string_view>

#include "kdxcommon/base/civil_date.h"
#include "kdxcommon/os/posix_standard_time.h"

namespace kdx::os {
namespace {

constexpr std::int64_t kNoTick = -1;

// What the C library chose the zone by at this thread's last check: the text of TZ or, if that isn't set, the identity
// of the system's zone file. A text that is too long to be kept counts as a new one each time.
struct ZoneSource {
  char key[256];
  std::size_t size;
};

struct CachedTimeZone {
  std::int64_t tick = kNoTick;
  PosixTimeZone zone;
};
thread_local constinit CachedTimeZone cached;
thread_local constinit ZoneSource source{};
thread_local constinit StandardTimes standardTimes;

bool sourceHasChanged() {
  std::int64_t file[4] = {};
  std::string_view now;
  struct stat zoneFile;
  if (const char* text = std::getenv("TZ")) {  // NOLINT(concurrency-mt-unsafe): as the C library reads it
    now = text;
  } else if (::stat("/etc/localtime", &zoneFile) == 0) {
    file[0] = static_cast<std::int64_t>(zoneFile.st_dev);
    file[1] = static_cast<std::int64_t>(zoneFile.st_ino);
    file[2] = zoneFile.st_mtim.tv_sec;
    file[3] = zoneFile.st_mtim.tv_nsec;
    now = {reinterpret_cast<const char*>(file), sizeof file};
  }
  if (now == std::string_view(source.key, source.size)) return false;
  source.size = now.copy(source.key, sizeof source.key);
  return true;
}

bool isConvertible(std::int64_t seconds) {
  return seconds >= 0 && seconds <= kLastConvertibleSecond;
}

std::int32_t biasMinutes(const tm& time) {
  return static_cast<std::int32_t>(-time.tm_gmtoff / 60);
}

[[gnu::noinline]] void readAgain(std::int64_t tick) {
  // In this order, a zone that changes in between is noticed at the next check at the latest.
  if (sourceHasChanged()) standardTimes.clear();
  ::tzset();
  cached = {tick, timeZoneAt(::time(nullptr))};
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
  tm other;
  const time_t instant = now;
  if (!::localtime_r(&instant, &here)) return zone;
  const time_t otherInstant = otherTimeNear(now);
  ::localtime_r(&otherInstant, &other);
  const bool daylightNow = here.tm_gmtoff > other.tm_gmtoff;
  const tm& standard = daylightNow ? other : here;
  zone.information.Bias = biasMinutes(standard);
  copyName(standard.tm_zone, zone.information.StandardName);
  zone.id = kTimeZoneIdUnknown;
  if (otherInstant == instant) return zone;

  const tm& daylight = daylightNow ? here : other;
  zone.information.DaylightBias = biasMinutes(daylight) - biasMinutes(standard);
  copyName(daylight.tm_zone, zone.information.DaylightName);
  zone.id = daylightNow ? kTimeZoneIdDaylight : kTimeZoneIdStandard;
  return zone;
}

const PosixTimeZone& cachedTimeZone(std::int64_t tick) {
  if (cached.tick != tick) [[unlikely]]
    readAgain(tick);
  return cached.zone;
}

const PosixTimeZone& currentTimeZone() {
  return cachedTimeZone(::time(nullptr));  // the cheapest clock there is
}

void lookForChangedZone() {
  if (!sourceHasChanged()) return;
  standardTimes.clear();
  cached.tick = kNoTick;
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
  if (local.tm_isdst != 0 || currentTimeZone().id == kTimeZoneIdInvalid) return -1;
  const std::int64_t months = local.tm_mon;
  const std::int64_t years = (months >= 0 ? months : months - 11) / 12;
  const auto month = static_cast<std::uint32_t>(months - 12 * years + 1);
  const std::int64_t days = daysFromCivil(std::int64_t{local.tm_year} + 1900 + years, month, local.tm_mday);
  const std::int64_t minutes = std::int64_t{local.tm_hour} * 60 + local.tm_min;
  const std::int64_t fields = days * kSecondsPerDay + minutes * 60 + local.tm_sec;
  const std::int64_t seconds = standardTimes.secondOf(fields);
  return isConvertible(seconds) ? seconds : -1;
}

bool breakDownUtc(std::int64_t seconds, BrokenDownTime& utc) {
  if (!isConvertible(seconds)) return false;
  const auto instant = static_cast<std::uint64_t>(seconds);
  const auto days = static_cast<std::int32_t>(instant / kSecondsPerDay);
  const auto secondOfDay = static_cast<std::int32_t>(instant % kSecondsPerDay);
  const std::int32_t minuteOfDay = secondOfDay / 60;
  const CivilDate date = civilFromDays(days);
  utc = {.tm_sec = secondOfDay % 60,
         .tm_min = minuteOfDay % 60,
         .tm_hour = minuteOfDay / 60,
         .tm_mday = static_cast<int>(date.day),
         .tm_mon = static_cast<int>(date.month) - 1,
         .tm_year = date.year - 1900,
         .tm_wday = (days + 4) % 7,  // 1970-01-01 was a Thursday
         .tm_yday = static_cast<int>(date.dayOfYear),
         .tm_isdst = 0};
  return true;
}

bool breakDownLocal(std::int64_t seconds, BrokenDownTime& local) {
  if (!isConvertible(seconds)) return false;
  currentTimeZone();  // makes the C library notice a changed zone, which localtime_r doesn't
  tm fields;
  const time_t instant = seconds;
  if (!::localtime_r(&instant, &fields)) return false;
  local = {fields.tm_sec,  fields.tm_min,  fields.tm_hour,
           fields.tm_mday, fields.tm_mon,  fields.tm_year,
           fields.tm_wday, fields.tm_yday, fields.tm_gmtoff > standardTimes.offsetAt(seconds)};
  return true;
}

}  // namespace kdx::os
