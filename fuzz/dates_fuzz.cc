// Instants, times of day and dates that are set, moved, compared and printed, beside models of them that reckon with
// the standard library's calendar. The first two bytes of the input are the number of cases less one.

#include <chrono>
#include <compare>
#include <cstdint>
#include <map>
#include <string>
#include <utility>

#include "choices.h"
#include "kdxcommon/datetime/calendar_date.h"
#include "kdxcommon/datetime/date_time.h"
#include "kdxcommon/datetime/time_of_day.h"
#include "kdxcommon/testing/fake_zone.h"

namespace {

using kdx::CDate;
using kdx::CDateTime;
using kdx::CTime;
using kdx::Date_t;
using kdx::Time_t;
using Record = kdx::tagTIMESTAMP_STRUCT;
using kdx::testing::Choices;
using kdx::testing::FakeZone;
using kdx::testing::require;

constexpr std::int64_t kDay = 86400;
constexpr Record kStartOf1970{.year = 1970, .month = 1, .day = 1};

// The zone of a case. The C runtime's may be another one, as on Windows if TZ is set.
struct Zone : FakeZone {
  Zone(std::int32_t minutes, std::uint32_t state, std::int64_t shiftOfRuntime)
      : FakeZone(minutes, state), bias(minutes * 60), inForce(state), shift(shiftOfRuntime) {}
  std::int64_t _mktime64(const kdx::os::BrokenDownTime& local) override {
    const std::int64_t second = FakeZone::_mktime64(local);
    return second < 0 ? second : second + shift;
  }
  bool isReadable() const { return inForce != kdx::os::kTimeZoneIdInvalid; }
  std::int64_t presentBias() const { return bias - (inForce == kdx::os::kTimeZoneIdDaylight ? 3600 : 0); }

  const std::int64_t bias;  // seconds
  const std::uint32_t inForce;
  const std::int64_t shift;
};

// The calendar.

std::int64_t daysOf(int year, unsigned month, unsigned day) {
  using namespace std::chrono;
  const sys_days first = std::chrono::year(year) / static_cast<int>(month) / 1;
  return (first + days(day - 1)).time_since_epoch().count();  // a 29th of February may be a first of March
}

Record recordOf(std::int64_t second) {
  using namespace std::chrono;
  const sys_seconds instant{seconds(second)};
  const year_month_day date(floor<days>(instant));
  const hh_mm_ss time(instant - floor<days>(instant));
  return {static_cast<std::int16_t>(static_cast<int>(date.year())),
          static_cast<std::uint16_t>(static_cast<unsigned>(date.month())),
          static_cast<std::uint16_t>(static_cast<unsigned>(date.day())),
          static_cast<std::uint16_t>(time.hours().count()),
          static_cast<std::uint16_t>(time.minutes().count()),
          static_cast<std::uint16_t>(time.seconds().count()),
          0};
}

bool isDate(int year, unsigned month, unsigned day) {
  constexpr unsigned kLengths[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  if (year < 1 || month < 1 || month > 12) return false;
  return day >= 1 && day <= kLengths[month - 1] + (month == 2 && year % 4 == 0);
}

bool isTime(unsigned hour, unsigned minute, unsigned second) {
  return hour < 24 && minute < 60 && second < 60;
}

std::uint32_t low32Bits(std::int64_t second) {
  return static_cast<std::uint32_t>(second);
}

// Values near the borders, and any.

std::uint32_t randomSeconds(Choices& choices) {
  constexpr std::uint32_t kBorders[] = {0,          1,          59,         3600,       86399,     86400,
                                        1281021492, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFE, 0xFFFFFFFF};
  return choices.below(2) ? choices.among(kBorders) : choices.any32Bits();
}

std::int32_t randomDelta(Choices& choices) {
  constexpr std::int32_t kBorders[] = {0,     1,      -1,    60,    -60,        24,        -24,
                                       25,    -25,    1440,  -1440, 1441,       -1441,     86399,
                                       86400, -86400, 86401, 12,    2000000000, INT32_MIN, INT32_MAX};
  if (choices.below(2)) return choices.among(kBorders);
  return static_cast<std::int32_t>(choices.any32Bits()) >> choices.below(32);
}

Record randomRecord(Choices& choices, const Zone& zone) {
  constexpr std::int16_t kYears[] = {2010, 2012, 1970, 1969, 2100, 2106,  2107, 3000,
                                     3001, 1,    0,    -1,   9999, 10000, 32767};
  constexpr std::uint16_t kMonths[] = {1, 2, 2, 3, 8, 11, 12, 13, 0, 99, 100, 65535},
                          kDays[] = {1, 5, 28, 29, 29, 30, 31, 32, 0, 99, 100};
  constexpr std::uint16_t kHours[] = {0, 6, 15, 23, 24}, kMinutes[] = {0, 28, 59, 60, 65535};
  constexpr std::uint32_t kFractions[] = {0, 7, 0xFFFFFFFF};
  switch (choices.below(8)) {
    case 0:
      return {};
    case 1:
      return {2010, 8, 5, 15, 18, 12, 0U - 2068};  // the sum of its fields is 0
    case 2:
      return recordOf(randomSeconds(choices));
    case 3: {  // about the first and the last second that convert as a local time
      const std::int64_t border = choices.below(2) ? 0 : kdx::os::kLastConvertibleSecond;
      return recordOf(border - zone.bias + static_cast<std::int64_t>(choices.below(5)) - 2);
    }
    default:
      break;
  }
  return {choices.among(kYears),   choices.among(kMonths),  choices.among(kDays),     choices.among(kHours),
          choices.among(kMinutes), choices.among(kMinutes), choices.among(kFractions)};
}

// Texts.

// The text with the fields of `record` for %Y %m %d %H %M %S.
std::string printed(const char* pattern, const Record& record) {
  const std::map<char, int> fields = {{'Y', record.year}, {'m', record.month},  {'d', record.day},
                                      {'H', record.hour}, {'M', record.minute}, {'S', record.second}};
  std::string text;
  for (; *pattern; ++pattern) {
    if (*pattern != '%') {
      text += *pattern;
      continue;
    }
    const int number = fields.at(*++pattern);
    const std::string digits = std::to_string(number < 0 ? -number : number);
    if (number < 0) text += '-';
    for (std::size_t size = digits.size(); size < (*pattern == 'Y' ? 4 : 2); ++size) text += '0';
    text += digits;
  }
  return text;
}

// Both widths print the text over a longer one.
template <typename Format>
void requireText(const std::string& expected, const Format& format) {
  kdx::string narrow = "a longer text than any of these, left over";
  kdx::wstring wide;
  require(&format(narrow) == &narrow && narrow == expected, expected.c_str());
  require(format(wide) == kdx::wstring(expected.begin(), expected.end()), expected.c_str());
}

#define PRINTED(call)       \
  [&](auto& out) -> auto& { \
    return call;            \
  }

// Objects against their models, and in order with others.

template <typename Object, typename Other>
void requireOrder(const Object& object, const Other& other, std::weak_ordering order) {
  require((object == other) == (order == 0) && (object != other) == (order != 0), "==");
  require((object < other) == (order < 0) && (object <= other) == (order <= 0), "<");
  require((object > other) == (order > 0) && (object >= other) == (order >= 0), ">");
}

kdx::DT_CompareReturn sign(std::weak_ordering order) {
  return order < 0 ? kdx::DT_Less : order > 0 ? kdx::DT_Greater : kdx::DT_Equal;
}

struct Instant {
  std::uint32_t unixTime = 0;
  Record record;
  bool comparesRecords = false;

  void set(std::uint32_t seconds) {
    const bool none = seconds == 0 || seconds == 0xFFFFFFFF;
    unixTime = none ? 0 : seconds;
    record = none ? Record{} : recordOf(seconds);
  }
  bool set(const Record& r, bool utc, const Zone& zone) {
    const std::uint32_t sum = low32Bits(r.year) + r.month + r.day + r.hour + r.minute + r.second + r.fraction;
    unixTime = 0;
    record = {};
    if (sum == 0 || !isDate(r.year, r.month, r.day) || !isTime(r.hour, r.minute, r.second) || !zone.isReadable()) {
      return false;
    }
    const std::int64_t local =
        daysOf(r.year, r.month, r.day) * kDay + r.hour * 3600 + r.minute * 60 + r.second + zone.bias;
    const bool convertible = local >= 0 && local <= kdx::os::kLastConvertibleSecond;
    const std::int64_t inUtc = local - zone.bias;
    if (!utc) {
      unixTime = low32Bits(convertible ? local + zone.shift : -1);
    } else {
      unixTime = low32Bits(convertible || inUtc == low32Bits(inUtc) ? inUtc : -1 - zone.bias);
    }
    record = recordOf(unixTime);
    return true;
  }
  bool move(std::int64_t seconds) {
    const auto delta = static_cast<std::int32_t>(seconds);
    if (delta < 0 && unixTime + std::int64_t{delta} <= 0) return false;
    unixTime += low32Bits(delta);
    record = recordOf(unixTime);
    return true;
  }
};

void requireSame(const CDateTime& object, const Instant& model, const Zone& zone) {
  require(object.unixTime() == model.unixTime && object.timeStamp() == model.record, "an instant");
  require(object.timeStampComparsion() == model.comparesRecords, "what an instant compares");
  require(object.empty() == (model.comparesRecords ? model.record == Record{} : model.unixTime == 0),
          "an empty instant");
  const Record utc = model.unixTime == 0 ? kStartOf1970 : model.record;
  const std::int64_t second = model.unixTime - zone.presentBias();
  const Record local = model.unixTime == 0 ? kStartOf1970 : second < 0 ? Record{} : recordOf(second);
  requireText(printed("%Y-%m-%dT%H:%M:%SZ", utc), PRINTED(object.formatXMLDateTime(out, false)));
  requireText(printed("%Y-%m-%dT%H:%M:%S", utc), PRINTED(object.formatXMLDateTime(out, true)));
  requireText(printed("%Y/%m/%d %H:%M:%S", utc), PRINTED(object.formatYYYYMMDDHHMMSS(out)));
  requireText(printed("%Y/%m/%d %H:%M:%S", local), PRINTED(object.formatLocalYYYYMMDDHHMMSS(out)));
  constexpr char kSlashes[] = "%m/%d/%Y %H:%M:%S", kDashes[] = "%m-%d-%Y %H:%M:%S";
  requireText(printed(model.unixTime == 0 ? kSlashes : kDashes, utc), PRINTED(object.formatMMDDYYYYHHMMSS(out)));
  requireText(printed(kSlashes, local), PRINTED(object.formatLocalMMDDYYYYHHMMSS(out)));
  constexpr char kPlain[] = "{ts'%Y-%m-%d %H:%M:%S'}", kPlus[] = "{ts+'%Y-%m-%d %H:%M:%S+'}";
  requireText(printed(kPlain, utc), PRINTED(object.formatODBCDate(out, false)));
  requireText(printed(kPlus, utc), PRINTED(object.formatODBCDate(out, true)));
  requireText(printed(kPlain, local), PRINTED(object.formatLocalODBCDate(out, false)));
  requireText(printed(kPlus, local), PRINTED(object.formatLocalODBCDate(out, true)));
}

void compare(const CDateTime& object, const Instant& model, Choices& choices, const Zone& zone) {
  const std::uint32_t seconds = randomSeconds(choices);
  requireOrder(object, seconds, model.unixTime <=> seconds);
  require(object.compare(seconds) == sign(seconds <=> model.unixTime), "compare with seconds");
  const Record record = randomRecord(choices, zone);
  Instant ofRecord;
  ofRecord.set(record, true, zone);
  const std::weak_ordering unixTimes = model.unixTime <=> ofRecord.unixTime;
  requireOrder(object, record, model.comparesRecords ? model.record <=> record : unixTimes);
  require(object.compare(record) == sign(ofRecord.unixTime <=> model.unixTime), "compare with a record");
  requireOrder(object, CDateTime(record, true), model.comparesRecords ? model.record <=> ofRecord.record : unixTimes);
  require(object.compare(CDateTime(record, true)) == object.compare(record), "compare with an instant");
}

void checkInstant(Choices& choices, Zone& zone) {
  CDateTime object(randomSeconds(choices));
  Instant model;
  model.set(object.unixTime());
  for (std::size_t steps = choices.below(6); steps > 0; --steps) {
    const std::int32_t delta = randomDelta(choices);
    const auto small = static_cast<std::int16_t>(delta);
    const std::uint32_t seconds = randomSeconds(choices);
    const Record record = randomRecord(choices, zone);
    const bool utc = choices.below(2) != 0;
    const std::int64_t now = std::int64_t{0x7'0000'0000} + seconds;
    switch (choices.below(11)) {
      case 0:
        model.set(seconds);
        require(object.set(seconds) == model.unixTime, "the result of set");
        break;
      case 1:
      case 2: {
        const bool isTime = model.set(record, utc, zone);
        const Record& result = object.set(record, utc);
        require(&result == (isTime ? &object.timeStamp() : &kdx::DTGetConst_EmptyTimeStamp()), "the result of set");
        break;
      }
      case 3:
        object = seconds, model.set(seconds);
        break;
      case 4:
        object = record, model.set(record, true, zone);
        break;
      case 5:
        require(object.bySeconds(delta) == model.move(delta), "bySeconds");
        break;
      case 6:
        require(object.byMinutes(delta) == model.move(std::int64_t{delta} * 60), "byMinutes");
        break;
      case 7:
        require(object.byHours(delta) == model.move(std::int64_t{delta} * 3600), "byHours");
        break;
      case 8:
        require(object.byDays(small) == model.move(small * kDay), "byDays");
        break;
      case 9:
        require(object.byMonths(small) == model.move(std::int64_t{small} * 26280288 / 10), "byMonths");
        break;
      default:
        zone.setNow(now);
        model.unixTime = low32Bits(now);
        model.record = recordOf(seconds);
        require(object.set() == model.unixTime, "the present second");
        if (choices.below(2)) object.clear(), model.set(0U);
        object.setTimeStampComparsion(model.comparesRecords = utc);
    }
    requireSame(object, model, zone);
  }
  compare(object, model, choices, zone);
}

void checkTimeOfDay(Choices& choices, Zone& zone) {
  const Record r = randomRecord(choices, zone);
  const Time_t start{r.hour, r.minute, r.second, r.fraction};
  const bool valid = isTime(r.hour, r.minute, r.second), utc = choices.below(2) != 0;
  const auto around = [](std::int64_t second) { return static_cast<std::uint32_t>((second % kDay + kDay) % kDay); };
  const auto timeOf = [](std::uint32_t second) {
    return Time_t{static_cast<std::uint16_t>(second / 3600), static_cast<std::uint16_t>(second / 60 % 60),
                  static_cast<std::uint16_t>(second % 60), 0};
  };
  const std::uint32_t second = r.hour * 3600U + r.minute * 60U + r.second;
  Time_t expected = valid ? start : Time_t{};
  if (valid && !utc && zone.isReadable()) expected = timeOf(around(second + zone.presentBias()));
  CTime time({1, 2, 3, 4}, true);
  require(time.set(start, utc) == (valid && (utc || zone.isReadable())), "set");
  require(time == expected && time.empty() == (expected == Time_t{}), "a time");
  CTime ofRecord;
  ofRecord = r;
  require(ofRecord == (valid ? start : Time_t{}), "the time of a record");
  require((CTime() = start) == ofRecord, "the assigned time");
  requireOrder(time, ofRecord, expected <=> ofRecord.time());
  requireOrder(time, ofRecord.time(), expected <=> ofRecord.time());
  require(time.compare(ofRecord) == sign(expected <=> ofRecord.time()), "compare");

  const std::uint32_t seconds =
      choices.below(2) ? randomSeconds(choices) : static_cast<std::uint32_t>(choices.below(kDay + 2));
  const bool converts = !utc && seconds % kDay != 0;
  CTime bySeconds({1, 2, 3, 4}, true);
  require(bySeconds.set(seconds, utc) == (seconds <= kDay && (!converts || zone.isReadable())), "set by seconds");
  const std::int64_t offset = converts && zone.isReadable() ? zone.presentBias() : 0;
  require(bySeconds == (seconds > kDay ? Time_t{1, 2, 3, 4} : timeOf(around(seconds + offset))), "a time by seconds");

  const std::int32_t delta = randomDelta(choices);
  const std::pair<std::int64_t, bool (CTime::*)(std::int32_t)> moves[] = {
      {1, &CTime::bySeconds}, {60, &CTime::byMinutes}, {3600, &CTime::byHours}};
  for (const auto& [unit, move] : moves) {
    const std::int64_t step = delta * unit;
    const bool inRange = step >= -kDay && step <= kDay;
    if (inRange && step % kDay != 0) expected = timeOf(around(time.seconds() + step));
    require((time.*move)(delta) == inRange && time == expected, "a move");
  }
  require(time.seconds() == expected.hour * 3600U + expected.minute * 60U + expected.second, "the second of the day");
  const Time_t t = expected;
  const Time_t local = zone.isReadable() ? timeOf(around(time.seconds() - zone.presentBias())) : t;
  constexpr char kPlain[] = "{t'%H:%M:%S'}", kPlus[] = "{t+'%H:%M:%S+'}", kBare[] = "%H:%M:%S";
  const auto text = [](const char* pattern, const Time_t& shown) {
    return printed(pattern, {0, 0, 0, shown.hour, shown.minute, shown.second, 0});
  };
  requireText(text(kBare, t), PRINTED(time.formatHHMMSS(out)));
  requireText(text(kPlain, t), PRINTED(time.formatODBCTime(out, false)));
  requireText(text(kPlus, t), PRINTED(time.formatODBCTime(out, true)));
  requireText(text(kBare, local), PRINTED(time.formatLocalHHMMSS(out)));
  requireText(text(kPlain, local), PRINTED(time.formatLocalODBCTime(out, false)));
  requireText(text(kPlus, local), PRINTED(time.formatLocalODBCTime(out, true)));
}

void checkDate(Choices& choices, Zone& zone) {
  const Record r = randomRecord(choices, zone);
  const Date_t start{r.year, r.month, r.day};
  const bool valid = isDate(r.year, r.month, r.day);
  CDate date({1999, 1, 1}), ofRecord;
  require(date.set(start) == valid && date == (valid ? start : kdx::DTGetConst_EmptyDate()), "a date");
  require(date.set(static_cast<std::uint16_t>(r.year), r.month, r.day) == valid && date.empty() == !valid, "a date");
  ofRecord = r;
  require(ofRecord == date, "the date of a record");
  require((ofRecord = start) == date, "the assigned date");
  const std::uint32_t seconds = randomSeconds(choices);
  zone.setNow(std::int64_t{0x7'0000'0000} + seconds);
  const Record today = recordOf(seconds);
  require(CDate() == Date_t{today.year, today.month, today.day}, "today");
  require(CTime() == Time_t{today.hour, today.minute, today.second, 0}, "now");
  CDate any(start);
  requireOrder(any, date, start <=> date.date());
  requireOrder(any, date.date(), start <=> date.date());
  require(any.compare(date) == sign(start <=> date.date()), "compare");
  requireText(printed("%m-%d-%Y", r), PRINTED(any.formatMMDDYYYY(out)));
  requireText(printed("%Y-%m-%d", r), PRINTED(any.formatXMLDate(out)));
  requireText(printed("{d'%Y-%m-%d'}", r), PRINTED(any.formatODBCDate(out, false)));
  requireText(printed("{d+'%Y-%m-%d+'}", r), PRINTED(any.formatODBCDate(out, true)));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  kdx::testing::repeat(data, size, [](Choices& choices) {
    constexpr std::int32_t kBiases[] = {0, 300, -120, -345, -330, 720, -840};
    constexpr std::uint32_t kStates[] = {kdx::os::kTimeZoneIdUnknown, kdx::os::kTimeZoneIdStandard,
                                         kdx::os::kTimeZoneIdDaylight, kdx::os::kTimeZoneIdStandard,
                                         kdx::os::kTimeZoneIdInvalid};
    constexpr std::int64_t kShifts[] = {0, 0, 21600};
    Zone zone(choices.among(kBiases), choices.among(kStates), choices.among(kShifts));
    checkInstant(choices, zone);
    checkTimeOfDay(choices, zone);
    checkDate(choices, zone);
  });
  return 0;
}
