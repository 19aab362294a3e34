// EvEvent, the log writer that an object keeps for its life: an EvDebug whose job id is set once, when its owner learns
// it.
//
//   kdx::EvEvent event;
//   event.setJobId(3456);
//   event.DebugLvl("CDumpFile::markAsFailed", 2, "Enter");

#ifndef KDXCOMMON_INHOUSE_ZQLIB_EV_EVENT_H_
#define KDXCOMMON_INHOUSE_ZQLIB_EV_EVENT_H_

#include "kdxcommon/inhouse/zqbasiclib/ev_debug.h"

namespace kdx {

/// Thread and failure rules are those of EvDebug.
class KDX_EXPORT EvEvent : public EvDebug {
 public:
  EvEvent() : EvDebug(nullptr) {}
};

}  // namespace kdx

#endif  // KDXCOMMON_INHOUSE_ZQLIB_EV_EVENT_H_
