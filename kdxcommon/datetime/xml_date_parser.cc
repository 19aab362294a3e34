// Parses the dates, with and without a time, of XML documents. Narrow and wide texts share one parser.

#include <algorithm>
#include <limits>

#include "kdxcommon/base/decimal_text.h"
#include "kdxcommon/datetime/calendar_date.h"
#include "kdxcommon/datetime/date_time.h"

namespace kdx {
namespace {

// Reads the numbers of a text in sequence. `decimalUnsigned32` converts the text from the current position to the
// delimiter, so that anything may follow the digits; a narrower field receives the low bits.
template <typename Unit>
class NumberReader {
 public:
  using Text = std::basic_string_view<Unit>;

  explicit NumberReader(Text text) : rest_(text) {}

  // Sets `field` to the number before the next `delimiter` and moves past the delimiter. Returns false and changes
  // nothing if there is no such delimiter or nothing before it.
  template <typename Field>
  bool readUpTo(char delimiter, Field& field) {
    auto [number, end] = leadingDigits();
    if (end == rest_.size()) return false;
    if (rest_[end] != static_cast<Unit>(delimiter)) {
      end = rest_.find(static_cast<Unit>(delimiter), end);
      if (end == Text::npos) return false;
      number = decimalUnsigned32(rest_.substr(0, end));
    }
    if (end == 0) return false;
    field = static_cast<Field>(number);
    rest_.remove_prefix(end + 1);
    return true;
  }

  template <typename Field>
  void readRest(Field& field) const {
    const auto [number, end] = leadingDigits();
    field = static_cast<Field>(end == rest_.size() ? number : decimalUnsigned32(rest_));
  }

 private:
  struct Digits {
    std::uint32_t number;
    std::size_t count;
  };

  // Returns the leading digits of the text, at most as many as always fit into 32 bits; usually these are the whole
  // field.
  Digits leadingDigits() const {
    constexpr std::size_t kFit = std::numeric_limits<std::uint32_t>::digits10;
    const std::size_t limit = std::min(rest_.size(), kFit);
    Digits digits{0, 0};
    while (digits.count < limit && isAsciiDigit(rest_[digits.count])) {
      digits.number = digits.number * 10 + static_cast<std::uint32_t>(rest_[digits.count++] - '0');
    }
    return digits;
  }

  Text rest_;
};

// Returns whether the text has the delimiters of a date with or without a time. Sets `record` to the numbers read; if
// there is no time, leaves its time fields unchanged and sets `hasTime` to false.
template <typename Unit>
bool readDateTime(std::basic_string_view<Unit> text, tagTIMESTAMP_STRUCT& record, bool& hasTime) {
  NumberReader reader(text);
  if (!reader.readUpTo('-', record.year) || !reader.readUpTo('-', record.month)) return false;
  hasTime = reader.readUpTo('T', record.day);
  if (!hasTime) {
    reader.readRest(record.day);
    return true;
  }
  if (!reader.readUpTo(':', record.hour) || !reader.readUpTo(':', record.minute)) return false;
  const bool hasFraction = reader.readUpTo('.', record.second);
  hasFraction ? reader.readRest(record.fraction) : reader.readRest(record.second);
  return true;
}

template <typename Unit>
bool setDateTime(CDateTime& dateTime, std::basic_string_view<Unit> text, bool utc) {
  dateTime.clear();
  if (text.empty()) return true;
  const bool zulu = text.back() == 'Z';
  if (zulu) text.remove_suffix(1);
  tagTIMESTAMP_STRUCT record;
  bool hasTime = false;
  if (!readDateTime(text, record, hasTime)) return false;
  dateTime.set(record, utc || zulu || !hasTime);
  return true;
}

template <typename Unit>
bool setDate(CDate& date, std::basic_string_view<Unit> text) {
  date.clear();
  if (text.empty()) return true;
  NumberReader reader(text);
  Date_t record;
  if (!reader.readUpTo('-', record.year) || !reader.readUpTo('-', record.month)) return false;
  reader.readRest(record.day);
  date.set(record);
  return true;
}

}  // namespace

bool CDateTime::setXML(const string& xml, bool utc) {
  return setDateTime<char>(*this, xml, utc);
}

bool CDateTime::setXML(const wstring& xml, bool utc) {
  return setDateTime<wchar>(*this, xml, utc);
}

bool CDate::setXML(const string& xml) {
  return setDate<char>(*this, xml);
}

bool CDate::setXML(const wstring& xml) {
  return setDate<wchar>(*this, xml);
}

}  // namespace kdx
