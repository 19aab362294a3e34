// CJxError, the result of a file or directory operation: the number that the operating system gave, or no error.
//
//   if (kdx::CJxError error = file.Close(); error.IsErrorSet()) report(error.GetErrorCode());

#ifndef KDXCOMMON_INHOUSE_JXUTILS_JX_ERROR_H_
#define KDXCOMMON_INHOUSE_JXUTILS_JX_ERROR_H_

#include <cstdint>

namespace kdx {

/// A value type; never throws.
class CJxError {
 public:
  /// No error.
  CJxError() = default;
  /// The operating system's error `code`; 0 is no error.
  explicit CJxError(std::uint32_t code) : code_(code) {}

  bool IsErrorSet() const { return code_ != 0; }
  /// The number of the operating system, 0 without an error.
  std::uint32_t GetErrorCode() const { return code_; }

 private:
  std::uint32_t code_ = 0;
};

}  // namespace kdx

#endif  // KDXCOMMON_INHOUSE_JXUTILS_JX_ERROR_H_
