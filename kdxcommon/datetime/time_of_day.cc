#include "kdxcommon/datetime/time_of_day.h"

#include "kdxcommon/base/civil_date.h"
#include "kdxcommon/datetime/unix_time.h"
#include "kdxcommon/datetime/valid_fields.h"
#include "kdxcommon/platform/time_zone_reading.h"

namespace kdx {
namespace {

constexpr Time_t kEmptyTime{};
constexpr std::int32_t kSecondsPerMinute = 60;
constexpr std::int32_t kSecondsPerHour = 3600;

Time_t splitSeconds(std::int64_t seconds) {
  return {.hour = static_cast<std::uint16_t>(seconds / kSecondsPerHour),
          .minute = static_cast<std::uint16_t>(seconds % kSecondsPerHour / kSecondsPerMinute),
          .second = static_cast<std::uint16_t>(seconds % kSecondsPerMinute),
          .fraction = 0};
}

}  // namespace

const Time_t& DTGetConst_EmptyTime() {
  return kEmptyTime;
}

CTime::CTime() {
  set();
}

CTime::CTime(const Time_t& time, bool utc) {
  set(time, utc);
}

CTime& CTime::operator=(const Time_t& time) {
  set(time, true);
  return *this;
}

CTime& CTime::operator=(const tagTIMESTAMP_STRUCT& timeStamp) {
  set({timeStamp.hour, timeStamp.minute, timeStamp.second, timeStamp.fraction}, true);
  return *this;
}

std::uint32_t CTime::seconds() const {
  return (time_.hour * 60U + time_.minute) * 60U + time_.second;
}

const Time_t& CTime::set() {
  tagTIMESTAMP_STRUCT now;
  utcTimeStamp(currentUnixTime(), now);
  time_ = {now.hour, now.minute, now.second, 0};
  return time_;
}

bool CTime::set(std::uint16_t hour, std::uint16_t minute, std::uint16_t second, bool utc) {
  return set({hour, minute, second, 0}, utc);
}

bool CTime::set(const Time_t& time, bool utc) {
  const bool valid = isValidTime(time);
  time_ = valid ? time : kEmptyTime;
  return valid && (utc || localToUtc());
}

bool CTime::set(std::uint32_t seconds, bool utc) {
  if (seconds > kSecondsPerDay) return false;
  clear();
  if (seconds == 0 || seconds == kSecondsPerDay) return true;
  time_ = splitSeconds(seconds);
  return utc || localToUtc();
}

DT_CompareReturn CTime::compare(const Time_t& time) const {
  if (time_ == time) return DT_Equal;
  return time_ < time ? DT_Less : DT_Greater;
}

bool CTime::bySeconds(std::int32_t delta) {
  if (delta > kSecondsPerDay || delta < -kSecondsPerDay) return false;
  if (delta % kSecondsPerDay != 0) time_ = moved(delta);
  return true;
}

bool CTime::byMinutes(std::int32_t delta) {
  return delta <= kSecondsPerDay / kSecondsPerMinute && delta >= -kSecondsPerDay / kSecondsPerMinute &&
         bySeconds(delta * kSecondsPerMinute);
}

bool CTime::byHours(std::int32_t delta) {
  return delta <= kSecondsPerDay / kSecondsPerHour && delta >= -kSecondsPerDay / kSecondsPerHour &&
         bySeconds(delta * kSecondsPerHour);
}

// Returns the time plus `delta` seconds, wrapped around midnight. `delta` must be less than a day in either direction.
Time_t CTime::moved(std::int32_t delta) const {
  const std::int64_t result = std::int64_t{seconds()} + delta;
  if (result < 0) return splitSeconds(result + kSecondsPerDay);
  return splitSeconds(result >= kSecondsPerDay ? result - kSecondsPerDay : result);
}

bool CTime::localToUtc() {
  const TimeZoneReading zone = readTimeZone();
  if (zone.readable) time_ = moved(zone.toUtc());
  return zone.readable;
}

Time_t CTime::localTime() const {
  const TimeZoneReading zone = readTimeZone();
  return zone.readable ? moved(-zone.toUtc()) : time_;
}

}  // namespace kdx
