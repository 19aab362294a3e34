// An instant, to the second, from 1970 to 2106: a count of seconds and the same broken down in UTC.
//
//   kdx::CDateTime start;                             // now
//   kdx::CDateTime end(start);
//   end.byHours(8);
//   if (start < end) log(end.formatXMLDateTime(text, false));   // 2010-08-05T15:18:12Z
//   if (!end.setXML(attribute, true) || end.empty()) reject();
//
// Local time is read as standard time on every date and printed with daylight time where it was in force. So a local
// record of a date in standard time prints the same, and one of a date in daylight time prints later, mostly by an
// hour. On POSIX that holds throughout the zone's history: a record is read by the standard offset of its date. On
// Windows the present zone's offset serves for all dates. Not covered are the hours that a change of the standard
// offset repeats or leaves out. Where a zone goes back to a smaller offset in winter or in Ramadan, that is its
// standard time.
//
// Thread safety: not safe for concurrent use of one object; different objects are independent. A failure is reported
// by the result, a cleared object, or both, as each operation documents; operations without a result only clear. Throws
// only std::bad_alloc. Nothing is logged.

#ifndef KDXCOMMON_DATETIME_DATE_TIME_H_
#define KDXCOMMON_DATETIME_DATE_TIME_H_

#include <compare>
#include <cstdint>

#include "kdxcommon/base/export.h"
#include "kdxcommon/base/string_types.h"
#include "kdxcommon/datetime/timestamp.h"

namespace kdx {

/// The unix time is seconds since 1970-01-01 00:00:00 UTC, unsigned, with 0 for no value; the timestamp is its
/// breakdown in UTC with fraction 0. Two states have the unix time 0: cleared, with all fields of the timestamp 0, and
/// the first second of 1970, which `bySeconds(0)` on a cleared object and `set(record, true)` leave.
class KDX_EXPORT CDateTime {
 public:
  /// The current time, by the system's clock.
  CDateTime();
  /// As `set(timeStamp, utc)`; what that refuses leaves the object cleared.
  CDateTime(const tagTIMESTAMP_STRUCT& timeStamp, bool utc);
  /// As `set(seconds)`.
  CDateTime(std::uint32_t seconds);

  /// As `set(seconds)` and `set(timeStamp, true)`; how the object compares stays. A copy takes that over, too.
  CDateTime& operator=(std::uint32_t seconds);
  CDateTime& operator=(const tagTIMESTAMP_STRUCT& timeStamp);

  /// The instant broken down in UTC; valid as long as the object, and changing with it.
  const tagTIMESTAMP_STRUCT& timeStamp() const { return timeStamp_; }

  /// Seconds since 1970-01-01 00:00:00 UTC; 0 is no value.
  std::uint32_t unixTime() const { return unixTime_; }

  /// Whether the relations compare timestamps field by field; false at construction.
  bool timeStampComparsion() const { return timeStampComparsion_; }
  /// Makes the relations compare timestamps, or unix times.
  void setTimeStampComparsion(bool compareTimeStamps) { timeStampComparsion_ = compareTimeStamps; }

  /// Takes the low 32 bits of the current time (`platformTime`) and gives the new unix time.
  std::uint32_t set();

  /// Takes a unix time and gives it. Both 0 and 0xFFFFFFFF stand for no value: they clear the object and give 0.
  std::uint32_t set(std::uint32_t seconds);

  /// Takes a record whose fields are UTC, or local standard time if `utc` is false, and gives `timeStamp()`. The
  /// fraction is dropped.
  ///
  /// The object is cleared, and the result is `DTGetConst_EmptyTimeStamp()` itself, when the fields add up to 0 in 32
  /// bits, when `CDate` or `CTime` refuses them, and, whatever `utc` says, when the zone can't be read. A record of
  /// a time outside of 1970 to 2106 is not refused, but what is stored then is of no use: the low 32 bits of its
  /// second, or of -1, with `utc` less the zone's bias, where the fields as local time lie before 1970 or after 3000 in
  /// UTC.
  const tagTIMESTAMP_STRUCT& set(const tagTIMESTAMP_STRUCT& timeStamp, bool utc);

  /// Sets unix time and timestamp to 0; how the object compares stays.
  void clear();

  /// Whether the object equals `DTGetConst_EmptyTimeStamp()`: its unix time is 0, or, comparing timestamps, all fields
  /// of its timestamp are.
  bool empty() const { return *this == DTGetConst_EmptyTimeStamp(); }

  /// All six relations, against a unix time, a record and another object. They compare unix times, a record's being
  /// that of `CDateTime(record, true)`. With `timeStampComparsion` of the left object they compare the timestamps
  /// instead, field by field from the year to the fraction, except against a unix time.
  bool operator==(std::uint32_t seconds) const { return (*this <=> seconds) == 0; }
  bool operator==(const tagTIMESTAMP_STRUCT& timeStamp) const { return (*this <=> timeStamp) == 0; }
  bool operator==(const CDateTime& other) const { return (*this <=> other) == 0; }
  std::weak_ordering operator<=>(std::uint32_t seconds) const { return unixTime_ <=> seconds; }
  std::weak_ordering operator<=>(const tagTIMESTAMP_STRUCT& timeStamp) const;
  std::weak_ordering operator<=>(const CDateTime& other) const;

  /// Compares unix times, always, and tells where the argument lies: DT_Less when the argument is earlier than the
  /// object, DT_Greater when it is later. That is the reverse of `CDate` and `CTime`.
  DT_CompareReturn compare(std::uint32_t seconds) const;
  DT_CompareReturn compare(const tagTIMESTAMP_STRUCT& timeStamp) const;
  DT_CompareReturn compare(const CDateTime& other) const { return compare(other.unixTime_); }

  /// Each moves the instant by exact seconds, a month being 30.417 days. False, and the object is unchanged, for a step
  /// back to 1970-01-01 00:00:00 or beyond. Forward the count wraps at 32 bits, and so does a step of more seconds than
  /// a signed 32-bit number holds.
  bool bySeconds(std::int32_t delta);
  bool byMinutes(std::int32_t delta);
  bool byHours(std::int32_t delta);
  bool byDays(std::int16_t delta);
  bool byMonths(std::int16_t delta);

  /// Reads what `formatXMLDateTime` and `CDate::formatXMLDate` write, and looser texts too: numbers may have any count
  /// of digits, white space ahead and a sign, and what stands behind a number's digits is passed over, a zone offset as
  /// well. The date ends at T; without one, or with nothing ahead of it behind the second
  /// dash, the text is a date alone: midnight, UTC. A text that ends in Z is UTC, any other is UTC or local
  /// standard time as `utc` says. The seconds may be empty; their fraction counts for nothing. An empty text clears the
  /// object.
  ///
  /// False, and the object is cleared, when one of the two dashes, or behind T one of the two colons, is missing or has
  /// nothing ahead of it. True says nothing on the values: what `set` refuses leaves the object cleared all the same.
  bool setXML(const string& xml, bool utc);
  bool setXML(const wstring& xml, bool utc);

  /// Each puts the instant into `out`, whatever `out` held, and gives `out`. The Local forms print the local time in
  /// force at that instant (`_localtime64`), the others UTC. With a unix time of 0 all of them, the Local forms too,
  /// print the first second of 1970 in UTC; `formatMMDDYYYYHHMMSS` then has slashes in place of its dashes.
  ///
  /// `formatXMLDateTime`: 2010-08-05T15:18:12Z, and with `omitZone` the same without Z.
  /// `formatYYYYMMDDHHMMSS`: 2010/08/05 15:18:12. `formatMMDDYYYYHHMMSS`: 08-05-2010 15:18:12, its Local form
  /// 08/05/2010 15:18:12. `formatODBCDate`: {ts'2010-08-05 15:18:12'}, and with `plusForm` {ts+'2010-08-05 15:18:12+'}.
  string& formatXMLDateTime(string& out, bool omitZone) const;
  wstring& formatXMLDateTime(wstring& out, bool omitZone) const;
  string& formatYYYYMMDDHHMMSS(string& out) const;
  wstring& formatYYYYMMDDHHMMSS(wstring& out) const;
  string& formatLocalYYYYMMDDHHMMSS(string& out) const;
  wstring& formatLocalYYYYMMDDHHMMSS(wstring& out) const;
  string& formatMMDDYYYYHHMMSS(string& out) const;
  wstring& formatMMDDYYYYHHMMSS(wstring& out) const;
  string& formatLocalMMDDYYYYHHMMSS(string& out) const;
  wstring& formatLocalMMDDYYYYHHMMSS(wstring& out) const;
  string& formatODBCDate(string& out, bool plusForm) const;
  wstring& formatODBCDate(wstring& out, bool plusForm) const;
  string& formatLocalODBCDate(string& out, bool plusForm) const;
  wstring& formatLocalODBCDate(wstring& out, bool plusForm) const;

 private:
  const tagTIMESTAMP_STRUCT& setTimeStamp();

  bool timeStampComparsion_ = false;
  std::uint32_t unixTime_ = 0;
  tagTIMESTAMP_STRUCT timeStamp_;
};

}  // namespace kdx

#endif  // KDXCOMMON_DATETIME_DATE_TIME_H_
