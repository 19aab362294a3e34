// What the classes for an instant, a time of day and a calendar date share: the ODBC timestamp record and the result
// of a three-way comparison.
//
//   kdx::tagTIMESTAMP_STRUCT record{.year = 2010, .month = 8, .day = 5, .hour = 15, .minute = 18, .second = 12};
//   kdx::CDate date;
//   date = record;                                       // 2010-08-05
//   bool isNothing = record == kdx::DTGetConst_EmptyTimeStamp();
//
// Thread rule: plain values; the constant may be read by any thread. Nothing here fails or throws.

#ifndef KDXCOMMON_DATETIME_TIMESTAMP_H_
#define KDXCOMMON_DATETIME_TIMESTAMP_H_

#include <compare>
#include <cstdint>

#include "kdxcommon/base/export.h"

namespace kdx {

/// The ODBC timestamp record, with ODBC's names and widths. Any value may stand in a field; who takes the record says
/// what it accepts. Records compare field by field in the order declared.
struct tagTIMESTAMP_STRUCT {
  std::int16_t year = 0;       ///< full calendar year: 2010, not 110
  std::uint16_t month = 0;     ///< 1 to 12
  std::uint16_t day = 0;       ///< 1 to 31
  std::uint16_t hour = 0;      ///< 0 to 23
  std::uint16_t minute = 0;    ///< 0 to 59
  std::uint16_t second = 0;    ///< 0 to 59
  std::uint32_t fraction = 0;  ///< carried along, without a unit of its own

  auto operator<=>(const tagTIMESTAMP_STRUCT&) const = default;
};

/// Which of the two compared is the earlier one is for each `compare` to say: `CDate` and `CTime` give DT_Less when the
/// object is earlier than the argument, `CDateTime` when the argument is earlier than the object.
enum DT_CompareReturn : std::int32_t { DT_Less = -1, DT_Equal = 0, DT_Greater = 1 };

/// The record with all fields 0, which stands for no value. It lives as long as the library.
KDX_EXPORT const tagTIMESTAMP_STRUCT& DTGetConst_EmptyTimeStamp();

}  // namespace kdx

#endif  // KDXCOMMON_DATETIME_TIMESTAMP_H_
