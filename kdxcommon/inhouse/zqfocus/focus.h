// ZQPI_Focus names the client that this process works for.
//
//   std::printf("working for %s\n", kdx::ZQPI_Focus::getFocusClientName(true));

#ifndef KDXCOMMON_INHOUSE_ZQFOCUS_FOCUS_H_
#define KDXCOMMON_INHOUSE_ZQFOCUS_FOCUS_H_

#include "kdxcommon/base/export.h"

namespace kdx {

/// The client in focus. Thread-safe; nothing fails or throws.
class KDX_EXPORT ZQPI_Focus {
 public:
  /// Returns the name of the client in focus from the embedded site, or the empty text if there is none; never null.
  /// The argument is ignored. The pointer is valid until the process ends.
  static const char* getFocusClientName(bool);
};

}  // namespace kdx

#endif  // KDXCOMMON_INHOUSE_ZQFOCUS_FOCUS_H_
