// Internal: which fields make a date, and which a time of day.

#ifndef KDXCOMMON_DATETIME_VALID_FIELDS_H_
#define KDXCOMMON_DATETIME_VALID_FIELDS_H_

#include <cstdint>

#include "kdxcommon/datetime/calendar_date.h"
#include "kdxcommon/datetime/time_of_day.h"

namespace kdx {

/// Returns whether `CDate` accepts the date. Every year divisible by 4 is a leap year.
inline bool isValidDate(const Date_t& date) {
  static constexpr std::uint16_t kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  if (date.year <= 0 || date.month < 1 || date.month > 12 || date.day < 1) return false;
  const bool leapDay = date.month == 2 && date.year % 4 == 0;
  return date.day <= kDays[date.month - 1] + leapDay;
}

/// Returns whether `CTime` accepts the time.
inline bool isValidTime(const Time_t& time) {
  return time.hour < 24 && time.minute < 60 && time.second < 60;
}

}  // namespace kdx

#endif  // KDXCOMMON_DATETIME_VALID_FIELDS_H_
