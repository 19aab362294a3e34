// CJxError is the result of an operation on a file, a directory or a host's address: the error number of the operating
// system or its resolver, or no error.
//
//   if (kdx::CJxError error = file.Close(); error.IsErrorSet()) report(error.GetErrorCode());
//
// A plain value; nothing throws. An operation that failed always sets an error, whether or not the system has a number
// for it.

#ifndef KDXCOMMON_INHOUSE_JXUTILS_JX_ERROR_H_
#define KDXCOMMON_INHOUSE_JXUTILS_JX_ERROR_H_

#include <cstdint>

namespace kdx {

/// The error number of an operation, or none.
class CJxError {
 public:
  /// The code of a failure without a number of the system: the system failed and left its last error at 0, or it was
  /// not called, as for a file that is not open. On POSIX the resolver's code for bad flags has this number, too; no
  /// operation of the library can cause it.
  static constexpr std::uint32_t kNoSystemCode = 0xFFFFFFFF;

  /// No error.
  CJxError() = default;
  /// The error `code` of the operating system; 0 is no error.
  explicit CJxError(std::uint32_t code) : code_(code) {}

  /// Returns whether the operation failed.
  bool IsErrorSet() const { return code_ != 0; }
  /// Returns the number of the operating system (on POSIX `errno`, or the resolver's negative code) or `kNoSystemCode`;
  /// 0 if there is no error.
  std::uint32_t GetErrorCode() const { return code_; }

 private:
  std::uint32_t code_ = 0;
};

}  // namespace kdx

#endif  // KDXCOMMON_INHOUSE_JXUTILS_JX_ERROR_H_
