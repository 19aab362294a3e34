// Internal: std::from_chars for floating-point numbers, also with a C++ library that has it for integers only (libc++
// before version 20).

#ifndef KDXCOMMON_BASE_FLOATING_POINT_TEXT_H_
#define KDXCOMMON_BASE_FLOATING_POINT_TEXT_H_

#include <charconv>
#include <string>
#include <system_error>

#include "kdxcommon/base/string_types.h"

#if !defined(__cpp_lib_to_chars)
#include <locale.h>

#include <cctype>
#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <utility>
#endif

namespace kdx {

/// Reads the number at the start of `text`, which has no sign, as `std::from_chars` does, whatever the locale.
inline std::from_chars_result floatingPointFromChars(string_view text, double& value, std::chars_format format) {
  const char* const first = text.data();
#if defined(__cpp_lib_to_chars)
  return std::from_chars(first, first + text.size(), value, format);
#else
  // strtod also accepts white space, a sign and a hexadecimal prefix.
  const std::size_t prefix = format == std::chars_format::hex ? 2 : 0;
  if (text.empty() || !(std::isxdigit(static_cast<unsigned char>(text[0])) ||
                        string_view(".iInN").find(text[0]) != string_view::npos)) {
    return {first, std::errc::invalid_argument};
  }
  static const locale_t plain = newlocale(LC_ALL_MASK, "C", nullptr);
  const string number = string("0x", prefix).append(text);
  const int error = std::exchange(errno, 0);
  char* end = nullptr;
  const double result = strtod_l(number.c_str(), &end, plain);
  const bool outOfRange = std::exchange(errno, error) == ERANGE && (result == 0 || std::isinf(result));
  const auto length = static_cast<std::size_t>(end - number.c_str());
  if (length <= prefix) return {first, std::errc::invalid_argument};
  if (!outOfRange) value = result;
  return {first + (length - prefix), outOfRange ? std::errc::result_out_of_range : std::errc{}};
#endif
}

}  // namespace kdx

#endif  // KDXCOMMON_BASE_FLOATING_POINT_TEXT_H_
