// Types shared by the classes for an instant, a time of day and a calendar date: the ODBC timestamp record and the
// result of a three-way comparison.
//
//   kdx::tagTIMESTAMP_STRUCT record{.year = 2010, .month = 8, .day = 5, .hour = 15, .minute = 18, .second = 12};
//   kdx::CDate date;
//   date = record;                                       // 2010-08-05
//   bool isNothing = record == kdx::DTGetConst_EmptyTimeStamp();
//
// Thread safety: the record is a plain value; the constant may be read by any thread. Nothing here fails or throws.

#ifndef KDXCOMMON_DATETIME_TIMESTAMP_H_
#define KDXCOMMON_DATETIME_TIMESTAMP_H_

#include <compare>
#include <cstdint>

#include "kdxcommon/base/export.h"

namespace kdx {

/// The ODBC timestamp record, with ODBC's names and widths. A field may hold any value; each operation that takes a
/// record documents what it accepts. Records compare field by field in the order of declaration.
struct tagTIMESTAMP_STRUCT {
  std::int16_t year = 0;       ///< full calendar year: 2010, not 110
  std::uint16_t month = 0;     ///< 1 to 12
  std::uint16_t day = 0;       ///< 1 to 31
  std::uint16_t hour = 0;      ///< 0 to 23
  std::uint16_t minute = 0;    ///< 0 to 59
  std::uint16_t second = 0;    ///< 0 to 59
  std::uint32_t fraction = 0;  ///< any value, in no particular unit

  auto operator<=>(const tagTIMESTAMP_STRUCT&) const = default;
};

/// The result of a `compare`. `CDate` and `CTime` return DT_Less if the object is earlier than the argument,
/// `CDateTime` if the argument is earlier than the object.
enum DT_CompareReturn : std::int32_t { DT_Less = -1, DT_Equal = 0, DT_Greater = 1 };

/// Returns the record in which all fields are 0, which means no value. It is valid as long as the library is loaded.
KDX_EXPORT const tagTIMESTAMP_STRUCT& DTGetConst_EmptyTimeStamp();

}  // namespace kdx

#endif  // KDXCOMMON_DATETIME_TIMESTAMP_H_
