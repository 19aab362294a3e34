// The base classes of a component's logger, error state and lock. The concrete classes derive from them, and the rest
// of the component uses them through these bases.
//
//   void run(const kdx::JxLoggerTraits& logger) { logger.message(2, "Agent::run", "Enter"); }
//   run(kdx::KDXLoggerTraits());
//
// Thread safety and errors are those of the concrete classes: see KDXLoggerTraits, KDXErrorTraits and
// KDXCriticalSectionTraits.

#ifndef KDXCOMMON_INHOUSE_JXUTILS_JX_TRAITS_H_
#define KDXCOMMON_INHOUSE_JXUTILS_JX_TRAITS_H_

#include <cstddef>
#include <cstdint>

#include "kdxcommon/base/export.h"
#include "kdxcommon/base/printf_format.h"
#include "kdxcommon/base/string_types.h"

namespace kdx {

/// A logger. A higher level means more detail. Formats are those of printf.
class KDX_EXPORT JxLoggerTraits {
 public:
  virtual ~JxLoggerTraits();

  /// Logs a text with the text of an error number.
  virtual void message(int level, const string& function, std::uint32_t errorNumber, const char* format, ...) const
      KDX_PRINTF(5, 6) = 0;
  /// Logs a text.
  virtual void message(int level, const string& function, const char* format, ...) const KDX_PRINTF(4, 5) = 0;
  /// Logs a text of up to `bufferSize` bytes, terminating zero byte included.
  virtual void messageOfSize(std::size_t bufferSize, int level, const string& function, const char* format, ...) const
      KDX_PRINTF(5, 6) = 0;
  /// Returns a buffer size in bytes that suffices for most texts.
  virtual std::size_t getDefaultBufferSize() const = 0;

 protected:
  JxLoggerTraits() = default;
  JxLoggerTraits(const JxLoggerTraits&) = default;
  JxLoggerTraits& operator=(const JxLoggerTraits&) = default;
};

/// An error state: the common part, which maps severities to numbers.
class KDX_EXPORT JxErrorTraits {
 public:
  /// The numbers of the four severities.
  struct SeverityLevels {
    int informational = 0;  ///< no failure
    int minor = 0;          ///< the least failure
    int major = 0;          ///< more than minor
    int critical = 0;       ///< the worst failure
    bool operator==(const SeverityLevels&) const = default;
  };

  virtual ~JxErrorTraits();

  /// Returns the numbers that the concrete class uses; all 0 until it has set them.
  const SeverityLevels& severityLevels() const { return severityLevels_; }

 protected:
  JxErrorTraits() = default;
  JxErrorTraits(const JxErrorTraits&) = default;
  JxErrorTraits& operator=(const JxErrorTraits&) = default;

  /// Sets the numbers; the constructor of a concrete class calls it.
  void setSeverityLevels(int informational, int minor, int major, int critical) {
    severityLevels_ = {informational, minor, major, critical};
  }

 private:
  SeverityLevels severityLevels_;
};

/// A recursive lock.
class KDX_EXPORT JxCriticalSectionTraits {
 public:
  virtual ~JxCriticalSectionTraits();

  /// Takes the lock; if another thread holds it, waits only if `wait` is true. Returns whether the calling thread now
  /// holds it.
  virtual bool enter(bool wait) = 0;
  /// Releases one hold of the calling thread.
  virtual void leave() = 0;
  /// Returns whether a thread holds the lock now.
  virtual bool locked() = 0;

 protected:
  JxCriticalSectionTraits() = default;
  JxCriticalSectionTraits(const JxCriticalSectionTraits&) = delete;
  JxCriticalSectionTraits& operator=(const JxCriticalSectionTraits&) = delete;
};

}  // namespace kdx

#endif  // KDXCOMMON_INHOUSE_JXUTILS_JX_TRAITS_H_
