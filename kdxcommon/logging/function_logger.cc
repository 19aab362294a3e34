#include "kdxcommon/logging/function_logger.h"

#include <cstdarg>
#include <optional>

namespace kdx {

void FunctionLogger::operator()(int level, const char* format, ...) const {
  if (!KDXLoggerTraits::isDebugLevel(level)) return;
  std::va_list arguments;
  va_start(arguments, format);
  KDXLoggerTraits().write(level, function_, std::nullopt, format, arguments);
  va_end(arguments);
}

}  // namespace kdx
