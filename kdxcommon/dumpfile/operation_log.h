// Internal: the log lines of one operation of CDumpFile, all under its name.
//
//   const kdx::ScopeLog log(debug_, "CDumpFile::markAsFailed");   // "Enter"; "Exit" at the end of the scope
//   log.line(4, "Searching for files %s", pattern.c_str());

#ifndef KDXCOMMON_DUMPFILE_OPERATION_LOG_H_
#define KDXCOMMON_DUMPFILE_OPERATION_LOG_H_

#include <cstdarg>
#include <cstdint>

#include "kdxcommon/base/printf_format.h"
#include "kdxcommon/inhouse/zqlib/ev_event.h"

namespace kdx {

class OperationLog {
 public:
  /// Logs through `log`, which must outlive this object, under the name `function`.
  OperationLog(const EvEvent& log, const char* function) : log_(log), function_(function) {}
  OperationLog(const OperationLog&) = delete;
  OperationLog& operator=(const OperationLog&) = delete;

  /// Formats and writes one line if the configured level lets it pass. Throws nothing.
  KDX_PRINTF(3, 4) void line(int level, const char* format, ...) const {
    if (level > log_.getDebugLevel()) return;
    std::va_list arguments;
    va_start(arguments, format);
    log_.handleMsgEventDebug_NEW(level, function_, 0, log_.getJobId(), nullptr, format, arguments);
    va_end(arguments);
  }

  /// Logs that one more file of a job was counted; `insertedEnding` ends the line of the job's first.
  void count(std::int64_t jobId, int files, const char* insertedEnding) const {
    const auto id = static_cast<long long>(jobId);
    if (files == 1) {
      line(4, "JOBID = [%lld] is inserted into map%s", id, insertedEnding);
    } else {
      line(4, "Count for JOBID = [%lld] is increamented by 1", id);
    }
  }

 private:
  const EvEvent& log_;
  const char* function_;
};

/// Logs "Enter" at once, and "Exit" when the scope ends.
class ScopeLog : public OperationLog {
 public:
  ScopeLog(const EvEvent& log, const char* function) : OperationLog(log, function) { line(2, "Enter"); }
  ~ScopeLog() {
    if (logsExit_) line(2, "Exit");
  }

  /// Leaves "Exit" out.
  void skipExit() { logsExit_ = false; }

 private:
  bool logsExit_ = true;
};

}  // namespace kdx

#endif  // KDXCOMMON_DUMPFILE_OPERATION_LOG_H_
