#include "kdxcommon/settings/subclient_options.h"

#include <atomic>
#include <cstdint>

#include "kdxcommon/inhouse/zqappmgr/application_id.h"
#include "kdxcommon/inhouse/zqlib/ev_event.h"
#include "kdxcommon/settings/subclient_options_cache.h"

namespace kdx {
namespace {

constexpr char kFunction[] = "getKDXSubClientOptions";

constexpr std::uint32_t kOptionEnabled = 0x1;
constexpr std::uint32_t kOptionFileAnalytics = 0x10;
constexpr std::uint32_t kOptionAnalysis = 0x100;
constexpr std::uint32_t kOptionDiscovery = 0x200;

enum Mode : std::int8_t { kModeNone = -1, kModeDiscovery = 0, kModeAnalysis = 1 };

// What the process keeps: one atomic value, so that every thread sees the answers of one subclient and no mixture.
struct alignas(std::uint32_t) KeptOptions {
  bool dataCollectionOptionsCached = false;
  bool dataCollectionEnabled = false;
  bool fileAnalyticsEnabled = false;
  Mode dataCollectionMode = kModeNone;
};
constinit std::atomic<KeptOptions> keptOptions;
static_assert(decltype(keptOptions)::is_always_lock_free);

// These types take part whatever the property of their application type says.
bool alwaysCollectsData(int applicationType) {
  return applicationType >= 600 && applicationType <= 607;
}

// Asks for the options of one subclient. Returns false if a look-up failed.
bool readOptions(ApplicationId application, KeptOptions& kept) {
  EvEvent log;
  const ZQApplicationType* type = application.getApplicationType(nullptr);
  if (!type) {
    log.DebugLvl(kFunction, 1, "AppType Property  lookup (getApplicationType) Failed");
    return false;
  }
  bool collectsData = false;
  type->isKDXdataCollectionEnabled(collectsData, nullptr);
  const int number = type->number();
  log.DebugLvl(kFunction, 1, "AppType Property  lookup (isKDXdataCollectionEnabled) returned [%d]", collectsData);
  if (!collectsData && !alwaysCollectsData(number)) return true;

  const Subclient* subclient = application.getSubclient(nullptr);
  if (!subclient) {
    log.DebugLvl(kFunction, 1, "App Manager init Failed");
    return false;
  }
  std::uint32_t options = 0;
  subclient->getKDXDataCollectionOptions(options, nullptr);
  if (!(options & kOptionEnabled)) return true;

  log.DebugLvl(kFunction, 2, "KDX DC _OPT_ENABLED = true");
  kept.dataCollectionEnabled = true;
  if (options & kOptionDiscovery) {
    kept.dataCollectionMode = kModeDiscovery;
    log.DebugLvl(kFunction, 2, "SC_KDX_DC_OPT_DISCOVERY is enabled");
  } else if (options & kOptionAnalysis) {
    kept.dataCollectionMode = kModeAnalysis;
    log.DebugLvl(kFunction, 2, "SC_KDX_DC_OPT_ANALYSIS is enabled");
  }
  if (options & kOptionFileAnalytics) {
    kept.fileAnalyticsEnabled = true;
    log.DebugLvl(kFunction, 2, "SC_KDX_DC_OPT_FILEANALYTICS is enabled");
  }
  return true;
}

}  // namespace

bool getKDXSubClientOptions(bool& enabled, int& mode, bool& fileAnalytics, std::uint32_t appIdPart2,
                            std::uint32_t appIdPart1) {
  KeptOptions kept = keptOptions;
  if (!kept.dataCollectionOptionsCached) {
    KeptOptions read{.dataCollectionOptionsCached = true};
    if (!readOptions(ApplicationId(appIdPart1, appIdPart2), read)) return false;
    // A thread that was faster has decided: `kept` is then what it stored.
    if (keptOptions.compare_exchange_strong(kept, read)) kept = read;
  }
  enabled = kept.dataCollectionEnabled;
  mode = kept.dataCollectionMode;
  fileAnalytics = kept.fileAnalyticsEnabled;
  return true;
}

void forgetSubClientOptions() {
  keptOptions = KeptOptions();
}

}  // namespace kdx
