#include "kdxcommon/datetime/calendar_date.h"

#include "kdxcommon/datetime/unix_time.h"
#include "kdxcommon/datetime/valid_fields.h"

namespace kdx {
namespace {

constexpr Date_t kEmptyDate{};

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
  const bool valid = isValidDate(date);
  date_ = valid ? date : kEmptyDate;
  return valid;
}

DT_CompareReturn CDate::compare(const Date_t& date) const {
  if (date_ == date) return DT_Equal;
  return date_ < date ? DT_Less : DT_Greater;
}

}  // namespace kdx
