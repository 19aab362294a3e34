#include "kdxcommon/settings/subclient_options.h"

#include <atomic>

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

constexpr int kModeDiscovery = 0;
constexpr int kModeAnalysis = 1;

// Plain values, each stored as one; the flag comes last, so that who sees it sees the answers.
std::atomic<bool> dataCollectionOptionsCached = false;
std::atomic<bool> dataCollectionEnabled = false;
std::atomic<int> dataCollectionMode = -1;
std::atomic<bool> fileAnalyticsEnabled = false;

// These types take part whatever the property of their application type says.
bool alwaysCollectsData(int applicationType) {
  return applicationType >= 600 && applicationType <= 607;
}

struct Answers {
  bool enabled = false;
  int mode = -1;
  bool fileAnalytics = false;
};

void keep(const Answers& answers) {
  dataCollectionEnabled = answers.enabled;
  dataCollectionMode = answers.mode;
  fileAnalyticsEnabled = answers.fileAnalytics;
  dataCollectionOptionsCached.store(true, std::memory_order_release);
}

// Asks for the options of one subclient. False when a look-up failed.
bool readOptions(ApplicationId& application, Answers& answers) {
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
  answers.enabled = true;
  if (options & kOptionDiscovery) {
    answers.mode = kModeDiscovery;
    log.DebugLvl(kFunction, 2, "SC_KDX_DC_OPT_DISCOVERY is enabled");
  } else if (options & kOptionAnalysis) {
    answers.mode = kModeAnalysis;
    log.DebugLvl(kFunction, 2, "SC_KDX_DC_OPT_ANALYSIS is enabled");
  }
  if (options & kOptionFileAnalytics) {
    answers.fileAnalytics = true;
    log.DebugLvl(kFunction, 2, "SC_KDX_DC_OPT_FILEANALYTICS is enabled");
  }
  return true;
}

}  // namespace

bool getKDXSubClientOptions(bool& enabled, int& mode, bool& fileAnalytics, std::uint32_t appIdPart2,
                            std::uint32_t appIdPart1) {
  if (!dataCollectionOptionsCached.load(std::memory_order_acquire)) {
    ApplicationId application(appIdPart1, appIdPart2);
    Answers answers;
    if (!readOptions(application, answers)) return false;
    keep(answers);
  }
  enabled = dataCollectionEnabled;
  mode = dataCollectionMode;
  fileAnalytics = fileAnalyticsEnabled;
  return true;
}

void forgetSubClientOptions() {
  dataCollectionOptionsCached = false;
  dataCollectionEnabled = false;
  dataCollectionMode = -1;
  fileAnalyticsEnabled = false;
}

}  // namespace kdx
