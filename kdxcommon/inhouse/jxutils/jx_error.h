// CJxError, the result of an operation on a file, a directory or a host's address: the number that the operating system
// or its resolver gave, or no error.
//
//   if (kdx::CJxError error = file.Close(); error.IsErrorSet()) report(error.GetErrorCode());
//
// Thread rule: a plain value. Failure rule: nothing fails or throws. It tells others' failures, and an operation that
// failed always has an error set, whether the system had a number for it or not.

#ifndef KDXCOMMON_INHOUSE_JXUTILS_JX_ERROR_H_
#define KDXCOMMON_INHOUSE_JXUTILS_JX_ERROR_H_

#include <cstdint>

namespace kdx {

/// A failure's number, or none.
class CJxError {
 public:
  /// The code of a failure that the system has no number for: it failed and left its last error at 0, or it was never
  /// asked, as for a file that is not open. The one failure that bears this number on POSIX, bad flags for the
  /// resolver, can't come up here.
  static constexpr std::uint32_t kNoSystemCode = 0xFFFFFFFF;

  /// No error.
  CJxError() = default;
  /// The operating system's error `code`; 0 is no error.
  explicit CJxError(std::uint32_t code) : code_(code) {}

  /// Whether the operation failed.
  bool IsErrorSet() const { return code_ != 0; }
  /// The number of the operating system (on POSIX `errno`, or the resolver's negative one) or `kNoSystemCode`; 0
  /// without an error.
  std::uint32_t GetErrorCode() const { return code_; }

 private:
  std::uint32_t code_ = 0;
};

}  // namespace kdx

#endif  // KDXCOMMON_INHOUSE_JXUTILS_JX_ERROR_H_
