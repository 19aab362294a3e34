#include "kdxcommon/base/civil_date.h"

#include <gtest/gtest.h>

namespace kdx {
namespace {

std::uint32_t daysInMonth(std::int32_t year, std::uint32_t month) {
  static constexpr std::uint32_t kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  const bool leap = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
  return kDays[month - 1] + (month == 2 && leap);
}

TEST(CivilDate, AgreesWithCountingDayByDay) {
  CivilDate date{-800, 1, 1};
  auto days = static_cast<std::int32_t>(daysFromCivil(-800, 1, 1));
  std::int32_t number = 0;
  while (date.year < 3001) {
    ASSERT_EQ(civilFromDays(days), date) << days;
    ASSERT_EQ(daysFromCivil(date.year, date.month, date.day), days);
    ASSERT_EQ(dayOfYear(date), number);
    ++days;
    ++number;
    if (++date.day <= daysInMonth(date.year, date.month)) continue;
    date.day = 1;
    if (++date.month <= 12) continue;
    date = {date.year + 1, 1, 1};
    number = 0;
  }
  EXPECT_EQ(daysFromCivil(1970, 1, 1), 0);
  EXPECT_EQ(daysFromCivil(2010, 8, 5), 14826);
}

TEST(CivilDate, HoldsForAMillionYears) {
  for (const std::int32_t year : {-1'000'000, 1'000'000}) {
    const std::int64_t days = daysFromCivil(year, 2, 29);
    EXPECT_EQ(civilFromDays(static_cast<std::int32_t>(days)), (CivilDate{year, 2, 29}));
    EXPECT_EQ(daysFromCivil(year, 1, 60), days);
  }
}

}  // namespace
}  // namespace kdx
