// JxException: a failure that its caller could not have provided for. It carries a text and where it was noticed.
//
//   try {
//     errors.setTextError(id, text, "Agent::run", severity);
//   } catch (const kdx::JxException& failure) {
//     report(failure.what(), failure.where());
//   }
//
// Where the host and the library have a C++ runtime each, as on Windows with the runtime linked into both, the host's
// count of exceptions in flight (std::uncaught_exceptions) doesn't see those that the library throws: catch them as
// above, and don't compare that count across a call that may throw.

#ifndef KDXCOMMON_INHOUSE_JXUTILS_JX_EXCEPTION_H_
#define KDXCOMMON_INHOUSE_JXUTILS_JX_EXCEPTION_H_

#include <stdexcept>

#include "kdxcommon/base/export.h"
#include "kdxcommon/base/string_types.h"

namespace kdx {

/// May be thrown out of the library and caught by its host. Making one throws what an allocation throws.
class KDX_EXPORT JxException : public std::runtime_error {
 public:
  JxException(const string& text, const string& where);
  ~JxException() override;

  /// The text; `what()` gives the same.
  string text() const { return what(); }
  /// The operation that the thrower named.
  const string& where() const { return where_; }

 private:
  string where_;
};

}  // namespace kdx

#endif  // KDXCOMMON_INHOUSE_JXUTILS_JX_EXCEPTION_H_
