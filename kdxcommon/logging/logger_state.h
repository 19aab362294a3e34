// Internal: the process-wide state of KDXLoggerTraits, for tests that need a process's first message more than once.

#ifndef KDXCOMMON_LOGGING_LOGGER_STATE_H_
#define KDXCOMMON_LOGGING_LOGGER_STATE_H_

namespace kdx {

/// Brings the cached debug level and the default job id back to the state of a process that never logged. No other
/// thread may log meanwhile.
void forgetLoggerState();

}  // namespace kdx

#endif  // KDXCOMMON_LOGGING_LOGGER_STATE_H_
