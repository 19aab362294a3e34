#include "kdxcommon/datetime/date_time.h"

#include "kdxcommon/base/civil_date.h"
#include "kdxcommon/datetime/calendar_date.h"
#include "kdxcommon/datetime/time_of_day.h"
#include "kdxcommon/datetime/unix_time.h"
#include "kdxcommon/os/operating_system.h"
#include "kdxcommon/platform/time_zone_reading.h"

namespace kdx {
namespace {

constexpr tagTIMESTAMP_STRUCT kEmptyTimeStamp{};
constexpr std::uint32_t kNoTime = 0xFFFFFFFF;
constexpr double kDaysPerMonth = 30.417;

std::uint32_t sumOfFields(const tagTIMESTAMP_STRUCT& record) {
  return static_cast<std::uint32_t>(record.year) + record.month + record.day + record.hour + record.minute +
         record.second + record.fraction;
}

bool isValid(const tagTIMESTAMP_STRUCT& record) {
  CDate date(DTGetConst_EmptyDate());
  CTime time(DTGetConst_EmptyTime(), true);
  return date.set(static_cast<std::uint16_t>(record.year), record.month, record.day) &&
         time.set(record.hour, record.minute, record.second, true);
}

// Returns the low 32 bits of the unix time of a record in UTC. A record that `_mktime64` rejects as a local time yields
// -1 minus the bias, unless the record has a unix time in UTC, as it may at the start of 1970.
std::uint32_t unixTimeOfUtc(const tagTIMESTAMP_STRUCT& record, std::int32_t biasSeconds) {
  const std::int64_t days = daysFromCivil(record.year, record.month, record.day);
  const std::int64_t second = days * kSecondsPerDay + record.hour * 3600 + record.minute * 60 + record.second;
  const std::int64_t local = second + biasSeconds;
  const bool hasUnixTime = second == static_cast<std::uint32_t>(second);
  const bool isConvertible = local >= 0 && local <= os::kLastConvertibleSecond;
  return static_cast<std::uint32_t>(hasUnixTime || isConvertible ? second : -1 - std::int64_t{biasSeconds});
}

// Returns the low 32 bits of the unix time of a record in local standard time.
std::uint32_t unixTimeOfLocal(const tagTIMESTAMP_STRUCT& record) {
  const os::BrokenDownTime local{.tm_sec = record.second,
                                 .tm_min = record.minute,
                                 .tm_hour = record.hour,
                                 .tm_mday = record.day,
                                 .tm_mon = record.month - 1,
                                 .tm_year = record.year - 1900};
  return static_cast<std::uint32_t>(os::OperatingSystem::current()._mktime64(local));
}

}  // namespace

const tagTIMESTAMP_STRUCT& DTGetConst_EmptyTimeStamp() {
  return kEmptyTimeStamp;
}

CDateTime::CDateTime() {
  set();
}

CDateTime::CDateTime(const tagTIMESTAMP_STRUCT& timeStamp, bool utc) {
  set(timeStamp, utc);
}

CDateTime::CDateTime(std::uint32_t seconds) {
  set(seconds);
}

CDateTime& CDateTime::operator=(std::uint32_t seconds) {
  set(seconds);
  return *this;
}

CDateTime& CDateTime::operator=(const tagTIMESTAMP_STRUCT& timeStamp) {
  set(timeStamp, true);
  return *this;
}

std::uint32_t CDateTime::set() {
  unixTime_ = currentUnixTime();
  setTimeStamp();
  return unixTime_;
}

std::uint32_t CDateTime::set(std::uint32_t seconds) {
  if (seconds == 0 || seconds == kNoTime) {
    clear();
  } else {
    unixTime_ = seconds;
    setTimeStamp();
  }
  return unixTime_;
}

const tagTIMESTAMP_STRUCT& CDateTime::set(const tagTIMESTAMP_STRUCT& timeStamp, bool utc) {
  const bool isTime = sumOfFields(timeStamp) != 0 && isValid(timeStamp);
  const TimeZoneReading zone = isTime ? readTimeZone() : TimeZoneReading{};
  if (!zone.readable) {
    clear();
    return DTGetConst_EmptyTimeStamp();
  }
  unixTime_ = utc ? unixTimeOfUtc(timeStamp, zone.biasSeconds) : unixTimeOfLocal(timeStamp);
  return setTimeStamp();
}

void CDateTime::clear() {
  unixTime_ = 0;
  timeStamp_ = {};
}

const tagTIMESTAMP_STRUCT& CDateTime::setTimeStamp() {
  utcTimeStamp(unixTime_, timeStamp_);
  return timeStamp_;
}

std::weak_ordering CDateTime::operator<=>(const tagTIMESTAMP_STRUCT& timeStamp) const {
  if (timeStampComparsion_) return timeStamp_ <=> timeStamp;
  return unixTime_ <=> CDateTime(timeStamp, true).unixTime_;
}

std::weak_ordering CDateTime::operator<=>(const CDateTime& other) const {
  return timeStampComparsion_ ? *this <=> other.timeStamp_ : unixTime_ <=> other.unixTime_;
}

DT_CompareReturn CDateTime::compare(std::uint32_t seconds) const {
  if (seconds == unixTime_) return DT_Equal;
  return seconds < unixTime_ ? DT_Less : DT_Greater;
}

DT_CompareReturn CDateTime::compare(const tagTIMESTAMP_STRUCT& timeStamp) const {
  return compare(CDateTime(timeStamp, true));
}

bool CDateTime::bySeconds(std::int32_t delta) {
  const auto step = static_cast<std::uint32_t>(delta);
  if (delta < 0 && 0 - step >= unixTime_) return false;
  unixTime_ += step;
  setTimeStamp();
  return true;
}

bool CDateTime::byMinutes(std::int32_t delta) {
  return bySeconds(static_cast<std::int32_t>(std::int64_t{delta} * 60));
}

bool CDateTime::byHours(std::int32_t delta) {
  return bySeconds(static_cast<std::int32_t>(std::int64_t{delta} * 3600));
}

bool CDateTime::byDays(std::int16_t delta) {
  return bySeconds(static_cast<std::int32_t>(delta * kSecondsPerDay));
}

bool CDateTime::byMonths(std::int16_t delta) {
  const double seconds = delta * kDaysPerMonth * static_cast<double>(kSecondsPerDay);
  return bySeconds(static_cast<std::int32_t>(static_cast<std::int64_t>(seconds)));
}

}  // namespace kdx
