// CJxError, the result of a file or directory operation: the number that the operating system gave, or no error.
//
//   if (kdx::CJxError error = file.Close(); error.IsErrorSet()) report(error.GetErrorCode());
//
// Thread rule: a plain value. Failure rule: nothing fails or throws. It tells others' failures, and an operation that
// failed always has an error set, whether the system had a number for it or not.

#ifndef KDXCOMMON_INHOUSE_JXUTILS_JX_ERROR_H_
#define KDXCOMMON_INHOUSE_JXUTILS_JX_ERROR_H_

#include <cstdint>

namespace kdx {

class CJxError {
 public:
  /// The code of a failure that the system has no number for: it failed and left its last error at 0, or it was never
  /// asked, as for a file that is not open. No system uses this number.
  static constexpr std::uint32_t kNoSystemCode = 0xFFFFFFFF;

  /// No error.
  CJxError() = default;
  /// The operating system's error `code`; 0 is no error.
  explicit CJxError(std::uint32_t code) : code_(code) {}

  bool IsErrorSet() const { return code_ != 0; }
  /// The number of the operating system (`errno` on POSIX) or `kNoSystemCode`; 0 without an error.
  std::uint32_t GetErrorCode() const { return code_; }

 private:
  std::uint32_t code_ = 0;
};

}  // namespace kdx

#endif  // KDXCOMMON_INHOUSE_JXUTILS_JX_ERROR_H_
