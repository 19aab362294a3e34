#include "kdxcommon/datetime/calendar_date.h"

#include "kdxcommon/datetime/unix_time.h"

namespace kdx {
namespace {

constexpr Date_t kEmptyDate{};

std::uint16_t daysOfMonth(std::int16_t year, std::uint16_t month) {
  static constexpr std::uint16_t kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  const bool leapDay = month == 2 && year % 4 == 0;
  return static_cast<std::uint16_t>(kDays[month - 1] + leapDay);
}

bool isValid(const Date_t& date) {
  return date.year > 0 && date.month >= 1 && date.month <= 12 && date.day >= 1 &&
         date.day <= daysOfMonth(date.year, date.month);
}

}  // namespace

const Date_t& DTGetConst_EmptyDate() {
  return kEmptyDate;
}

CDate::CDate() {
  set();
}

CDate& CDate::operator=(const Date_t& date) {
  set(date);
  return *this;
}

CDate& CDate::operator=(const tagTIMESTAMP_STRUCT& timeStamp) {
  set({timeStamp.year, timeStamp.month, timeStamp.day});
  return *this;
}

const Date_t& CDate::set() {
  tagTIMESTAMP_STRUCT today;
  utcTimeStamp(currentUnixTime(), today);
  date_ = {today.year, today.month, today.day};
  return date_;
}

bool CDate::set(std::uint16_t year, std::uint16_t month, std::uint16_t day) {
  return set({static_cast<std::int16_t>(year), month, day});
}

bool CDate::set(const Date_t& date) {
  const bool valid = isValid(date);
  date_ = valid ? date : kEmptyDate;
  return valid;
}

DT_CompareReturn CDate::compare(const Date_t& date) const {
  if (date_ == date) return DT_Equal;
  return date_ < date ? DT_Less : DT_Greater;
}

}  // namespace kdx
