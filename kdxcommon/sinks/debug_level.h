// Internal: the configured debug level of the process, which the embedded site sets and the log writer reads. It is a
// variable of its own so that a dropped message costs a load and a compare, not a call to the site. Thread-safe.

#ifndef KDXCOMMON_SINKS_DEBUG_LEVEL_H_
#define KDXCOMMON_SINKS_DEBUG_LEVEL_H_

#include <atomic>

namespace kdx {

inline constinit std::atomic<int> configuredDebugLevel{0};

}  // namespace kdx

#endif  // KDXCOMMON_SINKS_DEBUG_LEVEL_H_
