// KDX_PRINTF(f, a) lets the compiler check printf arguments: parameter f is the format, a the first argument (0: a
// va_list). The first parameter has the number 1, and in a member function `this` is number 1.

#ifndef KDXCOMMON_BASE_PRINTF_FORMAT_H_
#define KDXCOMMON_BASE_PRINTF_FORMAT_H_

#if defined(__MINGW32__)
#include <cstdio>
#define KDX_PRINTF(format_index, first_argument) \
  __attribute__((format(__MINGW_PRINTF_FORMAT, format_index, first_argument)))
#elif defined(__GNUC__)
#define KDX_PRINTF(format_index, first_argument) __attribute__((format(printf, format_index, first_argument)))
#else
#define KDX_PRINTF(format_index, first_argument)
#endif

#endif  // KDXCOMMON_BASE_PRINTF_FORMAT_H_
