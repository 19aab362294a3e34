// EvDebug, the writer of the debug log. It is small and holds no resource: make one where a message is logged.
//
//   kdx::EvDebug debug(nullptr);
//   debug.setJobId(3456);
//   debug.DebugLvl("CDumpFile::dumpXMLBlob", 2, "Bytes written :: [%u]", written);
//
// A message is formatted on the caller's thread while no lock is held, and passed as one record to the line sink of the
// embedded site. If the sink drops its lines, nothing is formatted. The caller's last error (`errno`, and on Windows
// `GetLastError`) is unchanged.
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
  /// `file` is ignored; a null pointer stands for the process's default log, to which all objects write.
  explicit EvDebug(EvDebugFileInstance* file = nullptr);
  ~EvDebug();

  /// Returns the present debug level of the process, from the embedded site.
  int getDebugLevel() const;

  /// Set and return the job id that this object writes under; `UNDEFINED_JOB_ID` until it is set.
  void setJobId(std::int64_t jobId) { jobId_ = jobId; }
  std::int64_t getJobId() const { return jobId_; }

  /// Formats and writes one line of `level` under this object's job id if `level` is at most the present debug level. A
  /// null `function` is the empty name.
  void DebugLvl(const char* function, int level, const char* format, ...) const KDX_PRINTF(4, 5);

  /// Formats and writes one line, whatever the debug level. `function` and `errorText` may be null, the same as empty.
  /// The third argument is reserved; pass 0. If the C library can't format the text, the format itself is written.
  void handleMsgEventDebug_NEW(int level, const char* function, int reserved, std::int64_t jobId, const char* errorText,
                               const char* format, std::va_list arguments) const KDX_PRINTF(7, 0);

  /// Writes a preformatted text under this object's job id, without level and function. A null `text` is empty.
  void logMessage(char* text) const;

 private:
  std::int64_t jobId_ = UNDEFINED_JOB_ID;
};

}  // namespace kdx

#endif  // KDXCOMMON_INHOUSE_ZQBASICLIB_EV_DEBUG_H_
