// The system's log as a destination of log lines: the syslog daemon on POSIX, the event log on Windows.
//
//   auto sink = std::make_shared<kdx::SystemLogSink>("kdx-agent");
//   if (sink->opened()) kdx::EmbeddedSite::current().setLineSink(sink);
//
// A message's text is that of a line without time and thread, which the system records itself:
//
//   job 3456 CDumpFile::dumpXMLBlob: Bytes written :: [5]
//
// Its severity follows from the debug level: -1 and below is an error, 0 a notice, 1 and 2 informational, as is a
// preformatted text, and above that it is a debug message. The event log has only errors and information.
//
// On Windows the source should be registered by the host's installer, so that the event viewer shows the bare text:
// under HKLM\SYSTEM\CurrentControlSet\Services\EventLog\Application\SOURCE, the value EventMessageFile (REG_EXPAND_SZ)
// is the path of KDXCommon.dll, and TypesSupported (REG_DWORD) is 7.
//
// Throws only std::bad_alloc, as line_sink.h says.

#ifndef KDXCOMMON_SINKS_SYSTEM_LOG_SINK_H_
#define KDXCOMMON_SINKS_SYSTEM_LOG_SINK_H_

#include <memory>

#include "kdxcommon/base/export.h"
#include "kdxcommon/os/operating_system.h"
#include "kdxcommon/sinks/line_sink.h"

namespace kdx {

/// Reports each record to the system's log. Thread-safe; holds no lock. A forked child and other processes may report,
/// too.
///
/// A message is lost silently if the system doesn't take it, such as while the daemon isn't running; the first message
/// after its start is taken again. If the daemon doesn't read, the call waits for it. A text of more than 16 KiB is
/// truncated.
class KDX_EXPORT SystemLogSink : public LineSink {
 public:
  /// Reports under the name `source` (UTF-8), in which POSIX daemons expect no space, colon or bracket. `address` is
  /// the daemon's socket; it is ignored on Windows. On failure sets the thread's last error, and the sink drops every
  /// record.
  explicit SystemLogSink(const char* source, const char* address = "/dev/log");
  ~SystemLogSink() override;

  void write(const LogRecord& record) override;
  bool drops() const override { return !log_; }

  /// Returns whether the sink is connected. On POSIX that is so even while the daemon isn't running.
  bool opened() const { return log_ != nullptr; }

 private:
  const std::unique_ptr<os::SystemLog> log_;
};

}  // namespace kdx

#endif  // KDXCOMMON_SINKS_SYSTEM_LOG_SINK_H_
