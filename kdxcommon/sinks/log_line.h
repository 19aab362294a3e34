// Internal: a record of the log as one line of text.
//
//   2026-11-22T21:30:05.123Z 4711 3456 2 CDumpFile::dumpXMLBlob: Bytes written :: [5]
//   2026-11-22T21:30:05.124Z 4711 - -1 Agent::run: can't open [jobs.xml] (No such file or directory)
//
// The fields are the time in UTC, the thread, the job (`-` for none), the level (`-` for a text that came finished),
// the function, the text, and the error's text in parentheses. Whatever a field holds, the line stays one line and
// can't be taken for two: control characters are escaped (`\n`, `\t`, `\x1B`, `\u0085`), and so are Unicode's
// separators of lines and paragraphs and what turns the direction of a text (`\u2028`, `\u202E`). All else stands as it
// is, bytes that are not UTF-8 too.

#ifndef KDXCOMMON_SINKS_LOG_LINE_H_
#define KDXCOMMON_SINKS_LOG_LINE_H_

#include <cstdint>

#include "kdxcommon/base/string_types.h"
#include "kdxcommon/sinks/line_sink.h"

namespace kdx {

/// Where and when a record was made.
struct LogOrigin {
  std::uint64_t fileTime = 0;  ///< units of 100 ns since 1601-01-01 00:00:00 UTC
  std::uint32_t threadId = 0;
};

/// Adds the record's line, with its line break, to `line`. Throws what an allocation throws.
void appendLogLine(const LogRecord& record, const LogOrigin& origin, string& line);

}  // namespace kdx

#endif  // KDXCOMMON_SINKS_LOG_LINE_H_
