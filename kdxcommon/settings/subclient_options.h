// Reads whether a subclient's data is collected, in which mode, and whether file analytics is on. The options come from
// the application manager and are cached for the life of the process.
//
//   bool enabled = false;
//   int mode = -1;
//   bool fileAnalytics = false;
//   if (kdx::getKDXSubClientOptions(enabled, mode, fileAnalytics, appIdPart2, appIdPart1) && enabled) collect(mode);

#ifndef KDXCOMMON_SETTINGS_SUBCLIENT_OPTIONS_H_
#define KDXCOMMON_SETTINGS_SUBCLIENT_OPTIONS_H_

#include <cstdint>

#include "kdxcommon/base/export.h"

namespace kdx {

/// Reads the data collection options of a subclient from the application manager. Note the order: the last argument is
/// the first number of the application id.
///
/// The first call that succeeds sets the cache: every later call, for any subclient, returns the same options without
/// a look-up. If threads call at the same time, for any subclients, all return the options of the thread that finishes
/// first.
///
/// After success `enabled` is true if data collection is on, `mode` is 0 for discovery, 1 for analysis and -1 for
/// neither, and `fileAnalytics` is true if file analytics is on. Data collection is on if the application type takes
/// part (types 600 to 607 always do, others by their property) and the subclient's option bit 0x1 is set.
///
/// Returns false, leaves the three outputs unchanged and logs a line of level 1 if the application type or the
/// subclient can't be looked up; the next call looks it up again. Throws only std::bad_alloc. Thread-safe.
KDX_EXPORT bool getKDXSubClientOptions(bool& enabled, int& mode, bool& fileAnalytics, std::uint32_t appIdPart2,
                                       std::uint32_t appIdPart1);

}  // namespace kdx

#endif  // KDXCOMMON_SETTINGS_SUBCLIENT_OPTIONS_H_
