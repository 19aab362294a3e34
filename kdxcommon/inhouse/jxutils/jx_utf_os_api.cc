#include "kdxcommon/inhouse/jxutils/jx_utf_os_api.h"

#include "kdxcommon/inhouse/jxutils/system_error.h"
#include "kdxcommon/os/operating_system.h"

namespace kdx {

CJxError CJxUTFOSAPI::remove(const char* path) {
  return errorUnless(os::OperatingSystem::current().remove(path) == 0);
}

CJxError CJxUTFOSAPI::rename(const char* from, const char* to) {
  return errorUnless(os::OperatingSystem::current().rename(from, to) == 0);
}

}  // namespace kdx
