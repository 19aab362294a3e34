// ZQPI_Focus: the client that this process works for. Any thread may ask.
//
//   std::printf("working for %s\n", kdx::ZQPI_Focus::getFocusClientName(true));

#ifndef KDXCOMMON_INHOUSE_ZQFOCUS_FOCUS_H_
#define KDXCOMMON_INHOUSE_ZQFOCUS_FOCUS_H_

#include "kdxcommon/base/export.h"

namespace kdx {

class KDX_EXPORT ZQPI_Focus {
 public:
  /// The name of the client in focus, as the embedded site has it; the empty text without one. It is the same text for
  /// either argument, is never null and holds until the process ends.
  static const char* getFocusClientName(bool);
};

}  // namespace kdx

#endif  // KDXCOMMON_INHOUSE_ZQFOCUS_FOCUS_H_
