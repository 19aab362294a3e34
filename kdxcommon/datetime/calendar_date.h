// CDate is a calendar date without a time and a zone.
//
//   kdx::CDate date;                      // today, in UTC
//   if (date.set(2010, 8, 5)) log(date.formatXMLDate(text));   // 2010-08-05
//   if (!date.setXML("2010-02-30") || date.empty()) reject();  // well-formed, but no such day
//
// Thread safety: not safe for concurrent use of one object; different objects are independent. On failure an operation
// clears the object (all fields 0) and returns false if it has a result. Throws only std::bad_alloc. Nothing is logged.

#ifndef KDXCOMMON_DATETIME_CALENDAR_DATE_H_
#define KDXCOMMON_DATETIME_CALENDAR_DATE_H_

#include <compare>
#include <cstdint>

#include "kdxcommon/base/export.h"
#include "kdxcommon/base/string_types.h"
#include "kdxcommon/datetime/timestamp.h"

namespace kdx {

/// A date as plain numbers. Records compare by year, month and day, in that order.
struct Date_t {
  std::int16_t year = 0;    ///< calendar year, above 0 if valid
  std::uint16_t month = 0;  ///< 1 to 12
  std::uint16_t day = 0;    ///< 1 to the month's length

  auto operator<=>(const Date_t&) const = default;
};

/// Returns the record in which all fields are 0, which no valid date equals. It is valid as long as the library is
/// loaded.
KDX_EXPORT const Date_t& DTGetConst_EmptyDate();

/// A date is valid if its year is above 0, its month is 1 to 12, and its day is 1 to the month's length. Every year
/// divisible by 4 is a leap year, including centuries: 1900 and 2100 have a 29th of February.
class KDX_EXPORT CDate {
 public:
  /// Calls `set()`: today's date in UTC.
  CDate();
  /// Stores `date` unchanged, valid or not.
  CDate(const Date_t& date) : date_(date) {}

  /// Calls `set(date)`; an invalid date leaves the object cleared.
  CDate& operator=(const Date_t& date);
  /// Calls `set` with the record's year, month and day; its time is ignored.
  CDate& operator=(const tagTIMESTAMP_STRUCT& timeStamp);

  /// Returns a reference to the fields, which is valid as long as the object and changes with it.
  const Date_t& date() const { return date_; }

  /// Returns whether all fields are 0.
  bool empty() const { return date_ == Date_t{}; }

  /// Sets all fields to 0.
  void clear() { date_ = {}; }

  /// Sets and returns today's date in UTC by the system clock (`platformTime`).
  const Date_t& set();
  /// Sets the date. Returns false and clears the object if the date isn't valid. A year above 32767 is read as
  /// negative.
  bool set(std::uint16_t year, std::uint16_t month, std::uint16_t day);
  bool set(const Date_t& date);

  /// Returns DT_Less if the object is earlier than the argument, DT_Greater if it is later.
  DT_CompareReturn compare(const Date_t& date) const;
  DT_CompareReturn compare(const CDate& other) const { return compare(other.date_); }

  /// All six relations, with a record and with another object, by year, month and day.
  bool operator==(const Date_t& date) const { return date_ == date; }
  bool operator==(const CDate& other) const { return date_ == other.date_; }
  std::strong_ordering operator<=>(const Date_t& date) const { return date_ <=> date; }
  std::strong_ordering operator<=>(const CDate& other) const { return date_ <=> other.date_; }

  /// Sets the object to a text of the form year-month-day; what follows the digits of a number, such as a time after
  /// the day, is ignored. A number may be of any length, with leading white space and a sign. An empty text clears
  /// the object, and the result is true.
  ///
  /// Returns false and clears the object if a dash is missing or has nothing before it. The result doesn't reflect the
  /// values: if they aren't a valid date, the object is cleared, and the result is true.
  bool setXML(const string& xml);
  bool setXML(const wstring& xml);

  /// Set `out` to the text of the date, valid or not, and return `out`. Numbers are padded with zeros to two digits,
  /// years to four; a cleared date is printed as zeros.
  ///
  /// `formatMMDDYYYY`: 08-05-2010. `formatXMLDate`: 2010-08-05. `formatODBCDate`: {d'2010-08-05'}, and with `plusForm`
  /// {d+'2010-08-05+'}.
  string& formatMMDDYYYY(string& out) const;
  wstring& formatMMDDYYYY(wstring& out) const;
  string& formatXMLDate(string& out) const;
  wstring& formatXMLDate(wstring& out) const;
  string& formatODBCDate(string& out, bool plusForm) const;
  wstring& formatODBCDate(wstring& out, bool plusForm) const;

 private:
  Date_t date_;
};

}  // namespace kdx

#endif  // KDXCOMMON_DATETIME_CALENDAR_DATE_H_
