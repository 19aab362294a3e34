// Where log lines go. The log writer passes each message to a sink as a record, and the sink does with it what its host
// wants. The two sinks here write one line of text a record, to a descriptor such as the standard error stream or to
// the end of a file.
//
//   auto sink = std::make_shared<kdx::FileLineSink>("agent.log");
//   if (!sink->opened()) ...                                   // nothing is lost yet: the old sink still stands
//   kdx::EmbeddedSite::current().setLineSink(sink);
//
// The format of a line, for those who read the log:
//
//   2026-11-22T21:30:05.123Z 4711 3456 2 CDumpFile::dumpXMLBlob: Bytes written :: [5]
//   2026-11-22T21:30:05.124Z 4711 - -1 Agent::run: can't open [jobs.xml] (No such file or directory)
//   2026-11-22T21:30:05.125Z 4711 3456 - a finished text\nof two lines
//
// The fields are the time in UTC, the thread's id, the job's id (`-` for none), the debug level (`-` for a text that
// came finished), the function with a colon (missing for a text that came finished), the text, and the text of an error
// number in parentheses (missing where there is none). A space separates them; the first four hold none. A line feed
// ends the line, on Windows too.
//
// Whatever a message holds, it is one line of valid UTF-8 that can't be taken for two. Escaped are:
//
//   \0 \t \n \r    those four
//   \x1B \x7F      the other ASCII controls, and each byte that isn't UTF-8 (0x80 and above: overlong forms,
//   surrogates,
//                  sequences cut short)
//   \u0085         by its code point: U+0080 to U+009F, which some terminals take for controls; U+2028 and U+2029,
//   which
//                  separate lines and paragraphs; U+061C, U+200E, U+200F, U+202A to U+202E and U+2066 to U+2069, which
//                  turn the direction of a text; U+FFF9 to U+FFFB, which annotate
//   \U000E0041     the tags, U+E0000 to U+E007F, which don't show
//
// All else stands as it is. So does a backslash, for Windows' paths are full of them: a text that itself holds `\n` as
// two characters can't be told from one with a line feed.

#ifndef KDXCOMMON_SINKS_LINE_SINK_H_
#define KDXCOMMON_SINKS_LINE_SINK_H_

#include <atomic>
#include <cstdint>
#include <optional>

#include "kdxcommon/base/export.h"
#include "kdxcommon/base/string_types.h"

namespace kdx {

/// One message of the log, as its writer passed it: the views hold for the length of the call that passes the record.
struct LogRecord {
  std::optional<int> level;  ///< none for a text that came finished
  string_view function;      ///< empty for a text that came finished
  std::int64_t jobId = 0;    ///< UNDEFINED_JOB_ID when no job is known
  string_view errorText;     ///< empty when the message reports no error number
  string_view text;          ///< as formatted: may hold any byte
};

/// Takes records. Every thread that logs calls `write`, several at once: a sink that has state guards it. What it
/// throws is dropped, and what it does to `errno` and the last error is undone, for logging must not disturb its
/// caller.
class KDX_EXPORT LineSink {
 public:
  virtual ~LineSink();
  virtual void write(const LogRecord& record) = 0;

  /// Whether `write` would drop every record. The log writer asks before it formats a message, and doesn't where this
  /// returns true. False unless a sink overrides it. Called from several threads at once; must not throw.
  virtual bool drops() const { return false; }
};

/// Writes each record as one line to a descriptor, with one call of the system, so that lines of several threads don't
/// mix: in a file opened for appending none do, and in a pipe none of up to 4096 bytes. After a fork the lines of
/// parent and child don't mix either.
///
/// Thread safety: safe for concurrent use. No lock is held, but for a file on Windows that several processes share.
///
/// A line that can't be written is lost, without a word:
/// - On a full disk, and where a pipe or socket is full that doesn't wait (O_NONBLOCK), a line may be cut. The next one
///   that can be written begins with a line break of its own, however many were lost in between. What the system leaves
///   of a line is written by further calls.
/// - Where a pipe or socket has no reader any more, lines are lost until it has one again, and the process gets no
///   SIGPIPE. How the host handles that signal doesn't change.
/// - A full pipe or socket that waits holds its writer up until somebody reads. A call that a signal interrupts is made
///   again.
class KDX_EXPORT DescriptorLineSink : public LineSink {
 public:
  /// The caller owns the descriptor, and may put another file behind it (`dup2`) at any time. -1 drops every record.
  explicit DescriptorLineSink(int descriptor) : descriptor_(descriptor) {}
  void write(const LogRecord& record) override;
  bool drops() const override { return descriptor_ < 0; }

 protected:
  /// What a line needs around its writing: nothing, a guard against SIGPIPE, a lock on the file.
  enum class Care : char { kNone, kSignal, kLock };

  int descriptor_;
  Care care_ = Care::kSignal;

 private:
  void writeLine(string_view line);

  std::atomic<std::uint32_t> cuts_{0};  // odd from a cut line until a line break was written behind it
};

/// Whether other processes write to the same log file.
enum class LogFileUse : bool { kOneProcess, kSeveralProcesses };

/// Writes to the end of a file, which it creates if it is missing (for its owner, and its group to read). Everything
/// that holds for DescriptorLineSink holds here, too.
///
/// Several processes may write to one file, each through a sink of its own or one inherited by a fork. None of their
/// lines is lost or mixed with another:
/// - on POSIX always, for the system appends each line as a whole; not on NFS, which can't;
/// - on Windows if all of them pass LogFileUse::kSeveralProcesses. Each line is then written under a lock on the file,
///   one at a time in the whole process; who reads the file or has no sink of this kind isn't held up. Without it the
///   system appends as well, but not every system that offers Windows' interfaces does that as a whole.
///
/// A line that a full disk cut in one process may be followed by another process's on the same line.
class KDX_EXPORT FileLineSink : public DescriptorLineSink {
 public:
  /// Opens `path`, in UTF-8. A FIFO must have a reader: without one it fails to open, and doesn't wait. A sink whose
  /// file can't be opened drops every record; the thread's last error then says why.
  explicit FileLineSink(const char* path, LogFileUse use = LogFileUse::kOneProcess);
  ~FileLineSink() override;
  FileLineSink(const FileLineSink&) = delete;
  FileLineSink& operator=(const FileLineSink&) = delete;

  /// Whether the file could be opened.
  bool opened() const { return descriptor_ >= 0; }
};

}  // namespace kdx

#endif  // KDXCOMMON_SINKS_LINE_SINK_H_
