// Internal: the process-wide state of KDXLoggerTraits, for tests that need a process's first message more than once.

#ifndef KDXCOMMON_LOGGING_LOGGER_STATE_H_
#define KDXCOMMON_LOGGING_LOGGER_STATE_H_

namespace kdx {

/// Resets the cached debug level and the process's job id to the state of a process that never logged. No other thread
/// may log during the call. Nothing throws.
void forgetLoggerState();

}  // namespace kdx

#endif  // KDXCOMMON_LOGGING_LOGGER_STATE_H_
