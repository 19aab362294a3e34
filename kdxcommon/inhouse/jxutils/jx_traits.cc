#include "kdxcommon/inhouse/jxutils/jx_traits.h"

namespace kdx {

JxLoggerTraits::~JxLoggerTraits() = default;
JxErrorTraits::~JxErrorTraits() = default;
JxCriticalSectionTraits::~JxCriticalSectionTraits() = default;

}  // namespace kdx
