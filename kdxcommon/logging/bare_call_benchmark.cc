// The function that logger_traits_benchmark.cc calls for comparison, in a file of its own so that no call is inlined.

#include <atomic>
#include <cstdarg>
#include <cstdio>

#include "kdxcommon/base/printf_format.h"

namespace kdx::benchmarks {
namespace {

std::atomic<int> debugLevel{0};

}  // namespace

void testLevel(int level, const char* format, ...) KDX_PRINTF(2, 3);

void testLevel(int level, const char* format, ...) {
  if (level > debugLevel.load(std::memory_order_relaxed)) return;
  std::va_list arguments;
  va_start(arguments, format);
  std::vprintf(format, arguments);
  va_end(arguments);
}

}  // namespace kdx::benchmarks
