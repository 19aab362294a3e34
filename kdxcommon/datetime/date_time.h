// CDateTime is an instant from 1970 to 2106, to the second, held as a unix time and broken down in UTC.
//
//   kdx::CDateTime start;                             // now
//   kdx::CDateTime end(start);
//   end.byHours(8);
//   if (start < end) log(end.formatXMLDateTime(text, false));   // 2010-08-05T15:18:12Z
//   if (!end.setXML(attribute, true) || end.empty()) reject();
//
// Local time is always read as standard time, and printed with daylight time if that was in force at the instant. A
// local record of a date in standard time is therefore printed unchanged, and one of a date in daylight time is printed
// later, usually by one hour. On POSIX this holds for the zone's whole history: a record is read with the standard
// offset of its date. On Windows the zone's present offset applies to all dates. None of this covers the hours that a
// change of the standard offset repeats or skips. If a zone changes to a smaller offset in winter or in Ramadan, that
// offset is its standard time.
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

/// The unix time is an unsigned number of seconds since 1970-01-01 00:00:00 UTC; 0 means no value. The timestamp is the
/// unix time broken down in UTC, with fraction 0. Two states have the unix time 0: cleared, in which all fields of the
/// timestamp are 0, and the first second of 1970, which results from `bySeconds(0)` on a cleared object and from
/// `set(record, true)`.
class KDX_EXPORT CDateTime {
 public:
  /// Calls `set()`: the current time.
  CDateTime();
  /// Calls `set(timeStamp, utc)`; a record that it rejects leaves the object cleared.
  CDateTime(const tagTIMESTAMP_STRUCT& timeStamp, bool utc);
  /// Calls `set(seconds)`.
  CDateTime(std::uint32_t seconds);

  /// Calls `set(seconds)` or `set(timeStamp, true)`; `timeStampComparsion()` is unchanged. A copy of an object also
  /// copies `timeStampComparsion()`.
  CDateTime& operator=(std::uint32_t seconds);
  CDateTime& operator=(const tagTIMESTAMP_STRUCT& timeStamp);

  /// Returns a reference to the instant broken down in UTC, which is valid as long as the object and changes with it.
  const tagTIMESTAMP_STRUCT& timeStamp() const { return timeStamp_; }

  /// Returns the seconds since 1970-01-01 00:00:00 UTC; 0 means no value.
  std::uint32_t unixTime() const { return unixTime_; }

  /// Returns whether the relations compare timestamps field by field; false after construction.
  bool timeStampComparsion() const { return timeStampComparsion_; }
  /// Sets whether the relations compare timestamps (true) or unix times (false).
  void setTimeStampComparsion(bool compareTimeStamps) { timeStampComparsion_ = compareTimeStamps; }

  /// Sets the object to the low 32 bits of the current time (`platformTime`) and returns the new unix time.
  std::uint32_t set();

  /// Sets the object to a unix time and returns it. Both 0 and 0xFFFFFFFF mean no value: they clear the object, and the
  /// result is 0.
  std::uint32_t set(std::uint32_t seconds);

  /// Sets the object to a record in UTC if `utc` is true, otherwise in local standard time, and returns `timeStamp()`.
  /// The fraction is discarded.
  ///
  /// Clears the object and returns `DTGetConst_EmptyTimeStamp()` itself if the sum of the fields in 32 bits is 0, if
  /// `CDate` or `CTime` rejects them, or if the zone can't be read, whether `utc` is true or not. A record outside of
  /// 1970 to 2106 is not rejected, but the stored value is meaningless: the low 32 bits of its second; or, if the
  /// fields as local time are before 1970 or after 3000 in UTC, the low 32 bits of -1, minus the zone's bias if `utc`
  /// is true.
  const tagTIMESTAMP_STRUCT& set(const tagTIMESTAMP_STRUCT& timeStamp, bool utc);

  /// Sets the unix time and all fields of the timestamp to 0; `timeStampComparsion()` is unchanged.
  void clear();

  /// Returns whether the object equals `DTGetConst_EmptyTimeStamp()`: whether its unix time is 0 or, if
  /// `timeStampComparsion()` is true, whether all fields of its timestamp are 0.
  bool empty() const { return *this == DTGetConst_EmptyTimeStamp(); }

  /// All six relations, with a unix time, a record and another object. They compare unix times; that of a record is the
  /// one of `CDateTime(record, true)`. If `timeStampComparsion()` of the left object is true, they compare the
  /// timestamps instead, field by field from the year to the fraction; a unix time is still compared with the unix
  /// time.
  bool operator==(std::uint32_t seconds) const { return (*this <=> seconds) == 0; }
  bool operator==(const tagTIMESTAMP_STRUCT& timeStamp) const { return (*this <=> timeStamp) == 0; }
  bool operator==(const CDateTime& other) const { return (*this <=> other) == 0; }
  std::weak_ordering operator<=>(std::uint32_t seconds) const { return unixTime_ <=> seconds; }
  std::weak_ordering operator<=>(const tagTIMESTAMP_STRUCT& timeStamp) const;
  std::weak_ordering operator<=>(const CDateTime& other) const;

  /// Compares unix times, whatever `timeStampComparsion()` is. Returns DT_Less if the argument is earlier than the
  /// object, DT_Greater if it is later. This is the reverse of `CDate` and `CTime`.
  DT_CompareReturn compare(std::uint32_t seconds) const;
  DT_CompareReturn compare(const tagTIMESTAMP_STRUCT& timeStamp) const;
  DT_CompareReturn compare(const CDateTime& other) const { return compare(other.unixTime_); }

  /// Add `delta` units to the instant as an exact number of seconds; a month is 30.417 days. Return false and leave the
  /// object unchanged if a negative delta would lead to 1970-01-01 00:00:00 or earlier. A result that exceeds 32 bits
  /// wraps, and so does a delta whose seconds exceed a signed 32-bit number.
  bool bySeconds(std::int32_t delta);
  bool byMinutes(std::int32_t delta);
  bool byHours(std::int32_t delta);
  bool byDays(std::int16_t delta);
  bool byMonths(std::int16_t delta);

  /// Sets the object to a text as `formatXMLDateTime` and `CDate::formatXMLDate` write it. Looser texts are accepted,
  /// too: a number may be of any length, with leading white space and a sign, and what follows its digits is ignored,
  /// even a zone offset. The date ends at T; if there is no T, or if it follows the second dash immediately, the text
  /// is a date without a time: midnight, UTC. A text that ends in Z is in UTC; any other is in UTC if `utc` is true,
  /// otherwise in local standard time. The seconds may be empty; their fraction is ignored. An empty text clears the
  /// object, and the result is true.
  ///
  /// Returns false and clears the object if one of the two dashes, or after the T one of the two colons, is missing or
  /// has nothing before it. The result doesn't reflect the values: if `set` rejects them, the object is cleared, and
  /// the result is true.
  bool setXML(const string& xml, bool utc);
  bool setXML(const wstring& xml, bool utc);

  /// Set `out` to the text of the instant and return `out`. The Local forms print the local time in force at that
  /// instant (`_localtime64`), the others UTC. If the unix time is 0, all of them, including the Local forms, print the
  /// first second of 1970 in UTC; `formatMMDDYYYYHHMMSS` then prints slashes instead of dashes.
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
