#include "kdxcommon/datetime/calendar_date.h"

#include <gtest/gtest.h>

#include "kdxcommon/testing/fake_zone.h"

namespace kdx {
namespace {

TEST(CalendarDate, TakesWhatIsADateAndClearsForTheRest) {
  constexpr std::uint32_t kMonthsOf31Days = 0b1'0101'1010'1010;  // bit 1 is January
  for (const std::uint16_t year : std::initializer_list<std::uint16_t>{0, 1, 1900, 2010, 2012, 2100, 32767, 32768}) {
    for (std::uint16_t month = 0; month <= 14; ++month) {
      for (std::uint16_t day = 0; day <= 33; ++day) {
        int length = (kMonthsOf31Days >> month & 1) ? 31 : 30;
        if (month == 2) length = year % 4 == 0 ? 29 : 28;
        const bool valid = year >= 1 && year <= 32767 && month >= 1 && month <= 12 && day >= 1 && day <= length;
        CDate date({1999, 1, 1});
        ASSERT_EQ(date.set(year, month, day), valid) << year << '-' << month << '-' << day;
        ASSERT_EQ(date, valid ? (Date_t{static_cast<std::int16_t>(year), month, day}) : DTGetConst_EmptyDate());
      }
    }
  }
}

TEST(CalendarDate, TakesTheUtcDateOfTheClockAndOfRecords) {
  testing::FakeZone zone(-840);  // it is tomorrow already, here
  zone.setNow(0x1'0000'0000 + 1281021492);
  CDate date;
  EXPECT_EQ(date, (Date_t{2010, 8, 5}));
  date = tagTIMESTAMP_STRUCT{2012, 2, 29, 99, 99, 99, 99};
  EXPECT_EQ(date, (Date_t{2012, 2, 29}));
  date = Date_t{2010, 2, 29};
  EXPECT_TRUE(date.empty());
}

}  // namespace
}  // namespace kdx
