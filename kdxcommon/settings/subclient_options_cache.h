// Internal: the cached options of getKDXSubClientOptions, for tests that need a process's first call more than once.

#ifndef KDXCOMMON_SETTINGS_SUBCLIENT_OPTIONS_CACHE_H_
#define KDXCOMMON_SETTINGS_SUBCLIENT_OPTIONS_CACHE_H_

namespace kdx {

/// Clears the cache, as in a process before the first call. Thread-safe. Nothing throws.
void forgetSubClientOptions();

}  // namespace kdx

#endif  // KDXCOMMON_SETTINGS_SUBCLIENT_OPTIONS_CACHE_H_
