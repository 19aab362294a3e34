#include "kdxcommon/base/version.h"

namespace kdx {

const char* version() noexcept {
  return KDXCOMMON_VERSION_TEXT;
}

}  // namespace kdx
