// How XML dates are read, once more, slow and plain: the C library's number ahead of each delimiter.

#ifndef KDXCOMMON_FUZZ_SLOW_XML_DATE_H_
#define KDXCOMMON_FUZZ_SLOW_XML_DATE_H_

#include <cerrno>
#include <cstdint>
#include <cstdlib>

#include "kdxcommon/datetime/calendar_date.h"
#include "kdxcommon/datetime/date_time.h"

namespace kdx::testing {

/// The number that the text starts with, in 32 bits: the largest where it has more, its complement after a minus.
inline std::uint32_t slowUnsigned32(const string& text) {
  constexpr std::uint32_t kLargest = 0xFFFFFFFF;
  const string number = text.substr(0, text.find('\0'));
  const std::size_t first = number.find_first_not_of(" \t\n\v\f\r");
  const bool negative = first != string::npos && number[first] == '-';
  errno = 0;
  const unsigned long long value = std::strtoull(number.c_str(), nullptr, 10);
  const unsigned long long magnitude = negative ? 0 - value : value;
  if (errno == ERANGE || magnitude > kLargest) return kLargest;
  return static_cast<std::uint32_t>(value);
}

/// Moves what stands ahead of the delimiter from `text` to `field`. False where there is nothing or no delimiter.
template <typename Field>
bool slowTake(string& text, char delimiter, Field& field) {
  const std::size_t end = text.find(delimiter);
  if (end == string::npos || end == 0) return false;
  field = static_cast<Field>(slowUnsigned32(text.substr(0, end)));
  text.erase(0, end + 1);
  return true;
}

template <typename Field>
void slowTakeRest(const string& text, Field& field) {
  field = static_cast<Field>(slowUnsigned32(text));
}

/// Whether the text has the form of a date and time; `dateTime` is what it says.
inline bool slowDateTime(string text, bool utc, CDateTime& dateTime) {
  dateTime.clear();
  if (text.empty()) return true;
  if (text.back() == 'Z') {
    utc = true;
    text.pop_back();
  }
  tagTIMESTAMP_STRUCT record{};
  if (!slowTake(text, '-', record.year) || !slowTake(text, '-', record.month)) return false;
  if (!slowTake(text, 'T', record.day)) {
    slowTakeRest(text, record.day);
    dateTime.set(record, true);
    return true;
  }
  if (!slowTake(text, ':', record.hour) || !slowTake(text, ':', record.minute)) return false;
  if (slowTake(text, '.', record.second)) {
    slowTakeRest(text, record.fraction);
  } else {
    slowTakeRest(text, record.second);
  }
  dateTime.set(record, utc);
  return true;
}

inline bool slowDate(string text, CDate& date) {
  date.clear();
  if (text.empty()) return true;
  Date_t record{};
  if (!slowTake(text, '-', record.year) || !slowTake(text, '-', record.month)) return false;
  slowTakeRest(text, record.day);
  date.set(record);
  return true;
}

}  // namespace kdx::testing

#endif  // KDXCOMMON_FUZZ_SLOW_XML_DATE_H_
