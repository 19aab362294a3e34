// EvEvent is the log writer that an object keeps for its lifetime: an EvDebug whose job id its owner sets once, when it
// is known.
//
//   kdx::EvEvent event;
//   event.setJobId(3456);
//   event.DebugLvl("CDumpFile::markAsFailed", 2, "Enter");

#ifndef KDXCOMMON_INHOUSE_ZQLIB_EV_EVENT_H_
#define KDXCOMMON_INHOUSE_ZQLIB_EV_EVENT_H_

#include "kdxcommon/inhouse/zqbasiclib/ev_debug.h"

namespace kdx {

/// Thread safety and failures are those of EvDebug.
class KDX_EXPORT EvEvent : public EvDebug {
 public:
  EvEvent() : EvDebug(nullptr) {}
};

}  // namespace kdx

#endif  // KDXCOMMON_INHOUSE_ZQLIB_EV_EVENT_H_
