#include <benchmark/benchmark.h>
#include <time.h>

#include <string_view>
#include <vector>

#include "kdxcommon/base/civil_date.h"
#include "kdxcommon/base/decimal_text.h"
#include "kdxcommon/datetime/date_time.h"
#include "kdxcommon/datetime/valid_fields.h"

namespace kdx {
namespace {

constexpr std::uint32_t kInstant = 1281021492;  // 2010-08-05 15:18:12 UTC
constexpr std::uint32_t kInstants = 0x3FFF;     // of one run, 15 hours apart
constexpr std::uint32_t kStep = 54321;

// Steps through many days, so that the branch predictor can't learn a single date.
class Instants {
 public:
  std::uint32_t next() { return kInstant + (++count_ & kInstants) * kStep; }

 private:
  std::uint32_t count_ = 0;
};

void setSeconds(benchmark::State& state) {
  Instants instants;
  CDateTime dateTime(kInstant);
  for (auto _ : state) benchmark::DoNotOptimize(dateTime.set(instants.next()));
}
BENCHMARK(setSeconds);

void setSecondsByGmtime(benchmark::State& state) {
  Instants instants;
  tm fields;
  for (auto _ : state) {
    const time_t instant = instants.next();
    benchmark::DoNotOptimize(gmtime_r(&instant, &fields));
  }
}
BENCHMARK(setSecondsByGmtime);

void setRecord(benchmark::State& state) {
  Instants instants;
  constexpr std::size_t kRecords = 1024;
  std::vector<tagTIMESTAMP_STRUCT> records(kRecords);
  for (tagTIMESTAMP_STRUCT& record : records) record = CDateTime(instants.next()).timeStamp();
  CDateTime dateTime(kInstant);
  std::size_t next = 0;
  for (auto _ : state) benchmark::DoNotOptimize(dateTime.set(records[++next % kRecords], true));
}
BENCHMARK(setRecord);

template <typename Text>
void formatXMLDateTime(benchmark::State& state) {
  const CDateTime dateTime(kInstant);
  Text text;
  for (auto _ : state) benchmark::DoNotOptimize(dateTime.formatXMLDateTime(text, false).data());
}
BENCHMARK(formatXMLDateTime<string>);
BENCHMARK(formatXMLDateTime<wstring>);

void formatXMLDateTimeByStrftime(benchmark::State& state) {
  const time_t instant = kInstant;
  tm fields;
  gmtime_r(&instant, &fields);
  char text[64];
  for (auto _ : state) benchmark::DoNotOptimize(strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &fields));
}
BENCHMARK(formatXMLDateTimeByStrftime);

template <typename Text>
void parseXMLDateTime(benchmark::State& state) {
  Text text;
  CDateTime dateTime(kInstant);
  dateTime.formatXMLDateTime(text, false);
  for (auto _ : state) {
    dateTime.setXML(text, true);
    benchmark::DoNotOptimize(dateTime);
  }
}
BENCHMARK(parseXMLDateTime<string>);
BENCHMARK(parseXMLDateTime<wstring>);

// The least that parsing can cost: digits and delimiters at fixed places, the ranges of the fields, and the arithmetic
// of the calendar. Returns -1 for any other text.
std::int64_t parseByHand(std::string_view text) {
  if (text.size() != 20) return -1;
  bool valid = text[4] == '-' && text[7] == '-' && text[10] == 'T' && text[13] == ':' && text[16] == ':';
  const auto number = [&](std::size_t from, std::size_t digits) {
    std::uint32_t value = 0;
    for (std::size_t i = from; i != from + digits; ++i) {
      valid = valid && isAsciiDigit(text[i]);
      value = value * 10 + static_cast<std::uint32_t>(text[i] - '0');
    }
    return value;
  };
  const std::uint32_t year = number(0, 4), month = number(5, 2), day = number(8, 2);
  const std::uint32_t hour = number(11, 2), minute = number(14, 2), second = number(17, 2);
  const Date_t date{static_cast<std::int16_t>(year), static_cast<std::uint16_t>(month),
                    static_cast<std::uint16_t>(day)};
  if (!valid || text[19] != 'Z' || !isValidDate(date) || hour > 23 || minute > 59 || second > 59) return -1;
  return daysFromCivil(year, month, day) * kSecondsPerDay + hour * 3600 + minute * 60 + second;
}

void parseXMLDateTimeByHand(benchmark::State& state) {
  const string text = "2010-08-05T15:18:12Z";
  for (auto _ : state) {
    std::string_view seen = text;
    benchmark::DoNotOptimize(seen);
    benchmark::DoNotOptimize(parseByHand(seen));
  }
}
BENCHMARK(parseXMLDateTimeByHand);

void parseXMLDateTimeByStrptime(benchmark::State& state) {
  tm fields{};
  for (auto _ : state) {
    strptime("2010-08-05T15:18:12Z", "%Y-%m-%dT%H:%M:%SZ", &fields);
    benchmark::DoNotOptimize(timegm(&fields));
  }
}
BENCHMARK(parseXMLDateTimeByStrptime);

void formatLocal(benchmark::State& state) {
  const CDateTime dateTime(kInstant);
  string text;
  for (auto _ : state) benchmark::DoNotOptimize(dateTime.formatLocalYYYYMMDDHHMMSS(text).data());
}
BENCHMARK(formatLocal);

void formatLocalByStrftime(benchmark::State& state) {
  const time_t instant = kInstant;
  tm fields;
  char text[64];
  for (auto _ : state) {
    localtime_r(&instant, &fields);
    benchmark::DoNotOptimize(strftime(text, sizeof text, "%Y/%m/%d %H:%M:%S", &fields));
  }
}
BENCHMARK(formatLocalByStrftime);

}  // namespace
}  // namespace kdx
