// KDXErrorTraits is the error state of the classes that derive from it. A class reports a failure by calling a setter
// on itself; its callers read the number, the severity and the text.
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
// A database's result code becomes one of a family of numbers, each with a test of its own:
//
//   setDbError(code, kdx::ZQLE_MAJOR, "Agent::store");
//   if (isKDXErrorDBDeadLock()) retry();
//
// Every setter replaces the previous error. Thread safety: not safe for concurrent use of one object; different objects
// are independent. `setTextError` and `setDbError` may throw JxException; otherwise only std::bad_alloc is thrown.

#ifndef KDXCOMMON_LOGGING_ERROR_TRAITS_H_
#define KDXCOMMON_LOGGING_ERROR_TRAITS_H_

#include <cstdint>

#include "kdxcommon/base/export.h"
#include "kdxcommon/base/string_types.h"
#include "kdxcommon/inhouse/jxutils/jx_traits.h"
#include "kdxcommon/inhouse/zqlib/last_error.h"

namespace kdx {

/// The last error of a derived class, or none.
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

  /// Return the error's properties. `errorID` reads the object that `lastError` returns, all others read this one.
  virtual bool isInformational() const;
  virtual bool isMinor() const;
  virtual bool isMajor() const;
  virtual bool isCritical() const;
  /// Returns whether the number is the operating system's.
  virtual bool isOSError() const;
  /// Returns the number in the object that `lastError` returns; 0 is no error.
  virtual std::uint32_t errorID() const;
  /// Returns the severity, 0 to 3 unless another number was stored.
  virtual int severity() const;

  /// Set the number and the severity, with an empty text and no arguments. The OS forms do the same for numbers of the
  /// operating system.
  virtual void setInformational(std::uint32_t id);
  virtual void setMinor(std::uint32_t id);
  virtual void setOSMinor(std::uint32_t id);
  virtual void setMajor(std::uint32_t id);
  virtual void setOSMajor(std::uint32_t id);
  virtual void setCritical(std::uint32_t id);
  virtual void setOSCritical(std::uint32_t id);

  /// Sets number, severity (0 to 3) and text. For any other severity throws JxException with "Unsupported severity!"
  /// and `where`, and the object then has no error. `where` has no other use.
  virtual void setTextError(std::uint32_t id, const string& text, const string& where, int severity);

  /// Returns the text of `setTextError`; empty after every other setter.
  virtual string textMessage() const;

  /// Sets 0x56000002 with an empty text. Always major; `severity` is ignored.
  virtual void setInvalidArgumentError(int severity);
  /// Sets 0x56000003 with an empty text. Here and below any severity is accepted.
  virtual void setInsufficientMemoryError(int severity);
  /// Sets 0x56000004 with the file's name as the argument.
  virtual void setFileNotFoundError(const string& fileName, int severity);

  /// Resets the object to no error.
  virtual void clear();

  /// Sets 0x56000006 with the two arguments, in this order.
  virtual void setAPICallError(const string& first, const string& second, int severity);

  /// Returns the object that holds the error: this one, unless a derived class redirects it.
  virtual const KDXErrorTraits& lastError() const;
  virtual KDXErrorTraits& setLastError();

  /// Sets the number of the database family that a database's result code stands for, with an empty text: 100 row not
  /// found, 101 and 1004 duplicate row, 1011 lock timeout, 1012 and 1025 deadlock, 1016 constraint violation. Any other
  /// code sets 0x16000014 with the code as the argument. 0 sets no error, always informational. Throws as
  /// `setTextError` does.
  void setDbError(std::uint32_t code, int severity, const string& where);

  /// Return whether `errorID()` is `id`, or the number of the error in the function's name.
  bool isKDXError(std::uint32_t id) const { return errorID() == id; }
  bool isKDXErrorRowNotFound() const { return isKDXError(kDbErrorRowNotFound); }
  /// A duplicate row and too many rows share a number: these two are the same test.
  bool isKDXErrorDuplicateRow() const { return isKDXError(kDbErrorDuplicateRow); }
  bool isKDXErrorTooManyRows() const { return isKDXError(kDbErrorDuplicateRow); }
  /// Return whether `errorID()` is the number of the error in the function's name.
  bool isKDXErrorConstraintViolation() const { return isKDXError(kDbErrorConstraintViolation); }
  bool isKDXErrorDBLockTimeout() const { return isKDXError(kDbErrorLockTimeout); }
  bool isKDXErrorDBDeadLock() const { return isKDXError(kDbErrorDeadLock); }
  /// No result code sets this one; other setters can.
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
