// A time of day without a date.
//
//   kdx::CTime time;                       // now, in UTC
//   time.set(20, 0, 0, false);             // eight in the evening here; five hours west of Greenwich it holds 01:00:00
//   time.byMinutes(-90);                   // round the clock face: 23:30:00
//   log(time.formatLocalHHMMSS(text));     // 18:30:00
//
// Conversions between local time and UTC use the zone as it stands at the moment of the call, daylight time included,
// since there is no date to tell otherwise.
//
// Thread rule: an object belongs to one thread at a time. Failure rule: false, with the object in the state that each
// operation tells; operations without a result drop it. Nothing throws but an allocation, and nothing logs.

#ifndef KDXCOMMON_DATETIME_TIME_OF_DAY_H_
#define KDXCOMMON_DATETIME_TIME_OF_DAY_H_

#include <compare>
#include <cstdint>

#include "kdxcommon/base/export.h"
#include "kdxcommon/base/string_types.h"
#include "kdxcommon/datetime/timestamp.h"

namespace kdx {

/// A time of day as plain numbers. Records compare by hour, minute, second, then fraction.
struct Time_t {
  std::uint16_t hour = 0;      ///< 0 to 23
  std::uint16_t minute = 0;    ///< 0 to 59
  std::uint16_t second = 0;    ///< 0 to 59
  std::uint32_t fraction = 0;  ///< carried along, never tested

  auto operator<=>(const Time_t&) const = default;
};

/// The record with all fields 0, which is midnight too. It lives as long as the library.
KDX_EXPORT const Time_t& DTGetConst_EmptyTime();

/// A time is valid when its hour is below 24 and its minute and second are below 60.
class KDX_EXPORT CTime {
 public:
  /// The current time of day in UTC, by the system's clock.
  CTime();
  /// As `set(time, utc)`; an invalid time leaves the object cleared.
  CTime(const Time_t& time, bool utc);

  /// As `set(time, true)`; an invalid time leaves the object cleared.
  CTime& operator=(const Time_t& time);
  /// As `set` with the record's hour, minute, second and fraction, taken as they are.
  CTime& operator=(const tagTIMESTAMP_STRUCT& timeStamp);

  /// The fields; valid as long as the object, and changing with it.
  const Time_t& time() const { return time_; }

  /// Whether all fields are 0: cleared, or midnight.
  bool empty() const { return time_ == Time_t{}; }

  /// Seconds since midnight, 0 to 86399; the fraction doesn't count.
  std::uint32_t seconds() const;

  /// Sets all fields to 0.
  void clear() { time_ = {}; }

  /// Takes the current time of day in UTC, by the system's clock (`platformTime`), and gives it.
  const Time_t& set();

  /// Takes a time: as it is when `utc` is true, else as local time, which is stored as UTC without its fraction.
  ///
  /// False and cleared for an invalid time. False and holding the time as given when `utc` is false and the zone
  /// (`platformGetTimeZone`) can't be read.
  bool set(std::uint16_t hour, std::uint16_t minute, std::uint16_t second, bool utc);
  bool set(const Time_t& time, bool utc);

  /// Takes a time as `seconds` since midnight. Above 86400 gives false and leaves the object as it is. Both 0 and 86400
  /// are midnight whatever `utc` says. Any other is taken as `set(time, utc)` does.
  bool set(std::uint32_t seconds, bool utc);

  /// DT_Less when the object is earlier than the argument, DT_Greater when it is later.
  DT_CompareReturn compare(const Time_t& time) const;
  DT_CompareReturn compare(const CTime& other) const { return compare(other.time_); }

  /// All six relations, against a record and against a time, by hour, minute, second and fraction.
  bool operator==(const Time_t& time) const { return time_ == time; }
  bool operator==(const CTime& other) const { return time_ == other.time_; }
  std::strong_ordering operator<=>(const Time_t& time) const { return time_ <=> time; }
  std::strong_ordering operator<=>(const CTime& other) const { return time_ <=> other.time_; }

  /// Each moves the time round the clock face by at most a day either way. False, and the object is unchanged, for
  /// more than a day. No step and a step of a whole day change nothing; any other drops the fraction.
  bool bySeconds(std::int32_t delta);
  bool byMinutes(std::int32_t delta);
  bool byHours(std::int32_t delta);

  /// Each puts the stored time into `out`, whatever `out` held, and gives `out`. The Local forms print it converted to
  /// local time, unconverted when the zone (`platformGetTimeZone`) can't be read.
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
