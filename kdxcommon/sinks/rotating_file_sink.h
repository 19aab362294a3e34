// A log file of limited size: when a line would exceed the limit, the file is renamed and a new one begun.
//
//   auto sink = std::make_shared<kdx::RotatingFileLineSink>("agent.log", kdx::Rotation{.maxBytes = 1 << 20});
//   if (sink->opened()) kdx::EmbeddedSite::current().setLineSink(sink);
//
// The newest lines are in agent.log, older ones in agent.log.1, agent.log.2 and so on; the oldest file is removed. Each
// line is in one file as a whole.
//
// Somebody else may move, remove or truncate the file at any time, such as a program that rotates logs itself: at most
// once a second, a write checks which file the name stands for, and continues there. `reopen` does so at once. Lines
// that are written in between go to the moved file. On Windows the file can be renamed and removed while it is open.
//
// If a write fails, such as on a full disk, the line is lost as documented for DescriptorLineSink, and nothing is
// rotated. If the file can't be rotated, such as in a directory without write permission, it grows beyond the limit,
// and the next attempt follows a second later. A process that is killed leaves at worst a truncated line, or a missing
// number among the older files, both of which the next writer handles.
//
// After a fork the child of LogFileUse::kOneProcess may log, too: it follows the file with each line, more slowly, and
// never rotates it. With LogFileUse::kSeveralProcesses parent and child are equal.
//
// Throws only std::bad_alloc, as line_sink.h says.

#ifndef KDXCOMMON_SINKS_ROTATING_FILE_SINK_H_
#define KDXCOMMON_SINKS_ROTATING_FILE_SINK_H_

#include <atomic>
#include <cstddef>
#include <cstdint>

#include "kdxcommon/base/export.h"
#include "kdxcommon/base/string_types.h"
#include "kdxcommon/os/operating_system.h"
#include "kdxcommon/sinks/line_sink.h"

namespace kdx {

/// When a log file is rotated, and how many older files are kept.
struct Rotation {
  std::uint64_t maxBytes = std::uint64_t{10} * 1024 * 1024;  ///< a longer line is alone in its file
  int olderFiles = 5;                                        ///< less than 1 counts as 1
};

/// Writes to the end of a file and rotates it. Several threads may write at once, one at a time in all objects.
///
/// - LogFileUse::kOneProcess: a second process that opens the file is refused. A line costs little more than with
///   FileLineSink. The lock that refuses the other process lasts until this one closes the file: on POSIX also any
///   other descriptor of it.
/// - LogFileUse::kSeveralProcesses: all processes of the file must use this class with this option. No line is lost or
///   mixed with another. Each line is written under a lock on the file, with a look at its name.
class KDX_EXPORT RotatingFileLineSink : public DescriptorLineSink {
 public:
  /// Opens `path` (UTF-8), which must be a regular file or missing; it is created as FileLineSink does. If it can't be
  /// opened, or if another process holds it, sets the thread's last error (for the latter EAGAIN or EACCES, on Windows
  /// ERROR_LOCK_VIOLATION), and the sink drops every record until `reopen` succeeds. Throws std::bad_alloc.
  explicit RotatingFileLineSink(const char* path, Rotation rotation = {}, LogFileUse use = LogFileUse::kOneProcess,
                                LogFormat format = LogFormat::kText);
  ~RotatingFileLineSink() override;
  RotatingFileLineSink(const RotatingFileLineSink&) = delete;
  RotatingFileLineSink& operator=(const RotatingFileLineSink&) = delete;

  /// Returns whether a file is open.
  bool opened() const { return opened_; }
  bool drops() const override { return !opened_; }

  /// Opens the file that the name now stands for, and creates it if it is missing. Returns whether the sink now writes
  /// to it; otherwise sets the thread's last error, and a file that was open stays open. Thread-safe.
  bool reopen();

 private:
  static constexpr std::uint64_t kNever = ~std::uint64_t{0};

  void writeLine(string_view line, std::uint64_t fileTime) override;
  bool isFileForLine(string_view line, std::uint64_t second, bool locked);
  bool isOpenFileOfName();
  bool openFileOfName();
  bool rotate() const;
  bool endsWithinALine() const;
  string olderName(int number) const;

  const string path_;
  const Rotation rotation_;
  const LogFileUse use_;
  const unsigned forks_;            // the number of forks of this process and its ancestors when the sink was made
  os::FileStatus file_;             // of the open file; the size includes the lines written since
  std::uint64_t checked_ = kNever;  // the second of the last look at the name
  std::uint64_t refused_ = kNever;  // the second of the last failure to rotate the file or to open another
  std::atomic<bool> opened_ = false;
};

}  // namespace kdx

#endif  // KDXCOMMON_SINKS_ROTATING_FILE_SINK_H_
