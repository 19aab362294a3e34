// Internal: formats a record of the log as one line, in the formats that line_sink.h describes.

#ifndef KDXCOMMON_SINKS_LOG_LINE_H_
#define KDXCOMMON_SINKS_LOG_LINE_H_

#include <cstdint>

#include "kdxcommon/base/scratch_text.h"
#include "kdxcommon/sinks/line_sink.h"

namespace kdx {

/// The time and the thread of a record.
struct LogOrigin {
  std::uint64_t fileTime = 0;  ///< units of 100 ns since 1601-01-01 00:00:00 UTC
  std::uint32_t threadId = 0;
};

/// Append the record's line, with its line break, to `line`: as text, or as a JSON object. Throw only std::bad_alloc.
/// Thread-safe for different lines.
void appendLogLine(const LogRecord& record, const LogOrigin& origin, ScratchText& line);
void appendJsonLine(const LogRecord& record, const LogOrigin& origin, ScratchText& line);

/// Appends the last part of a line of text: function, text and error, without a line break.
void appendLogMessage(const LogRecord& record, ScratchText& line);

}  // namespace kdx

#endif  // KDXCOMMON_SINKS_LOG_LINE_H_
