// CTime is a time of day without a date.
//
//   kdx::CTime time;                       // now, in UTC
//   time.set(20, 0, 0, false);             // eight in the evening here; five hours west of Greenwich it holds 01:00:00
//   time.byMinutes(-90);                   // wraps around midnight: 23:30:00
//   log(time.formatLocalHHMMSS(text));     // 18:30:00
//
// Conversions between local time and UTC use the zone's offset at the moment of the call, daylight time included, since
// there is no date to determine another one.
//
// Thread safety: not safe for concurrent use of one object; different objects are independent. On failure an operation
// returns false and leaves the object in the state that it documents; operations without a result don't report a
// failure. Throws only std::bad_alloc. Nothing is logged.

#ifndef KDXCOMMON_DATETIME_TIME_OF_DAY_H_
#define KDXCOMMON_DATETIME_TIME_OF_DAY_H_

#include <compare>
#include <cstdint>

#include "kdxcommon/base/export.h"
#include "kdxcommon/base/string_types.h"
#include "kdxcommon/datetime/timestamp.h"

namespace kdx {

/// A time of day as plain numbers. Records compare by hour, minute, second and fraction, in that order.
struct Time_t {
  std::uint16_t hour = 0;      ///< 0 to 23
  std::uint16_t minute = 0;    ///< 0 to 59
  std::uint16_t second = 0;    ///< 0 to 59
  std::uint32_t fraction = 0;  ///< any value is valid

  auto operator<=>(const Time_t&) const = default;
};

/// Returns the record in which all fields are 0, which is also midnight. It is valid as long as the library is loaded.
KDX_EXPORT const Time_t& DTGetConst_EmptyTime();

/// A time is valid if its hour is below 24 and its minute and second are below 60.
class KDX_EXPORT CTime {
 public:
  /// Calls `set()`: the current time of day in UTC.
  CTime();
  /// Calls `set(time, utc)`; an invalid time leaves the object cleared.
  CTime(const Time_t& time, bool utc);

  /// Calls `set(time, true)`; an invalid time leaves the object cleared.
  CTime& operator=(const Time_t& time);
  /// Calls `set(time, true)` with the record's hour, minute, second and fraction.
  CTime& operator=(const tagTIMESTAMP_STRUCT& timeStamp);

  /// Returns a reference to the fields, which is valid as long as the object and changes with it.
  const Time_t& time() const { return time_; }

  /// Returns whether all fields are 0: the object is cleared, or it is midnight.
  bool empty() const { return time_ == Time_t{}; }

  /// Returns the seconds since midnight, 0 to 86399, without the fraction.
  std::uint32_t seconds() const;

  /// Sets all fields to 0.
  void clear() { time_ = {}; }

  /// Sets and returns the current time of day in UTC by the system clock (`platformTime`), with fraction 0.
  const Time_t& set();

  /// Sets the time: unchanged if `utc` is true, otherwise converted from local time to UTC, with fraction 0.
  ///
  /// Returns false and clears the object if the time isn't valid. Returns false and stores the time unchanged if `utc`
  /// is false and the zone (`platformGetTimeZone`) can't be read.
  bool set(std::uint16_t hour, std::uint16_t minute, std::uint16_t second, bool utc);
  bool set(const Time_t& time, bool utc);

  /// Sets the time to `seconds` since midnight. Returns false and leaves the object unchanged if `seconds` is above
  /// 86400. Both 0 and 86400 set midnight, even if `utc` is false. Any other number is treated as by `set(time, utc)`.
  bool set(std::uint32_t seconds, bool utc);

  /// Returns DT_Less if the object is earlier than the argument, DT_Greater if it is later.
  DT_CompareReturn compare(const Time_t& time) const;
  DT_CompareReturn compare(const CTime& other) const { return compare(other.time_); }

  /// All six relations, with a record and with another object, by hour, minute, second and fraction.
  bool operator==(const Time_t& time) const { return time_ == time; }
  bool operator==(const CTime& other) const { return time_ == other.time_; }
  std::strong_ordering operator<=>(const Time_t& time) const { return time_ <=> time; }
  std::strong_ordering operator<=>(const CTime& other) const { return time_ <=> other.time_; }

  /// Add `delta` units, at most one day in either direction, and wrap around midnight. Return false and leave the
  /// object unchanged if `delta` is more than one day. A delta of zero or of exactly one day is a no-op; any other sets
  /// the fraction to 0.
  bool bySeconds(std::int32_t delta);
  bool byMinutes(std::int32_t delta);
  bool byHours(std::int32_t delta);

  /// Set `out` to the text of the stored time and return `out`. The Local forms convert it to local time, or print it
  /// unconverted if the zone (`platformGetTimeZone`) can't be read.
  ///
  /// `formatHHMMSS`: 15:18:12. `formatODBCTime`: {t'15:18:12'}, and with `plusForm` {t+'15:18:12+'}.
  string& formatHHMMSS(string& out) const;
  wstring& formatHHMMSS(wstring& out) const;
  string& formatLocalHHMMSS(string& out) const;
  wstring& formatLocalHHMMSS(wstring& out) const;
  string& formatODBCTime(string& out, bool plusForm) const;
  wstring& formatODBCTime(wstring& out, bool plusForm) const;
  string& formatLocalODBCTime(string& out, bool plusForm) const;
  wstring& formatLocalODBCTime(wstring& out, bool plusForm) const;

 private:
  Time_t moved(std::int32_t delta) const;
  bool localToUtc();
  Time_t localTime() const;

  Time_t time_;
};

}  // namespace kdx

#endif  // KDXCOMMON_DATETIME_TIME_OF_DAY_H_
