// CJxUTFOSAPI: the operating system's calls on file names, with names in UTF-8.
//
//   if (kdx::CJxUTFOSAPI::remove(path).IsErrorSet()) ...

#ifndef KDXCOMMON_INHOUSE_JXUTILS_JX_UTF_OS_API_H_
#define KDXCOMMON_INHOUSE_JXUTILS_JX_UTF_OS_API_H_

#include "kdxcommon/base/export.h"
#include "kdxcommon/inhouse/jxutils/jx_error.h"

namespace kdx {

/// Any thread may call. Each operation is `OperatingSystem`'s of the same name and gives its error number on failure.
class KDX_EXPORT CJxUTFOSAPI {
 public:
  static CJxError remove(const char* path);
  static CJxError rename(const char* from, const char* to);
};

}  // namespace kdx

#endif  // KDXCOMMON_INHOUSE_JXUTILS_JX_UTF_OS_API_H_
