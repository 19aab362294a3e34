// Internal: a record of the log as one line of text, in the format that line_sink.h describes.

#ifndef KDXCOMMON_SINKS_LOG_LINE_H_
#define KDXCOMMON_SINKS_LOG_LINE_H_

#include <cstdint>
#include <memory_resource>
#include <string>

#include "kdxcommon/sinks/line_sink.h"

namespace kdx {

/// Where and when a record was made.
struct LogOrigin {
  std::uint64_t fileTime = 0;  ///< units of 100 ns since 1601-01-01 00:00:00 UTC
  std::uint32_t threadId = 0;
};

/// Appends the record's line, with its line break, to `line`. Throws only std::bad_alloc.
void appendLogLine(const LogRecord& record, const LogOrigin& origin, std::pmr::string& line);

}  // namespace kdx

#endif  // KDXCOMMON_SINKS_LOG_LINE_H_
