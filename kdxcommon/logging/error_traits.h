// KDXErrorTraits: the error state that a class carries by deriving from it. The class reports a failure by a setter on
// itself; its callers read number, severity and text back.
//
//   class Agent : public kdx::KDXErrorTraits {
//    public:
//     bool open(const kdx::string& name) {
//       if (exists(name)) return true;
//       setFileNotFoundError(name, kdx::ZQLE_MAJOR);
//       return false;
//     }
//   };
//   if (!agent.open("jobs.xml")) report(agent.errorID(), agent.isCritical());   // 0x56000004, false
//
// A database's result code becomes one of a family of numbers, which a row of tests asks for by name:
//
//   setDbError(code, kdx::ZQLE_MAJOR, "Agent::store");
//   if (isKDXErrorDBDeadLock()) retry();
//
// Every setter replaces the error that was there. Thread rule: one thread uses an object at a time. Only `setTextError`
// and `setDbError` throw, apart from allocations.

#ifndef KDXCOMMON_LOGGING_ERROR_TRAITS_H_
#define KDXCOMMON_LOGGING_ERROR_TRAITS_H_

#include <cstdint>

#include "kdxcommon/base/export.h"
#include "kdxcommon/base/string_types.h"
#include "kdxcommon/inhouse/jxutils/jx_traits.h"
#include "kdxcommon/inhouse/zqlib/last_error.h"

namespace kdx {

/// The last error of the class that derives from it, or none.
class KDX_EXPORT KDXErrorTraits : public JxErrorTraits {
 public:
  /// No error: number 0, informational, no text.
  KDXErrorTraits();
  /// An error without text and arguments.
  KDXErrorTraits(std::uint32_t id, ZQLE_SeverityLevel severity);
  /// Copies number, severity, arguments and text.
  KDXErrorTraits(const KDXErrorTraits& other);
  KDXErrorTraits& operator=(const KDXErrorTraits& other);
  ~KDXErrorTraits() override;

  /// What the error is. `errorID` reads the object that `lastError` gives, all others this one.
  virtual bool isInformational() const;
  virtual bool isMinor() const;
  virtual bool isMajor() const;
  virtual bool isCritical() const;
  /// Whether the number is the operating system's.
  virtual bool isOSError() const;
  virtual std::uint32_t errorID() const;
  virtual int severity() const;

  /// Each sets number and severity, with an empty text and no arguments. The OS forms are the same operations for
  /// numbers of the operating system.
  virtual void setInformational(std::uint32_t id);
  virtual void setMinor(std::uint32_t id);
  virtual void setOSMinor(std::uint32_t id);
  virtual void setMajor(std::uint32_t id);
  virtual void setOSMajor(std::uint32_t id);
  virtual void setCritical(std::uint32_t id);
  virtual void setOSCritical(std::uint32_t id);

  /// Sets number, severity (0 to 3) and text. Another severity throws JxException with "Unsupported severity!" and
  /// `where`; the object is then without an error. `where` serves nothing else.
  virtual void setTextError(std::uint32_t id, const string& text, const string& where, int severity);

  /// The text that `setTextError` was given; empty after every other setter.
  virtual string textMessage() const;

  /// 0x56000002, with an empty text. Always major, whatever `severity` says.
  virtual void setInvalidArgumentError(int severity);
  /// 0x56000003, with an empty text. Here and below the severity is taken as it comes, any number.
  virtual void setInsufficientMemoryError(int severity);
  /// 0x56000004 with the file's name as its argument.
  virtual void setFileNotFoundError(const string& fileName, int severity);

  /// Back to no error.
  virtual void clear();

  /// 0x56000006 with two arguments, in this order.
  virtual void setAPICallError(const string& first, const string& second, int severity);

  /// The object that holds the error: this one, unless a derived class redirects it.
  virtual const KDXErrorTraits& lastError() const;
  virtual KDXErrorTraits& setLastError();

  /// Folds a database's result code into a number of the database family, with an empty text: 100 row not found, 101
  /// and 1004 duplicate row, 1011 lock timeout, 1012 and 1025 deadlock, 1016 constraint violation. Any other code is
  /// 0x16000014 with the code as its argument, and 0 is no error, informational whatever `severity` says. Throws as
  /// `setTextError` does.
  void setDbError(std::uint32_t code, int severity, const string& where);

  /// Whether the number is `id`. `errorID` tells the number, here and below.
  bool isKDXError(std::uint32_t id) const { return errorID() == id; }
  bool isKDXErrorRowNotFound() const { return isKDXError(kDbErrorRowNotFound); }
  /// A duplicate row and too many rows share a number: these two are one test.
  bool isKDXErrorDuplicateRow() const { return isKDXError(kDbErrorDuplicateRow); }
  bool isKDXErrorTooManyRows() const { return isKDXError(kDbErrorDuplicateRow); }
  bool isKDXErrorConstraintViolation() const { return isKDXError(kDbErrorConstraintViolation); }
  bool isKDXErrorDBLockTimeout() const { return isKDXError(kDbErrorLockTimeout); }
  bool isKDXErrorDBDeadLock() const { return isKDXError(kDbErrorDeadLock); }
  /// No result code gives this one; other setters do.
  bool isKDXErrorOutOfDiskSpace() const { return isKDXError(kDbErrorOutOfDiskSpace); }

 private:
  friend struct ErrorTraitsPeer;

  bool isDbError() const;
  void init();
  void setTypedError(std::uint32_t id, int severity);

  ZQLastError zqError_;
  string textMessage_;
};

}  // namespace kdx

#endif  // KDXCOMMON_LOGGING_ERROR_TRAITS_H_
