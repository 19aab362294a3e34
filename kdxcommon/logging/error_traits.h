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
// Every setter replaces the error that was there. Thread rule: one thread uses an object at a time. Only `setTextError`
// throws, apart from allocations.

#ifndef KDXCOMMON_LOGGING_ERROR_TRAITS_H_
#define KDXCOMMON_LOGGING_ERROR_TRAITS_H_

#include <cstdint>

#include "kdxcommon/base/export.h"
#include "kdxcommon/base/string_types.h"
#include "kdxcommon/inhouse/jxutils/jx_traits.h"
#include "kdxcommon/inhouse/zqlib/last_error.h"

namespace kdx {
namespace testing {
struct ErrorTraitsPeer;
}

/// The last error of the class that derives from it, or none.
class KDX_EXPORT KDXErrorTraits : public JxErrorTraits {
 public:
  /// No error: number 0, informational, no text.
  KDXErrorTraits();
  KDXErrorTraits(std::uint32_t id, ZQLE_SeverityLevel severity);
  KDXErrorTraits(const KDXErrorTraits& other);
  KDXErrorTraits& operator=(const KDXErrorTraits& other);
  ~KDXErrorTraits() override;

  // What the error is. `errorID` reads the object that `lastError` gives, all others this one.
  virtual bool isInformational() const;
  virtual bool isMinor() const;
  virtual bool isMajor() const;
  virtual bool isCritical() const;
  /// Whether the number is the operating system's.
  virtual bool isOSError() const;
  virtual std::uint32_t errorID() const;
  virtual int severity() const;

  // Each sets number and severity, with an empty text and no arguments. The OS forms are the same operations for
  // numbers of the operating system.
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

  // Errors of the library. The severity is taken as it comes, any number; the text is empty.

  /// 0x56000002. Always major, whatever `severity` says.
  virtual void setInvalidArgumentError(int severity);
  /// 0x56000003.
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

 private:
  friend struct testing::ErrorTraitsPeer;

  void init();
  void setTypedError(std::uint32_t id, int severity);

  ZQLastError zqError_;
  string textMessage_;
};

}  // namespace kdx

#endif  // KDXCOMMON_LOGGING_ERROR_TRAITS_H_
