// Where log lines go. The log writer hands each message on as a record; a sink does with it what its host wants. The
// two sinks here write one text line a record, to the standard error stream or behind the end of a file.
//
//   auto sink = std::make_shared<kdx::FileLineSink>("agent.log");
//   if (!sink->opened()) ...                                   // nothing is lost yet: the old sink still stands
//   kdx::EmbeddedSite::current().setLineSink(sink);

#ifndef KDXCOMMON_SINKS_LINE_SINK_H_
#define KDXCOMMON_SINKS_LINE_SINK_H_

#include <cstdint>
#include <optional>

#include "kdxcommon/base/export.h"
#include "kdxcommon/base/string_types.h"

namespace kdx {

/// One message of the log, as its writer gave it: the views hold for the length of the call that passes the record.
struct LogRecord {
  std::optional<int> level;  ///< none for a text that came finished
  string_view function;      ///< empty for a text that came finished
  std::int64_t jobId = 0;    ///< UNDEFINED_JOB_ID when no job is known
  string_view errorText;     ///< empty when the message reports no error number
  string_view text;          ///< as formatted: may hold any byte
};

/// Takes records. Every thread that logs calls `write`, several at once: a sink that has state guards it. What it
/// throws is dropped, for logging must not bring its caller down.
class KDX_EXPORT LineSink {
 public:
  virtual ~LineSink();
  virtual void write(const LogRecord& record) = 0;
};

/// Writes each record as one line to a descriptor, with one call of the system, so that lines of several threads and
/// processes don't mix: in a file none do, and in a pipe none of up to 4096 bytes. What the system leaves of a line is
/// written by further calls. No lock is held. A line that can't be written is lost.
class KDX_EXPORT DescriptorLineSink : public LineSink {
 public:
  /// The caller owns the descriptor. -1 writes nothing.
  explicit DescriptorLineSink(int descriptor) : descriptor_(descriptor) {}
  void write(const LogRecord& record) override;

 protected:
  int descriptor_;
};

/// Writes behind the end of a file, which it creates if it is missing (for its owner, and its group to read).
class KDX_EXPORT FileLineSink : public DescriptorLineSink {
 public:
  explicit FileLineSink(const char* path);
  ~FileLineSink() override;
  FileLineSink(const FileLineSink&) = delete;
  FileLineSink& operator=(const FileLineSink&) = delete;

  /// Whether the file could be opened. A sink whose file could not drops what it is given.
  bool opened() const { return descriptor_ >= 0; }
};

}  // namespace kdx

#endif  // KDXCOMMON_SINKS_LINE_SINK_H_
