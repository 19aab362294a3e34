// Internal: the debug level that the process is configured for, which the embedded site sets and the log writer reads.
// It stands here by itself so that a message that it drops costs a load and a compare, not a call for the site.

#ifndef KDXCOMMON_SINKS_DEBUG_LEVEL_H_
#define KDXCOMMON_SINKS_DEBUG_LEVEL_H_

#include <atomic>

namespace kdx {

inline constinit std::atomic<int> configuredDebugLevel{0};

}  // namespace kdx

#endif  // KDXCOMMON_SINKS_DEBUG_LEVEL_H_
