#include "kdxcommon/base/civil_date.h"

#include <gtest/gtest.h>

#include <chrono>

namespace kdx {
namespace {

TEST(CivilDate, AgreesWithTheStandardCalendar) {
  for (std::int32_t days = -11'960'000; days <= 11'240'000; days += 1 + (days < -1'000'000 || days > 1'000'000) * 13) {
    const std::chrono::year_month_day expected{std::chrono::sys_days{std::chrono::days{days}}};
    const CivilDate date = civilFromDays(days);
    ASSERT_EQ(date, (CivilDate{int{expected.year()}, unsigned{expected.month()}, unsigned{expected.day()}})) << days;
    ASSERT_EQ(daysFromCivil(date.year, date.month, date.day), days);
    ASSERT_EQ(dayOfYear(date), days - std::chrono::sys_days{expected.year() / 1 / 1}.time_since_epoch().count());
  }
  for (const std::int32_t year : {-1'000'000, 1'000'000}) {
    const std::int64_t days = daysFromCivil(year, 2, 29);
    EXPECT_EQ(civilFromDays(static_cast<std::int32_t>(days)), (CivilDate{year, 2, 29}));
  }
}

}  // namespace
}  // namespace kdx
