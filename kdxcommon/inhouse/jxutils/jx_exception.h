// JxException reports a caller's error that no result can report. It carries a text and the operation that found it.
//
//   try {
//     errors.setTextError(id, text, "Agent::run", severity);
//   } catch (const kdx::JxException& failure) {
//     report(failure.what(), failure.where());
//   }
//
// If the host and the library each have a C++ runtime of their own, as on Windows with the runtime linked into both,
// the host's std::uncaught_exceptions doesn't count exceptions that the library throws: catch them as above, and don't
// compare that count across a call that may throw.

#ifndef KDXCOMMON_INHOUSE_JXUTILS_JX_EXCEPTION_H_
#define KDXCOMMON_INHOUSE_JXUTILS_JX_EXCEPTION_H_

#include <stdexcept>

#include "kdxcommon/base/export.h"
#include "kdxcommon/base/string_types.h"

namespace kdx {

/// Thrown by the library and caught by its host. The constructor may throw std::bad_alloc.
class KDX_EXPORT JxException : public std::runtime_error {
 public:
  /// Copies both texts.
  JxException(const string& text, const string& where);
  ~JxException() override;

  /// Returns the text, as `what()` does.
  string text() const { return what(); }
  /// Returns the name of the operation that threw.
  const string& where() const { return where_; }

 private:
  string where_;
};

}  // namespace kdx

#endif  // KDXCOMMON_INHOUSE_JXUTILS_JX_EXCEPTION_H_
