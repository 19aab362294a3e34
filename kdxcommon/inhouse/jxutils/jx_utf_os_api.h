// CJxUTFOSAPI: the operating system's calls on file names, with names in UTF-8.
//
//   if (kdx::CJxUTFOSAPI::remove(path).IsErrorSet()) ...
//
// Thread rule: any thread may call. Failure rule: a failed operation gives the system's error number, or
// CJxError::kNoSystemCode where the system has none; a null name is a bad argument. Nothing throws.

#ifndef KDXCOMMON_INHOUSE_JXUTILS_JX_UTF_OS_API_H_
#define KDXCOMMON_INHOUSE_JXUTILS_JX_UTF_OS_API_H_

#include "kdxcommon/base/export.h"
#include "kdxcommon/inhouse/jxutils/jx_error.h"

namespace kdx {

class KDX_EXPORT CJxUTFOSAPI {
 public:
  /// Removes the name of a file or link, never of a directory (`OperatingSystem::remove`).
  static CJxError remove(const char* path);

  /// Gives the file `from` the name `to` (`OperatingSystem::rename`). Its content and its modification time stay. A
  /// file that has the name `to` already is replaced on POSIX and stands in the way on Windows: remove it first.
  static CJxError rename(const char* from, const char* to);
};

}  // namespace kdx

#endif  // KDXCOMMON_INHOUSE_JXUTILS_JX_UTF_OS_API_H_
