// Reads whether a subclient's data is collected, in which mode, and whether file analytics is on. The answers come from
// the application manager and are kept for the life of the process.
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

/// Asks the application manager for the data collection options of a subclient. Note the order: the last argument is
/// the first number of the application id.
///
/// The first call that succeeds decides for the process: every later call, whatever subclient it names, returns the
/// same answers and asks nothing. Threads that ask at once, for whatever subclients, all get the answers of the one
/// that is done first.
///
/// After success `enabled` is true if data collection is on, `mode` is 0 for discovery, 1 for analysis and -1 for
/// neither, and `fileAnalytics` is true if file analytics is on. Data collection is on if the application type takes
/// part (types 600 to 607 always do, others by their property) and the subclient's option bit 0x1 is set.
///
/// Returns false, with the three outputs unchanged and a log line of level 1, if the application type or the subclient
/// can't be looked up; the next call asks again. Throws only std::bad_alloc. Thread-safe.
KDX_EXPORT bool getKDXSubClientOptions(bool& enabled, int& mode, bool& fileAnalytics, std::uint32_t appIdPart2,
                                       std::uint32_t appIdPart1);

}  // namespace kdx

#endif  // KDXCOMMON_SETTINGS_SUBCLIENT_OPTIONS_H_
