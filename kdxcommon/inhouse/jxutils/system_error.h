// Internal to the library: how the in-house classes report a call of the operating system that failed.

#ifndef KDXCOMMON_INHOUSE_JXUTILS_SYSTEM_ERROR_H_
#define KDXCOMMON_INHOUSE_JXUTILS_SYSTEM_ERROR_H_

#include "kdxcommon/inhouse/jxutils/jx_error.h"
#include "kdxcommon/os/operating_system.h"

namespace kdx {

/// The error of the call that has just failed on this thread. Always an error, even if the system's last error is 0.
inline CJxError lastSystemError() {
  const std::uint32_t code = os::OperatingSystem::current().GetLastError();
  return CJxError(code != 0 ? code : CJxError::kNoSystemCode);
}

/// No error if `succeeded`, else that of the call that has just failed.
inline CJxError errorUnless(bool succeeded) {
  return succeeded ? CJxError() : lastSystemError();
}

}  // namespace kdx

#endif  // KDXCOMMON_INHOUSE_JXUTILS_SYSTEM_ERROR_H_
