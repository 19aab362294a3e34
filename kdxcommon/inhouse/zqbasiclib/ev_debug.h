// EvDebug, the writer of the debug log. It is small and holds no resource: make one where there is something to write.
//
//   kdx::EvDebug debug(nullptr);
//   debug.setJobId(3456);
//   debug.DebugLvl("CDumpFile::dumpXMLBlob", 2, "Bytes written :: [%u]", written);
//
// A message is formatted on the caller's thread while no lock is held, and passed as one record to the line sink of the
// embedded site. Where the sink drops its lines, nothing is formatted. The caller's last error (`errno`, and on Windows
// `GetLastError`) stays what it was.
//
// Thread safety: not safe for concurrent use of one object; different objects are independent. Nothing throws.

#ifndef KDXCOMMON_INHOUSE_ZQBASICLIB_EV_DEBUG_H_
#define KDXCOMMON_INHOUSE_ZQBASICLIB_EV_DEBUG_H_

#include <cstdarg>
#include <cstdint>

#include "kdxcommon/base/export.h"
#include "kdxcommon/base/job_id.h"
#include "kdxcommon/base/printf_format.h"

namespace kdx {

class EvDebugFileInstance;  // a log of its own; the library always writes to the process's default log

/// The writer. Copies write under the same job id.
class KDX_EXPORT EvDebug {
 public:
  /// `file` null: the process's default log.
  explicit EvDebug(EvDebugFileInstance* file = nullptr);
  ~EvDebug();

  /// The level that the process is configured for now, from the embedded site.
  int getDebugLevel() const;

  /// The job id that this object writes under; `UNDEFINED_JOB_ID` until it is set.
  void setJobId(std::int64_t jobId) { jobId_ = jobId; }
  std::int64_t getJobId() const { return jobId_; }

  /// Formats and writes one line at `level` under this object's job id, if the configured level lets it pass.
  void DebugLvl(const char* function, int level, const char* format, ...) const KDX_PRINTF(4, 5);

  /// Formats and writes one line, whatever the configured level. `errorText` may be null. The third argument belongs to
  /// the writer and is 0. A text that the C library can't format is written as its format stands.
  void handleMsgEventDebug_NEW(int level, const char* function, int reserved, std::int64_t jobId, const char* errorText,
                               const char* format, std::va_list arguments) const KDX_PRINTF(7, 0);

  /// Writes a finished text as it stands, under this object's job id, with no level and no function.
  void logMessage(char* text) const;

 private:
  std::int64_t jobId_ = UNDEFINED_JOB_ID;
};

}  // namespace kdx

#endif  // KDXCOMMON_INHOUSE_ZQBASICLIB_EV_DEBUG_H_
