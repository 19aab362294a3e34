// Internal to the library: calendar arithmetic. Converts days since 1970-01-01 to year, month and day, and back, in the
// proleptic Gregorian calendar.
//
//   static_assert(kdx::daysFromCivil(2010, 8, 5) == 14826);
//   const kdx::CivilDate date = kdx::civilFromDays(14826);   // 2010-08-05
//
// Both conversions count years from March, so that the leap day is the last of a year, and use the multiplications
// instead of divisions of Neri and Schneider, "Euclidean affine functions and their application to calendar algorithms"
// (2022). Thread safety: pure functions, thread-safe. They never fail within their ranges.

#ifndef KDXCOMMON_BASE_CIVIL_DATE_H_
#define KDXCOMMON_BASE_CIVIL_DATE_H_

#include <cstdint>

namespace kdx {

struct CivilDate {
  std::int32_t year = 0;
  std::uint32_t month = 0;      ///< 1 to 12
  std::uint32_t day = 0;        ///< 1 to 31
  std::uint32_t dayOfYear = 0;  ///< 0 to 365
  bool operator==(const CivilDate&) const = default;
};

inline constexpr std::int64_t kSecondsPerDay = 86400;

/// Returns the days from 1970-01-01 to a date. `year` may be up to 3 billion years away in either direction; `month` is
/// 1 to 12; a `day` outside its month counts on from there.
constexpr std::int64_t daysFromCivil(std::int64_t year, std::uint32_t month, std::int64_t day) {
  constexpr std::int64_t kEras = 1 << 23;  // of 400 years, added to keep the years positive
  const bool nextYear = month <= 2;        // January and February
  const auto marchYear = static_cast<std::uint64_t>(year + 400 * kEras - nextYear);
  const std::uint64_t century = marchYear / 100;
  const std::uint32_t dayOfMarchYear = (979 * (month + 12 * nextYear) - 2919) / 32;
  const std::uint64_t days = 1461 * marchYear / 4 - century + century / 4 + dayOfMarchYear;
  return static_cast<std::int64_t>(days) + day - 1 - (719468 + 146097 * kEras);
}

/// Returns the date `days` days after 1970-01-01, which may be up to a million years away in either direction.
constexpr CivilDate civilFromDays(std::int32_t days) {
  constexpr std::uint32_t kEras = 3670;  // added to keep every number below positive
  const std::uint32_t shifted = static_cast<std::uint32_t>(days) + 719468 + 146097 * kEras;

  const std::uint32_t quarterDays = 4 * shifted + 3;
  const std::uint32_t century = quarterDays / 146097;
  const std::uint32_t quarterDaysOfCentury = quarterDays % 146097 | 3;

  const std::uint64_t product = std::uint64_t{2939745} * quarterDaysOfCentury;
  const std::uint32_t yearOfCentury = static_cast<std::uint32_t>(product >> 32);
  const std::uint32_t dayOfMarchYear = static_cast<std::uint32_t>(product) / 2939745 / 4;

  const std::uint32_t monthAndDay = 2141 * dayOfMarchYear + 197913;
  const std::uint32_t month = monthAndDay >> 16;
  const std::uint32_t day = (monthAndDay & 0xFFFF) / 2141;

  const bool nextYear = dayOfMarchYear >= 306;  // January and February
  const std::uint32_t year = 100 * century + yearOfCentury - 400 * kEras + nextYear;
  // From March on, century and year of the century are those of the calendar's year.
  const bool leapYear = yearOfCentury % 4 == 0 && (yearOfCentury != 0 || century % 4 == 0);
  const std::uint32_t dayOfYear = nextYear ? dayOfMarchYear - 306 : dayOfMarchYear + 59 + leapYear;
  return {static_cast<std::int32_t>(year), nextYear ? month - 12 : month, day + 1, dayOfYear};
}

}  // namespace kdx

#endif  // KDXCOMMON_BASE_CIVIL_DATE_H_
