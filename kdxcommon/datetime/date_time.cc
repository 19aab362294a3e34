#include "kdxcommon/datetime/date_time.h"

#include "kdxcommon/base/civil_date.h"
#include "kdxcommon/datetime/unix_time.h"
#include "kdxcommon/datetime/valid_fields.h"
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

// Returns whether the calendar has a day that `CDate` accepts: it knows a 29th of February in each century.
bool isOfCalendar(const tagTIMESTAMP_STRUCT& record) {
  return record.month != 2 || record.day != 29 || record.year % 100 != 0 || record.year % 400 == 0;
}

// Returns the second of a record in UTC, counted from 1970.
std::int64_t secondOfUtc(const tagTIMESTAMP_STRUCT& record) {
  const std::int64_t days = daysFromCivil(record.year, record.month, record.day);
  const int secondOfDay = record.hour * 3600 + record.minute * 60 + record.second;
  return days * kSecondsPerDay + secondOfDay;
}

// Returns the low 32 bits of the unix time for a second in UTC that is no unix time. If `_mktime64` rejects its fields
// as a local time, that is -1 minus the bias.
std::uint32_t unixTimeBeyond(std::int64_t second, std::int32_t biasSeconds) {
  const std::int64_t local = second + biasSeconds;
  const bool isConvertible = local >= 0 && local <= os::kLastConvertibleSecond;
  return static_cast<std::uint32_t>(isConvertible ? second : -1 - std::int64_t{biasSeconds});
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
  const bool isTime = sumOfFields(timeStamp) != 0 && isValidDate({timeStamp.year, timeStamp.month, timeStamp.day}) &&
                      isValidTime({timeStamp.hour, timeStamp.minute, timeStamp.second, 0});
  const TimeZoneReading zone = isTime ? readTimeZone() : TimeZoneReading{};
  if (!zone.readable) {
    clear();
    return DTGetConst_EmptyTimeStamp();
  }
  if (!utc) {
    unixTime_ = unixTimeOfLocal(timeStamp);
    return setTimeStamp();
  }
  const std::int64_t second = secondOfUtc(timeStamp);
  unixTime_ = static_cast<std::uint32_t>(second);
  if (second != unixTime_) unixTime_ = unixTimeBeyond(second, zone.biasSeconds);
  if (second != unixTime_ || !isOfCalendar(timeStamp)) return setTimeStamp();
  timeStamp_ = timeStamp;  // what `_gmtime64` would return
  timeStamp_.fraction = 0;
  return timeStamp_;
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
