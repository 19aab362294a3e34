// ZQLastError: an error as a number, with a severity and the arguments of its text.
//
//   kdx::ZQLastError error(0x56000004, kdx::ZQLE_MAJOR);
//   error.addArgument("jobs.xml");
//   std::puts(error.message());   // File not found: jobs.xml
//
// The library's own numbers are the four constants below and the family 0x16xxxxxx of database outcomes, with texts of
// its own; 0 is no error, and every other number is the operating system's, whose text is the system's. A value type:
// one thread at a time. Nothing throws but an allocation.

#ifndef KDXCOMMON_INHOUSE_ZQLIB_LAST_ERROR_H_
#define KDXCOMMON_INHOUSE_ZQLIB_LAST_ERROR_H_

#include <cstdint>
#include <vector>

#include "kdxcommon/base/export.h"
#include "kdxcommon/base/string_types.h"

namespace kdx {

/// How grave an error is. Other numbers are kept as they come.
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

  /// Back to no error.
  void clear() { *this = ZQLastError(); }

  /// What the error is. The four tests of severity are all false for one outside the scale.
  std::uint32_t number() const { return number_; }
  ZQLE_SeverityLevel severity() const { return severity_; }
  bool isInformational() const { return severity_ == ZQLE_INFORMATIONAL; }
  bool isMinor() const { return severity_ == ZQLE_MINOR; }
  bool isMajor() const { return severity_ == ZQLE_MAJOR; }
  bool isCritical() const { return severity_ == ZQLE_CRITICAL; }
  /// Whether the number is the operating system's. False for no error.
  bool isOSError() const;

  /// Each sets the number and the severity of its name, without arguments: those of an earlier error would tell a
  /// reader of this one's text the wrong file.
  void setInformational(std::uint32_t number) { set(number, ZQLE_INFORMATIONAL); }
  void setMinor(std::uint32_t number) { set(number, ZQLE_MINOR); }
  void setMajor(std::uint32_t number) { set(number, ZQLE_MAJOR); }
  void setCritical(std::uint32_t number) { set(number, ZQLE_CRITICAL); }
  /// Sets the number alone: severity and arguments stay.
  void setNumber(std::uint32_t number) {
    number_ = number;
    message_.clear();
  }

  /// Adds one argument for the text of the number: a text as it is, null as the empty one, a number in decimal. Gives
  /// true.
  bool addArgument(const char* argument);
  bool addArgument(std::uint32_t argument);

  /// The text of the number with the arguments behind it, "Error 305419896" where nobody has one; never null. The
  /// system is asked once. Holds until this object changes or goes.
  const char* message() const;

 private:
  void set(std::uint32_t number, ZQLE_SeverityLevel severity) { *this = ZQLastError(number, severity); }

  std::uint32_t number_ = 0;
  ZQLE_SeverityLevel severity_ = ZQLE_INFORMATIONAL;
  std::vector<string> arguments_;
  mutable string message_;  // what message() gives; empty until it is asked for
};

}  // namespace kdx

#endif  // KDXCOMMON_INHOUSE_ZQLIB_LAST_ERROR_H_
