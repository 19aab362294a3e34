// The destinations of log lines. The log writer passes each message as a record to a sink, which a host may implement
// itself. The two sinks here write one line of text for each record, to a descriptor such as the standard error stream
// or to the end of a file.
//
//   auto sink = std::make_shared<kdx::FileLineSink>("agent.log");
//   if (!sink->opened()) ...                                   // nothing is lost yet: the old sink is still in use
//   kdx::EmbeddedSite::current().setLineSink(sink);
//
// The format of a line:
//
//   2026-11-22T21:30:05.123Z 4711 3456 2 CDumpFile::dumpXMLBlob: Bytes written :: [5]
//   2026-11-22T21:30:05.124Z 4711 - -1 Agent::run: can't open [jobs.xml] (No such file or directory)
//   2026-11-22T21:30:05.125Z 4711 3456 - a finished text\nof two lines
//
// The fields are the time in UTC, the thread's id, the job's id (`-` for none), the debug level (`-` for a preformatted
// text), the function with a colon (absent for a preformatted text), the text, and the text of an error number in
// parentheses (absent if there is none). A space separates the fields; the first four contain none. A line feed ends
// the line, on Windows too.
//
// Any message becomes exactly one line of valid UTF-8 and can't imitate a second line. These are escaped:
//
//   \0 \t \n \r    these four characters
//   \x1B \x7F      the other ASCII controls, and each byte that isn't UTF-8
//                  (0x80 and above: overlong forms, surrogates, truncated sequences)
//   \u0085         U+0080 to U+009F, which some terminals interpret as controls;
//                  U+2028 and U+2029, which separate lines and paragraphs;
//                  U+061C, U+200E, U+200F, U+202A to U+202E and U+2066 to U+2069,
//                  which change the direction of a text; U+FFF9 to U+FFFB, which
//                  annotate; all by their code points
//   \U000E0041     the tags, U+E0000 to U+E007F, which are invisible
//
// All other characters are unchanged. That includes the backslash, since Windows paths contain many: a text that
// contains `\n` as two characters can't be distinguished from one with a line feed.
//
// With LogFormat::kJson the same line is one JSON object (RFC 8259):
//
//   {"time":"2026-11-22T21:30:05.124Z","thread":4711,"level":-1,"function":"Agent::run","text":"can't open [jobs.xml]"}
//
// Its members are time, thread, job, level, function, text and error, in this order; one without a value is left out.
// A job id is a number of up to 64 bits, which some readers round. Strings are valid UTF-8 and contain no line break.
// The characters above are escaped in the way of JSON, so that a reader gets them back; each byte that isn't UTF-8 is
// replaced with U+FFFD.
//
// The library's sinks throw only std::bad_alloc. The log writer ignores that of `write`; constructors may throw it.

#ifndef KDXCOMMON_SINKS_LINE_SINK_H_
#define KDXCOMMON_SINKS_LINE_SINK_H_

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "kdxcommon/base/export.h"
#include "kdxcommon/base/string_types.h"

namespace kdx {

/// One message of the log. The views are valid only during the call that passes the record.
struct LogRecord {
  std::optional<int> level;  ///< none for a preformatted text
  string_view function;      ///< empty for a preformatted text
  std::int64_t jobId = 0;    ///< UNDEFINED_JOB_ID if no job is known
  string_view errorText;     ///< empty if the message reports no error number
  string_view text;          ///< as formatted: may contain any byte
};

/// The format of a line.
enum class LogFormat : char { kText, kJson };

/// Receives records. Several threads may call `write` at once; a sink that has state must synchronise it. The log
/// writer ignores the exceptions of `write` and restores `errno` and the last error, since logging must not disturb its
/// caller.
class KDX_EXPORT LineSink {
 public:
  virtual ~LineSink();
  /// Receives one record, on the thread that logs it.
  virtual void write(const LogRecord& record) = 0;

  /// Returns whether `write` would drop every record; the log writer then doesn't format the message. The default is
  /// false. Several threads may call it at once; must not throw.
  virtual bool drops() const { return false; }
};

/// Writes each record as one line to a descriptor, with one system call, so that lines of several threads don't mix: in
/// a file opened for appending no lines do, and in a pipe no lines of up to 4096 bytes. After a fork the lines of
/// parent and child don't mix either.
///
/// Thread-safe. No lock is held, except for a file on Windows that several processes share.
///
/// A line that can't be written is lost silently:
/// - If the disk is full, or if a non-blocking (O_NONBLOCK) pipe or socket is full, a line may be truncated. The next
///   line that can be written begins with an additional line break, however many lines were lost in between. If the
///   system writes only a part of a line, further calls write the rest.
/// - If a pipe or socket has no reader any more, lines are lost until it has one again, and the process receives no
///   SIGPIPE. The host's handling of that signal is unchanged.
/// - If a file reaches the process's limit of file sizes (RLIMIT_FSIZE), the system sends the process SIGXFSZ, which
///   ends it unless the host handles or ignores that signal.
/// - A full pipe or socket that blocks delays its writer until data is read. An interrupted system call is repeated.
class KDX_EXPORT DescriptorLineSink : public LineSink {
 public:
  /// The caller owns the descriptor and may redirect it to another file (`dup2`) at any time. -1 drops every record.
  explicit DescriptorLineSink(int descriptor, LogFormat format = LogFormat::kText)
      : descriptor_(descriptor), format_(format) {}
  void write(const LogRecord& record) override;
  bool drops() const override { return descriptor_ < 0; }

 protected:
  /// The precaution for writing a line: none, a guard against SIGPIPE, a lock on the file.
  enum class Care : char { kNone, kSignal, kLock };

  /// Writes a record's line, which begins with an additional line break. `fileTime` is the time in the line.
  virtual void writeLine(string_view line, std::uint64_t fileTime);

  /// Writes such a line to the descriptor, without the additional line break unless the line before was truncated.
  /// Returns the number of bytes written.
  std::size_t append(string_view line);

  /// Returns how many bytes of a line `append` now writes, with the additional line break if it is needed.
  std::size_t lengthOf(string_view line) const { return line.size() - (cuts_ % 2 == 0 ? 1 : 0); }

  /// Sets whether the next line needs the additional line break. Not while another thread writes.
  void setCut(bool cut) { cuts_ = cut ? 1 : 0; }

  int descriptor_;             ///< -1 drops every record
  Care care_ = Care::kSignal;  ///< set by a derived class before the first record

 private:
  LogFormat format_;
  std::atomic<std::uint32_t> cuts_{0};  // odd from a truncated line until the line break after it
};

/// The processes that write to a log file: only this one, or others too.
enum class LogFileUse : bool { kOneProcess, kSeveralProcesses };

/// Writes to the end of a file, which it creates if it is missing (for its owner, readable by its group). Everything
/// that is documented for DescriptorLineSink holds here, too.
///
/// Several processes may write to one file, each through its own sink or one inherited by a fork. None of their lines
/// is lost or mixed with another:
/// - on POSIX always, since the system appends each line as a whole; except on NFS, which can't;
/// - on Windows if all of them pass LogFileUse::kSeveralProcesses. Each line is then written under a lock on the file,
///   one at a time in the whole process. Readers of the file and writers without such a sink are not delayed. Without
///   this option the system appends, too, but not every system that offers the Windows interfaces appends a line as a
///   whole.
///
/// If a full disk truncates a line of one process, another process's line may follow it without a line break.
class KDX_EXPORT FileLineSink : public DescriptorLineSink {
 public:
  /// Opens `path` (UTF-8). A FIFO must have a reader: without one it fails to open at once. If the file can't be
  /// opened, sets the thread's last error, and the sink drops every record.
  explicit FileLineSink(const char* path, LogFileUse use = LogFileUse::kOneProcess,
                        LogFormat format = LogFormat::kText);
  ~FileLineSink() override;
  FileLineSink(const FileLineSink&) = delete;
  FileLineSink& operator=(const FileLineSink&) = delete;

  /// Returns whether the file was opened.
  bool opened() const { return descriptor_ >= 0; }
};

}  // namespace kdx

#endif  // KDXCOMMON_SINKS_LINE_SINK_H_
