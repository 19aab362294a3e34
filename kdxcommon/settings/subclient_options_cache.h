// Internal: the cached answers of getKDXSubClientOptions, for tests that need a process's first call more than once.

#ifndef KDXCOMMON_SETTINGS_SUBCLIENT_OPTIONS_CACHE_H_
#define KDXCOMMON_SETTINGS_SUBCLIENT_OPTIONS_CACHE_H_

namespace kdx {

/// Empties the cache, as in a process that never asked.
void forgetSubClientOptions();

}  // namespace kdx

#endif  // KDXCOMMON_SETTINGS_SUBCLIENT_OPTIONS_CACHE_H_
