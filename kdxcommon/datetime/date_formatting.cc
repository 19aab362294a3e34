// Prints dates and times. Narrow and wide texts share one printer, which expands its patterns at compile time.

#include <algorithm>
#include <charconv>
#include <iterator>

#include "kdxcommon/datetime/calendar_date.h"
#include "kdxcommon/datetime/date_time.h"
#include "kdxcommon/datetime/time_of_day.h"
#include "kdxcommon/datetime/unix_time.h"

namespace kdx {
namespace {

// A text in which %Y %m %d %H %M %S stand for the year with at least four digits, and the month, day, hour, minute and
// second with at least two.
template <std::size_t kSize>
struct Pattern {
  consteval Pattern(const char (&literal)[kSize]) { std::copy_n(literal, kSize, text); }
  static constexpr std::size_t kLength = kSize - 1;
  char text[kSize];
};

// Large enough for every pattern in this file; a field has at most six characters.
constexpr std::size_t kLongestText = 64;

constexpr tagTIMESTAMP_STRUCT kStartOfUnixTime{.year = 1970, .month = 1, .day = 1};

template <typename Unit>
Unit* putTwoDigits(Unit* out, unsigned number) {
  out[0] = static_cast<Unit>('0' + number / 10);
  out[1] = static_cast<Unit>('0' + number % 10);
  return out + 2;
}

// Prints numbers that are out of range for a date or time: negative, or with more digits than `digits`.
template <typename Unit>
Unit* putAnyNumber(Unit* out, int number, std::ptrdiff_t digits) {
  char text[8];
  const char* end = std::to_chars(text, std::end(text), number < 0 ? -number : number).ptr;
  if (number < 0) *out++ = '-';
  out = std::fill_n(out, std::max<std::ptrdiff_t>(digits - (end - text), 0), static_cast<Unit>('0'));
  return std::copy(static_cast<const char*>(text), end, out);
}

template <typename Unit>
Unit* putNumber2(Unit* out, int number) {
  if (number < 0 || number > 99) return putAnyNumber(out, number, 2);
  return putTwoDigits(out, static_cast<unsigned>(number));
}

template <typename Unit>
Unit* putNumber4(Unit* out, int number) {
  if (number < 0 || number > 9999) return putAnyNumber(out, number, 4);
  const auto year = static_cast<unsigned>(number);
  return putTwoDigits(putTwoDigits(out, year / 100), year % 100);
}

template <char kField, typename Unit, typename Record>
Unit* putField(Unit* out, const Record& record) {
  if constexpr (kField == 'Y') {
    return putNumber4(out, record.year);
  } else if constexpr (kField == 'm') {
    return putNumber2(out, record.month);
  } else if constexpr (kField == 'd') {
    return putNumber2(out, record.day);
  } else if constexpr (kField == 'H') {
    return putNumber2(out, record.hour);
  } else if constexpr (kField == 'M') {
    return putNumber2(out, record.minute);
  } else {
    static_assert(kField == 'S');
    return putNumber2(out, record.second);
  }
}

template <Pattern kPattern, std::size_t kPosition = 0, typename Unit, typename Record>
Unit* put(Unit* out, const Record& record) {
  if constexpr (kPosition == kPattern.kLength) {
    return out;
  } else if constexpr (kPattern.text[kPosition] == '%') {
    return put<kPattern, kPosition + 2>(putField<kPattern.text[kPosition + 1]>(out, record), record);
  } else {
    *out = static_cast<Unit>(kPattern.text[kPosition]);
    return put<kPattern, kPosition + 1>(out + 1, record);
  }
}

template <Pattern kPattern, typename Text, typename Record>
Text& print(Text& out, const Record& record) {
  typename Text::value_type text[kLongestText];
  return out.assign(text, put<kPattern>(text, record));
}

template <Pattern kPlain, Pattern kPlus, typename Text, typename Record>
Text& printODBC(Text& out, const Record& record, bool plusForm) {
  return plusForm ? print<kPlus>(out, record) : print<kPlain>(out, record);
}

const tagTIMESTAMP_STRUCT& shownUtc(const CDateTime& dateTime) {
  return dateTime.unixTime() == 0 ? kStartOfUnixTime : dateTime.timeStamp();
}

tagTIMESTAMP_STRUCT shownLocal(const CDateTime& dateTime) {
  tagTIMESTAMP_STRUCT local = kStartOfUnixTime;
  if (dateTime.unixTime() != 0) localTimeStamp(dateTime.unixTime(), local);
  return local;
}

template <typename Text>
Text& printXML(Text& out, const tagTIMESTAMP_STRUCT& shown, bool omitZone) {
  return omitZone ? print<"%Y-%m-%dT%H:%M:%S">(out, shown) : print<"%Y-%m-%dT%H:%M:%SZ">(out, shown);
}

template <typename Text>
Text& printYearFirst(Text& out, const tagTIMESTAMP_STRUCT& shown) {
  return print<"%Y/%m/%d %H:%M:%S">(out, shown);
}

template <typename Text>
Text& printMonthFirst(Text& out, const tagTIMESTAMP_STRUCT& shown) {
  return print<"%m/%d/%Y %H:%M:%S">(out, shown);
}

template <typename Text>
Text& printMonthFirstUtc(Text& out, const CDateTime& dateTime) {
  if (dateTime.unixTime() == 0) return printMonthFirst(out, kStartOfUnixTime);
  return print<"%m-%d-%Y %H:%M:%S">(out, dateTime.timeStamp());
}

template <typename Text>
Text& printODBC(Text& out, const tagTIMESTAMP_STRUCT& shown, bool plusForm) {
  return printODBC<"{ts'%Y-%m-%d %H:%M:%S'}", "{ts+'%Y-%m-%d %H:%M:%S+'}">(out, shown, plusForm);
}

template <typename Text>
Text& printODBC(Text& out, const Time_t& shown, bool plusForm) {
  return printODBC<"{t'%H:%M:%S'}", "{t+'%H:%M:%S+'}">(out, shown, plusForm);
}

template <typename Text>
Text& printODBC(Text& out, const Date_t& shown, bool plusForm) {
  return printODBC<"{d'%Y-%m-%d'}", "{d+'%Y-%m-%d+'}">(out, shown, plusForm);
}

}  // namespace

string& CDateTime::formatXMLDateTime(string& out, bool omitZone) const {
  return printXML(out, shownUtc(*this), omitZone);
}

wstring& CDateTime::formatXMLDateTime(wstring& out, bool omitZone) const {
  return printXML(out, shownUtc(*this), omitZone);
}

string& CDateTime::formatYYYYMMDDHHMMSS(string& out) const {
  return printYearFirst(out, shownUtc(*this));
}

wstring& CDateTime::formatYYYYMMDDHHMMSS(wstring& out) const {
  return printYearFirst(out, shownUtc(*this));
}

string& CDateTime::formatLocalYYYYMMDDHHMMSS(string& out) const {
  return printYearFirst(out, shownLocal(*this));
}

wstring& CDateTime::formatLocalYYYYMMDDHHMMSS(wstring& out) const {
  return printYearFirst(out, shownLocal(*this));
}

string& CDateTime::formatMMDDYYYYHHMMSS(string& out) const {
  return printMonthFirstUtc(out, *this);
}

wstring& CDateTime::formatMMDDYYYYHHMMSS(wstring& out) const {
  return printMonthFirstUtc(out, *this);
}

string& CDateTime::formatLocalMMDDYYYYHHMMSS(string& out) const {
  return printMonthFirst(out, shownLocal(*this));
}

wstring& CDateTime::formatLocalMMDDYYYYHHMMSS(wstring& out) const {
  return printMonthFirst(out, shownLocal(*this));
}

string& CDateTime::formatODBCDate(string& out, bool plusForm) const {
  return printODBC(out, shownUtc(*this), plusForm);
}

wstring& CDateTime::formatODBCDate(wstring& out, bool plusForm) const {
  return printODBC(out, shownUtc(*this), plusForm);
}

string& CDateTime::formatLocalODBCDate(string& out, bool plusForm) const {
  return printODBC(out, shownLocal(*this), plusForm);
}

wstring& CDateTime::formatLocalODBCDate(wstring& out, bool plusForm) const {
  return printODBC(out, shownLocal(*this), plusForm);
}

string& CTime::formatHHMMSS(string& out) const {
  return print<"%H:%M:%S">(out, time_);
}

wstring& CTime::formatHHMMSS(wstring& out) const {
  return print<"%H:%M:%S">(out, time_);
}

string& CTime::formatLocalHHMMSS(string& out) const {
  return print<"%H:%M:%S">(out, localTime());
}

wstring& CTime::formatLocalHHMMSS(wstring& out) const {
  return print<"%H:%M:%S">(out, localTime());
}

string& CTime::formatODBCTime(string& out, bool plusForm) const {
  return printODBC(out, time_, plusForm);
}

wstring& CTime::formatODBCTime(wstring& out, bool plusForm) const {
  return printODBC(out, time_, plusForm);
}

string& CTime::formatLocalODBCTime(string& out, bool plusForm) const {
  return printODBC(out, localTime(), plusForm);
}

wstring& CTime::formatLocalODBCTime(wstring& out, bool plusForm) const {
  return printODBC(out, localTime(), plusForm);
}

string& CDate::formatMMDDYYYY(string& out) const {
  return print<"%m-%d-%Y">(out, date_);
}

wstring& CDate::formatMMDDYYYY(wstring& out) const {
  return print<"%m-%d-%Y">(out, date_);
}

string& CDate::formatXMLDate(string& out) const {
  return print<"%Y-%m-%d">(out, date_);
}

wstring& CDate::formatXMLDate(wstring& out) const {
  return print<"%Y-%m-%d">(out, date_);
}

string& CDate::formatODBCDate(string& out, bool plusForm) const {
  return printODBC(out, date_, plusForm);
}

wstring& CDate::formatODBCDate(wstring& out, bool plusForm) const {
  return printODBC(out, date_, plusForm);
}

}  // namespace kdx
