// CJxUTFOSAPI makes the operating system's calls on file names, in UTF-8.
//
//   if (kdx::CJxUTFOSAPI::remove(path).IsErrorSet()) ...
//
// Thread-safe. A failed operation returns the system's error number, or CJxError::kNoSystemCode if the system has none.
// A null name is an invalid argument. Nothing throws.

#ifndef KDXCOMMON_INHOUSE_JXUTILS_JX_UTF_OS_API_H_
#define KDXCOMMON_INHOUSE_JXUTILS_JX_UTF_OS_API_H_

#include "kdxcommon/base/export.h"
#include "kdxcommon/inhouse/jxutils/jx_error.h"

namespace kdx {

/// Static calls on file names.
class KDX_EXPORT CJxUTFOSAPI {
 public:
  /// Removes the name of a file or link, never of a directory (`OperatingSystem::remove`).
  static CJxError remove(const char* path);

  /// Renames the file `from` to `to` (`OperatingSystem::rename`). Its content and modification time don't change. If
  /// `to` exists, POSIX replaces it and Windows fails: remove it first.
  static CJxError rename(const char* from, const char* to);
};

}  // namespace kdx

#endif  // KDXCOMMON_INHOUSE_JXUTILS_JX_UTF_OS_API_H_
