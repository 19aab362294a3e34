// Internal: the logger of one function of the library. It takes the function's name as a literal, so that a message
// that the debug level drops builds no string.
//
//   const FunctionLogger log("platformClustered()");
//   log(-1, "the group [%s] is unknown", group.c_str());

#ifndef KDXCOMMON_LOGGING_FUNCTION_LOGGER_H_
#define KDXCOMMON_LOGGING_FUNCTION_LOGGER_H_

#include "kdxcommon/base/printf_format.h"
#include "kdxcommon/logging/logger_traits.h"

namespace kdx {

class FunctionLogger {
 public:
  /// `function` must be a literal or outlive this object.
  explicit FunctionLogger(const char* function) : function_(function) {}

  /// The same as `KDXLoggerTraits::message` without an error number. Thread-safe. Nothing throws.
  void operator()(int level, const char* format, ...) const KDX_PRINTF(3, 4);

 private:
  const char* function_;
};

}  // namespace kdx

#endif  // KDXCOMMON_LOGGING_FUNCTION_LOGGER_H_
