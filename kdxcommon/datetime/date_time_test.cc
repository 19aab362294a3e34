#include "kdxcommon/datetime/date_time.h"

#include <gtest/gtest.h>

#include "kdxcommon/datetime/calendar_date.h"
#include "kdxcommon/datetime/time_of_day.h"
#include "kdxcommon/testing/fake_zone.h"

namespace kdx {
namespace {

using testing::FakeZone;
using Record = tagTIMESTAMP_STRUCT;

constexpr Record kRecord{2010, 8, 5, 15, 18, 12, 500};
constexpr Record kStored{2010, 8, 5, 15, 18, 12, 0};
constexpr std::uint32_t kSeconds = 1281021492;
constexpr Record kFirstSecond{1970, 1, 1, 0, 0, 0, 0};

TEST(DateTime, TakesSeconds) {
  FakeZone zone(300);
  zone.setNow(0x7'0000'0000 + kSeconds);
  EXPECT_EQ(CDateTime().timeStamp(), kStored);
  EXPECT_EQ(CDateTime(1).timeStamp(), (Record{1970, 1, 1, 0, 0, 1, 0}));
  EXPECT_EQ(CDateTime(0xFFFFFFFE).timeStamp(), (Record{2106, 2, 7, 6, 28, 14, 0}));
  for (const std::uint32_t none : {0U, 0xFFFFFFFFU}) {
    CDateTime dateTime;
    EXPECT_EQ(dateTime.set(none), 0U);
    EXPECT_EQ(dateTime.timeStamp(), Record{});
  }
}

// As on Windows where TZ names another zone than the system's.
struct RuntimeInAnotherZone : FakeZone {
  using FakeZone::FakeZone;
  std::int64_t _mktime64(const os::BrokenDownTime& local) override { return FakeZone::_mktime64(local) + 21600; }
};

TEST(DateTime, TakesRecordsAsUtcOrLocalStandardTime) {
  for (const std::uint32_t inForce : {os::kTimeZoneIdStandard, os::kTimeZoneIdDaylight}) {
    const RuntimeInAnotherZone zone(-120, inForce);
    CDateTime dateTime(kRecord, true);
    EXPECT_EQ(dateTime.timeStamp(), kStored);
    EXPECT_EQ(&dateTime.set(kRecord, false), &dateTime.timeStamp());
    EXPECT_EQ(dateTime.unixTime(), kSeconds - 7200 + 21600);
    dateTime.setTimeStampComparsion(true);
    EXPECT_EQ((dateTime = 5U).unixTime(), 5U);
    EXPECT_EQ((dateTime = kRecord).unixTime(), kSeconds);
    EXPECT_TRUE(dateTime.timeStampComparsion());
  }
  const FakeZone unreadable(0, os::kTimeZoneIdInvalid);
  EXPECT_TRUE(CDateTime(kRecord, true).empty());
}

TEST(DateTime, TakesUtcRecordsFromThe32BitsAndCutsOrRefusesOthers) {
  const struct {
    std::int32_t bias;  // minutes
    Record record;
    std::uint32_t unixTime;
  } kRows[] = {{-840, {1970, 1, 1, 0, 0, 1, 0}, 1},
               {720, {2106, 2, 7, 6, 28, 14, 0}, 0xFFFFFFFE},
               {-840, {2100, 2, 29, 0, 0, 0, 0}, 4107542400},  // a leap day here, else the first of March
               {-840, {2106, 2, 7, 6, 28, 20, 0}, 4},
               {300, {1969, 12, 31, 19, 0, 0, 0}, 0U - 5 * 3600},
               {300, {1969, 12, 31, 18, 59, 59, 0}, 0U - 1 - 5 * 3600},
               {-60, {1969, 12, 31, 23, 59, 59, 0}, 3599},
               {-60, {3001, 1, 1, 0, 59, 59, 0}, static_cast<std::uint32_t>(os::kLastConvertibleSecond) + 3600},
               {-60, {3001, 1, 1, 1, 0, 0, 0}, 3599}};
  for (const auto& [bias, record, unixTime] : kRows) {
    const FakeZone zone(bias);
    EXPECT_EQ(CDateTime(record, true).unixTime(), unixTime) << bias << ' ' << record.year;
  }
}

TEST(DateTime, ClearsForARecordThatIsNoTime) {
  const Record kRefused[] = {
      {}, {2010, 8, 5, 15, 18, 12, 0U - 2068}, {2010, 2, 29, 0, 0, 0, 0}, {2010, 8, 5, 24, 0, 0, 0}};
  for (const Record& record : kRefused) {
    CDateTime dateTime(kSeconds);
    dateTime.setTimeStampComparsion(true);
    EXPECT_EQ(&dateTime.set(record, true), &DTGetConst_EmptyTimeStamp());
    EXPECT_TRUE(dateTime.empty() && dateTime == 0U && dateTime.timeStampComparsion());
    EXPECT_TRUE(CDateTime(0) == record && CDateTime(1) != record && CDateTime(1).compare(record) == DT_Less);
  }
}

// `rising` rises by what its objects hold, and `compare` gives `order` for an earlier object against a later argument.
template <typename Object, std::size_t kCount>
void expectOrder(const Object (&rising)[kCount], DT_CompareReturn order) {
  for (std::size_t i = 0; i < kCount * kCount; ++i) {
    const Object& a = rising[i / kCount];
    const Object& b = rising[i % kCount];
    const int sign = (i / kCount > i % kCount) - (i / kCount < i % kCount);
    EXPECT_EQ(a.compare(b), -sign * order);
    EXPECT_TRUE((a < b) == (sign < 0) && (a <= b) == (sign <= 0) && (a == b) == (sign == 0));
    EXPECT_TRUE((a > b) == (sign > 0) && (a >= b) == (sign >= 0) && (a != b) == (sign != 0));
  }
}

TEST(DateTime, OrdersInstantsTimesAndDates) {
  const FakeZone zone(0);
  const Record kLastOf2010{2010, 12, 31, 0, 0, 0, 0}, kFirstOf2011{2011, 1, 1, 0, 0, 0, 0};
  CDateTime instants[] = {{1}, {kStored, true}, {kLastOf2010, true}, {kFirstOf2011, true}};
  expectOrder(instants, DT_Greater);
  for (CDateTime& instant : instants) instant.setTimeStampComparsion(true);
  expectOrder(instants, DT_Greater);
  EXPECT_EQ(instants[2].compare(kFirstOf2011), DT_Greater);
  EXPECT_TRUE(instants[2] < kFirstOf2011 && instants[2] == kLastOf2010 && instants[1] < kRecord);
  instants[1].setTimeStampComparsion(false);
  EXPECT_TRUE(instants[1] == kRecord && instants[1] < kSeconds + 1 && instants[1].compare(kSeconds - 1) == DT_Less);

  const CTime kTimes[] = {{{}, true}, {{0, 0, 0, 7}, true}, {{0, 0, 59, 0}, true}, {{0, 1, 0, 0}, true}};
  expectOrder(kTimes, DT_Less);
  const CDate kDates[] = {{{-1, 12, 31}}, {Date_t{}},       {{2010, 1, 31}},
                          {{2010, 2, 1}}, {{2010, 12, 31}}, {{2011, 1, 1}}};
  expectOrder(kDates, DT_Less);
  EXPECT_TRUE(kTimes[1] < kTimes[2].time() && kDates[2] >= kDates[2].date());
}

TEST(DateTime, TellsTheTwoStatesWithoutUnixTimeApartByFieldsOnly) {
  const FakeZone zone(-330);
  CDateTime none(0), first(kFirstSecond, true);
  EXPECT_TRUE(none.empty() && first.empty() && none == first);
  first.setTimeStampComparsion(true);
  EXPECT_TRUE(!first.empty() && first != none && none == first && first.compare(none) == DT_Equal);
  EXPECT_TRUE(none.bySeconds(0) && none.timeStamp() == kFirstSecond && none.unixTime() == 0);
  none = first;
  none.clear();
  EXPECT_TRUE(none.empty() && none.timeStampComparsion());
}

TEST(DateTime, MovesByExactSeconds) {
  const struct {
    std::uint32_t start;
    std::int64_t step;
    bool (*move)(CDateTime&);
  } kRows[] = {{1000, -999, [](CDateTime& t) { return t.bySeconds(-999); }},
               {1000, 0, [](CDateTime& t) { return !t.bySeconds(-1000) && !t.bySeconds(-1001); }},
               {0, 5, [](CDateTime& t) { return !t.bySeconds(-5) && t.bySeconds(5); }},
               {0x80000000, 0, [](CDateTime& t) { return !t.bySeconds(INT32_MIN); }},
               {4000000000, 2000000000, [](CDateTime& t) { return t.bySeconds(2000000000); }},
               {kSeconds, 7140, [](CDateTime& t) { return t.byMinutes(-1) && t.byHours(2); }},
               {kSeconds, -86400, [](CDateTime& t) { return t.byDays(-1); }},
               {kSeconds, -2628028, [](CDateTime& t) { return t.byMonths(-1); }},
               {kSeconds, 31536345, [](CDateTime& t) { return t.byMonths(12); }}};
  for (const auto& [start, step, move] : kRows) {
    CDateTime dateTime(start);
    EXPECT_TRUE(move(dateTime)) << start << " " << step;
    EXPECT_EQ(dateTime.unixTime(), static_cast<std::uint32_t>(start + step));
    EXPECT_EQ(dateTime.timeStamp(), CDateTime(dateTime.unixTime()).timeStamp());
  }
}

}  // namespace
}  // namespace kdx
