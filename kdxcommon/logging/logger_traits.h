// KDXLoggerTraits: a logger that writes the debug log under the job that the calling thread works for. It is small and
// holds no resource: make one on the stack where there is something to say.
//
//   kdx::KDXLoggerTraits logger;
//   logger.message(-1, "Agent::run", kdx::platformGetLastError(), "can't open [%s]", name.c_str());
//
// A message is written when its level is at most the process's debug level, which is read once, at the first message.
// The library writes failures at -1, notices at 0, look-ups at 1, beginnings and outcomes at 2, steps at 3, items at 4.
//
// A line carries the first job id of these: the logger's own if it is above 0, the calling thread's (job_identity.h),
// the process's (`setJobID`), `UNDEFINED_JOB_ID`.
//
// Thread safety: not safe for concurrent use of one logger; different loggers are independent, and the static
// operations are thread-safe. No operation reports a failure: a line that can't be written is lost, and the thread's
// last error (`errno`, and on Windows `GetLastError`) is unchanged. Throws only std::bad_alloc, when a caller's text
// becomes the `string` of a function's name.

#ifndef KDXCOMMON_LOGGING_LOGGER_TRAITS_H_
#define KDXCOMMON_LOGGING_LOGGER_TRAITS_H_

#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "kdxcommon/base/export.h"
#include "kdxcommon/base/printf_format.h"
#include "kdxcommon/base/string_types.h"
#include "kdxcommon/inhouse/jxutils/jx_traits.h"
#include "kdxcommon/inhouse/zqbasiclib/ev_debug.h"

namespace kdx {

/// A logger of the process's default log.
class KDX_EXPORT KDXLoggerTraits : public JxLoggerTraits {
 public:
  KDXLoggerTraits() = default;
  /// With a job id of its own; 0 or less counts as none.
  explicit KDXLoggerTraits(std::int64_t jobId) : localJobID_(jobId) {}
  KDXLoggerTraits(const KDXLoggerTraits&) = default;
  KDXLoggerTraits& operator=(const KDXLoggerTraits&) = default;
  ~KDXLoggerTraits() override;

  /// Logs a printf text under `function`, with the text of an error number behind it. A message that the level drops
  /// costs two loads and a compare.
  KDX_PRINTF(5, 6)
  void message(int level, const string& function, std::uint32_t errorNumber, const char* format, ...) const override;
  /// Logs a printf text under `function`.
  KDX_PRINTF(4, 5)
  void message(int level, const string& function, const char* format, ...) const override;

  /// Logs a printf text alone: neither `function` nor `level` reaches the line. `bufferSize` must hold the text with
  /// its terminating zero byte; a longer text is cut there, and a size of 0 logs an empty text. A text that the C
  /// library can't format is written as its format stands. Where the memory can't be had, "Failed to allocate
  /// BufferOnHeap!" is logged at level 0 in place of the text.
  KDX_PRINTF(5, 6)
  void messageOfSize(std::size_t bufferSize, int level, const string& function, const char* format, ...) const override;
  /// 4096.
  std::size_t getDefaultBufferSize() const override;

  /// The logger's own job id; any number is kept, 0 or less counts as none.
  void setLocalJobID(std::int64_t jobId) { localJobID_ = jobId; }
  std::int64_t getLocalJobID() const { return localJobID_; }

  /// The process's debug level, as it was configured when it was first asked for.
  static int getDebugLevel();

  /// Whether the debug level, as far as it has been read, is at most 0, 1 or 2. True before the first message.
  static bool level0();
  static bool level1();
  static bool level2();

  /// Sets the process's job id and logs the change at level 0. 0 is refused, with a line of level 0.
  static void setJobID(std::int64_t jobId);

 private:
  friend class FunctionLogger;

  static bool isDebugLevel(int level);
  static void readDebugLevel();
  static void setDebugLevel(int level);
  static void setJobID(EvDebug& debug);
  void setEvDebugJobID(EvDebug& debug) const;
  void write(int level, const char* function, std::optional<std::uint32_t> errorNumber, const char* format,
             std::va_list arguments) const KDX_PRINTF(5, 0);

  std::int64_t localJobID_ = 0;
};

}  // namespace kdx

#endif  // KDXCOMMON_LOGGING_LOGGER_TRAITS_H_
