// ZQLastError is an error number with a severity and the arguments of its message.
//
//   kdx::ZQLastError error(0x56000004, kdx::ZQLE_MAJOR);
//   error.addArgument("jobs.xml");
//   std::puts(error.message());   // File not found: jobs.xml
//
// The library's own numbers are the four constants below and the family 0x16xxxxxx of database outcomes; their messages
// are its own. 0 is no error. Every other number is the operating system's, and so is its message.
//
// A value type. Thread safety: not safe for concurrent use of one object; different objects are independent. Throws
// only std::bad_alloc.

#ifndef KDXCOMMON_INHOUSE_ZQLIB_LAST_ERROR_H_
#define KDXCOMMON_INHOUSE_ZQLIB_LAST_ERROR_H_

#include <cstdint>
#include <vector>

#include "kdxcommon/base/export.h"
#include "kdxcommon/base/string_types.h"

namespace kdx {

/// The severity of an error. Other numbers are stored unchanged.
enum ZQLE_SeverityLevel : int {
  ZQLE_INFORMATIONAL = 0,
  ZQLE_MINOR = 1,
  ZQLE_MAJOR = 2,
  ZQLE_CRITICAL = 3,
};

/// The library's own error numbers outside the database family.
inline constexpr std::uint32_t kErrorInvalidArgument = 0x56000002;
inline constexpr std::uint32_t kErrorInsufficientMemory = 0x56000003;
inline constexpr std::uint32_t kErrorFileNotFound = 0x56000004;   ///< argument: the file's name
inline constexpr std::uint32_t kErrorInterfaceCall = 0x56000006;  ///< arguments: two texts

/// The database family.
inline constexpr std::uint32_t kDbErrorRowNotFound = 0x16000001;
inline constexpr std::uint32_t kDbErrorDuplicateRow = 0x16000005;  ///< too many rows as well
inline constexpr std::uint32_t kDbErrorDeadLock = 0x1600000B;
inline constexpr std::uint32_t kDbErrorLockTimeout = 0x1600000C;
inline constexpr std::uint32_t kDbErrorConstraintViolation = 0x1600000F;
inline constexpr std::uint32_t kDbErrorOther = 0x16000014;  ///< argument: the database's result code
inline constexpr std::uint32_t kDbErrorOutOfDiskSpace = 0x16000025;

/// One error, or none.
class KDX_EXPORT ZQLastError {
 public:
  /// No error: number 0, informational.
  ZQLastError() = default;
  /// An error without arguments.
  ZQLastError(std::uint32_t number, ZQLE_SeverityLevel severity) : number_(number), severity_(severity) {}

  /// Resets the object to no error.
  void clear() { *this = ZQLastError(); }

  /// The error's number and severity. All four tests return false for a severity outside the scale.
  std::uint32_t number() const { return number_; }
  ZQLE_SeverityLevel severity() const { return severity_; }
  bool isInformational() const { return severity_ == ZQLE_INFORMATIONAL; }
  bool isMinor() const { return severity_ == ZQLE_MINOR; }
  bool isMajor() const { return severity_ == ZQLE_MAJOR; }
  bool isCritical() const { return severity_ == ZQLE_CRITICAL; }
  /// Returns whether the number is the operating system's. False for no error.
  bool isOSError() const;

  /// Sets the number and the severity that the function is named after, and removes the arguments: those of an earlier
  /// error would put the wrong file name into the message of this one.
  void setInformational(std::uint32_t number) { set(number, ZQLE_INFORMATIONAL); }
  void setMinor(std::uint32_t number) { set(number, ZQLE_MINOR); }
  void setMajor(std::uint32_t number) { set(number, ZQLE_MAJOR); }
  void setCritical(std::uint32_t number) { set(number, ZQLE_CRITICAL); }
  /// Sets the number; severity and arguments are unchanged.
  void setNumber(std::uint32_t number) {
    number_ = number;
    message_.clear();
  }

  /// Appends an argument to the message: a text unchanged, a null pointer as the empty text, a number in decimal.
  /// Always returns true.
  bool addArgument(const char* argument);
  bool addArgument(std::uint32_t argument);

  /// Returns the message of the number followed by the arguments, or "Error 305419896" if neither the library nor the
  /// system has a message for it; never null. The system is asked once (`FormatMessageA`). The pointer is valid until
  /// the object is changed or destroyed.
  const char* message() const;

 private:
  void set(std::uint32_t number, ZQLE_SeverityLevel severity) { *this = ZQLastError(number, severity); }

  std::uint32_t number_ = 0;
  ZQLE_SeverityLevel severity_ = ZQLE_INFORMATIONAL;
  std::vector<string> arguments_{};
  mutable string message_{};  // the result of message(); empty until the first call
};

}  // namespace kdx

#endif  // KDXCOMMON_INHOUSE_ZQLIB_LAST_ERROR_H_
