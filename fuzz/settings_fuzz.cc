// Sequences of settings and look-ups with any arguments, also null, empty and too long: what the in-house interfaces
// and the readers of settings return must be what simple maps hold, and an output is unchanged by what fails. The first
// two bytes of the input are the number of sequences less one.

#include <algorithm>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "choices.h"
#include "kdxcommon/dumpfile/dump_directory.h"
#include "kdxcommon/dumpfile/dump_file.h"
#include "kdxcommon/inhouse/clusterutils/cluster.h"
#include "kdxcommon/inhouse/embedded_site.h"
#include "kdxcommon/inhouse/jxnetwork/jx_ip_addr.h"
#include "kdxcommon/inhouse/jxutils/jx_directory.h"
#include "kdxcommon/inhouse/zqappmgr/application_id.h"
#include "kdxcommon/inhouse/zqbasiclib/platform_info.h"
#include "kdxcommon/inhouse/zqlib/ev_event.h"
#include "kdxcommon/inhouse/zqlib/utf_conversion.h"
#include "kdxcommon/inhouse/zqutils/subclient_dir.h"
#include "kdxcommon/settings/subclient_options.h"
#include "kdxcommon/settings/subclient_options_cache.h"

namespace {

using kdx::ApplicationKey;
using kdx::EmbeddedSite;
using kdx::testing::Choices;
using kdx::testing::require;

constexpr const char* kNames[] = {nullptr, "", "KDX", "nDUMPFILELIMIT", "nDAYSTOKEEPFAILEDJOBDUMPFILES", "kdx"};
constexpr std::uint32_t kTypes[] = {0, 11, 12, 33, 599, 600, 607, 608, 0xFFFFFFFF};
constexpr std::uint32_t kNumbers[] = {0, 1, 2, 0x101, 0x201, 0x311, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF};
constexpr kdx::ZQBkpLevel kJobTypes[] = {kdx::ITERATION_JOB, kdx::DISCOVERY_JOB, kdx::ZQBkpLevel{}};
constexpr std::int64_t kIds[] = {INT64_MIN, -2, -1, 0, 1, 2, INT64_MAX};
constexpr std::size_t kLengths[] = {0, 1, 5, 1022, 1023, 1024, 1025, 3000};

template <typename Map, typename Key>
std::optional<typename Map::mapped_type> lookUp(const Map& map, const Key& key) {
  const auto found = map.find(key);
  return found == map.end() ? std::nullopt : std::optional(found->second);
}

std::string orEmpty(const char* name) {
  return name ? name : "";
}

class CountingSink : public kdx::LineSink {
 public:
  void write(const kdx::LogRecord&) override { ++lines; }
  int lines = 0;
};

// The site, and maps that must hold the same. All settings are removed at the end.
class Settings {
 public:
  explicit Settings(Choices& choices) : choices_(choices) {
    site_.setLineSink(sink_);
    site_.setClusterState(0);
    site_.setFocusClientName("");
    kdx::forgetSubClientOptions();
  }
  ~Settings() {
    for (const auto& [key, number] : numbers_) site_.removeNumber(key.first, key.second);
    for (const auto& [key, record] : applications_) site_.removeApplication(key);
    for (const auto& [key, record] : subclients_) site_.removeSubclient(key);
    for (const auto& [client, host] : hosts_) site_.removeClient(client);
    for (const auto& [host, group] : groups_) site_.removeClusterGroup(host);
    site_.setDebugLevel(0);
  }
  Settings(const Settings&) = delete;
  Settings& operator=(const Settings&) = delete;

  void change() {
    const bool removes = choices_.below(4) == 0;
    switch (choices_.below(7)) {
      case 0:
        return changeNumber(removes);
      case 1:
        return changeApplication(removes);
      case 2:
        return changeSubclient(removes);
      case 3:
        return changeText(removes, hosts_, &EmbeddedSite::setClientHostName, &EmbeddedSite::removeClient);
      case 4:
        return changeText(removes, groups_, &EmbeddedSite::setClusterGroup, &EmbeddedSite::removeClusterGroup);
      case 5:
        state_ = removes ? std::nullopt : std::optional(static_cast<int>(choices_.below(3)) - 1);
        return site_.setClusterState(state_);
      default:
        level_ = static_cast<int>(choices_.below(7)) - 2;
        return site_.setDebugLevel(level_);
    }
  }

  void compare() {
    compareNumber();
    compareApplication();
    compareTexts();
    compareCluster();
    compareLevel();
    compareDump();
    compareOptions();
  }

 private:
  ApplicationKey key() { return {7, choices_.among(kNumbers) % 3}; }
  std::string name() { return orEmpty(choices_.among(kNames)); }
  std::string text() { return std::string(choices_.among(kLengths), 'd'); }

  void changeNumber(bool removes) {
    const std::pair<std::string, std::string> at{name(), name()};
    if (removes) {
      numbers_.erase(at);
      return site_.removeNumber(at.first, at.second);
    }
    site_.setNumber(at.first, at.second, numbers_[at] = choices_.among(kNumbers));
  }

  void changeApplication(bool removes) {
    const ApplicationKey at = key();
    if (removes) {
      applications_.erase(at);
      return site_.removeApplication(at);
    }
    site_.addApplication(at, applications_[at] = {choices_.among(kTypes), choices_.below(2) == 0});
  }

  void changeSubclient(bool removes) {
    const ApplicationKey at = key();
    if (removes) {
      subclients_.erase(at);
      return site_.removeSubclient(at);
    }
    site_.addSubclient(at, subclients_[at] = {choices_.among(kNumbers), choices_.among(kNumbers), text()});
  }

  using Texts = std::map<std::string, std::string>;
  void changeText(bool removes, Texts& texts, void (EmbeddedSite::*set)(const std::string&, const std::string&),
                  void (EmbeddedSite::*remove)(const std::string&)) {
    const std::string at = name();
    if (removes) {
      texts.erase(at);
      return (site_.*remove)(at);
    }
    (site_.*set)(at, texts[at] = text());
  }

  void compareNumber() {
    const char* section = choices_.among(kNames);
    const char* key = choices_.among(kNames);
    const auto expected = lookUp(numbers_, std::pair(orEmpty(section), orEmpty(key)));
    std::uint32_t number = 77;
    const bool found = kdx::ZQPlatformInfo().getNumber(section, key, &number) != 0;
    require(found == expected.has_value() && number == expected.value_or(77), "a number");
    require(site_.number(orEmpty(section), orEmpty(key)) == expected, "a number of the site");
  }

  // Whatever `copy` does with a buffer of `size` bytes, it holds the text if that fits, and is unchanged otherwise.
  template <typename Copy>
  static void compareCopy(const std::optional<std::string>& text, std::size_t size, const Copy& copy) {
    std::vector<char> buffer(size, '?');  // a sanitizer detects what is written beyond it
    const bool fits = text && text->size() < size;
    require(copy(buffer.data()) == fits, "whether a text fits");
    const std::string expected = fits ? *text + '\0' : std::string();
    require(std::equal(expected.begin(), expected.end(), buffer.begin()), "a copied text");
    for (std::size_t i = expected.size(); i != size; ++i) require(buffer[i] == '?', "a buffer that is unchanged");
  }

  void compareTexts() {
    const char* client = choices_.among(kNames);
    const std::size_t size = choices_.among(kLengths);
    compareCopy(lookUp(hosts_, orEmpty(client)), size, [&](char* buffer) {
      return kdx::ZQPlatformInfo().getClientHostName(client, buffer, static_cast<std::uint32_t>(size)) != 0;
    });
    const std::string host = name();
    compareCopy(lookUp(groups_, host), kdx::kClusterGroupNameSize,
                [&](char* buffer) { return kdx::IsGetGroupNameFromFQDN(host.c_str(), buffer) != 0; });
    const ApplicationKey at = key();
    const auto subclient = lookUp(subclients_, at);
    compareCopy(subclient ? std::optional(subclient->directory) : std::nullopt, kdx::kSubclientDirSize,
                [&](char* buffer) { return kdx::GetSubclientDir(at.appIdPart1, at.appIdPart2, buffer) == 0; });
    const char* former = site_.focusClientName();
    const std::string focus = former, next = name();
    site_.setFocusClientName(next);
    require(former == focus && site_.focusClientName() == next, "the names of the client");
  }

  void compareCluster() {
    int state = 77;
    require((kdx::IsMachineClusterConfigured(&state) != 0) == state_.has_value(), "whether a cluster is known");
    require(state == state_.value_or(77), "the state of the cluster");
  }

  void compareApplication() {
    const ApplicationKey at = key();
    kdx::ApplicationId id(at.appIdPart1, at.appIdPart2);
    const auto application = lookUp(applications_, at);
    std::uint32_t type = 77;
    require((id.getAppType(type, nullptr) == 0) == application.has_value(), "whether a type is known");
    require(type == (application ? application->type : 77), "a type");
    require((id.getApplicationType(nullptr) != nullptr) == application.has_value(), "an application");
    const kdx::Subclient* subclient = id.getSubclient(nullptr);
    require((subclient != nullptr) == subclients_.contains(at), "a subclient");
    require(!subclient || subclient->id() == subclients_[at].id, "a subclient's id");
  }

  void compareLevel() {
    const int level = static_cast<int>(choices_.below(7)) - 2, before = sink_->lines;
    kdx::EvEvent().DebugLvl(choices_.among(kNames), level, "%s", "text");
    require(sink_->lines - before == (level <= level_), "whether a line is written");
  }

  // A dump is initialised by arguments and settings that are all in range.
  void compareDump() {
    constexpr std::uint32_t kDumped[] = {11, 33, 600, 607};
    const ApplicationKey at = key();
    const auto type = choices_.among(kJobTypes);
    const std::int64_t job = choices_.among(kIds), iteration = choices_.among(kIds);
    const auto application = lookUp(applications_, at);
    const auto subclient = lookUp(subclients_, at);
    bool hasDumps = false;
    for (const std::uint32_t dumped : kDumped) hasDumps = hasDumps || (application && application->type == dumped);
    const bool initialised = (type == kdx::ITERATION_JOB || type == kdx::DISCOVERY_JOB) && hasDumps && subclient &&
                             subclient->id > 0 && job >= 1 && iteration >= -1 && !subclient->directory.empty() &&
                             subclient->directory.size() < kdx::kSubclientDirSize;
    kdx::CDumpFile dump(type, at.appIdPart1, at.appIdPart2, job, iteration);
    const std::string path = dump.getFullName();
    require(path.empty() == !initialised, "whether a dump is initialised");
    if (initialised) {
      const auto parts = kdx::parseDumpName(dump.GetName());
      const bool iterates = type == kdx::ITERATION_JOB;
      require(path.ends_with(dump.GetName()) && path.starts_with(subclient->directory), "a dump's path");
      require(parts && parts->jobId == job && parts->itrId == (iterates ? iteration : 0), "the ids in a dump's name");
      require(parts->scId == subclient->id && parts->jobType == type, "a dump's series");
    }
    const auto limit = lookUp(numbers_, std::pair<std::string, std::string>("KDX", "nDUMPFILELIMIT"));
    const auto days = lookUp(numbers_, std::pair<std::string, std::string>("KDX", "nDAYSTOKEEPFAILEDJOBDUMPFILES"));
    require(dump.getDumpFileLimit() == limit.value_or(1), "the limit of dumps");
    require(dump.getDaysToKeepFailedJobDumpFiles() == days.value_or(30), "the limit of days");
  }

  void compareOptions() {
    struct Options {
      bool enabled = false;
      int mode = -1;
      bool analyses = false;
      bool operator==(const Options&) const = default;
    };
    if (choices_.below(3) == 0) kdx::forgetSubClientOptions(), cached_.reset();
    const ApplicationKey at = key();
    const auto application = lookUp(applications_, at);
    const auto subclient = lookUp(subclients_, at);
    const bool takesPart =
        application && (application->collectsData || (application->type >= 600 && application->type <= 607));
    if (!cached_ && application && (!takesPart || subclient))
      cached_ = takesPart ? subclient->dataCollectionOptions : 0;
    Options expected{.enabled = true, .mode = 77, .analyses = true};
    if (cached_) expected = {};
    if (cached_ && *cached_ & 1) {
      expected = {true, *cached_ & 0x200 ? 0 : *cached_ & 0x100 ? 1 : -1, (*cached_ & 0x10) != 0};
    }
    Options read{.enabled = true, .mode = 77, .analyses = true};
    const bool known =
        kdx::getKDXSubClientOptions(read.enabled, read.mode, read.analyses, at.appIdPart2, at.appIdPart1);
    require(known == cached_.has_value() && read == expected, "the options of a subclient");
  }

  Choices& choices_;
  EmbeddedSite& site_ = EmbeddedSite::current();
  const std::shared_ptr<CountingSink> sink_ = std::make_shared<CountingSink>();
  int level_ = site_.debugLevel();
  std::map<std::pair<std::string, std::string>, std::uint32_t> numbers_;
  std::map<ApplicationKey, kdx::ApplicationRecord> applications_;
  std::map<ApplicationKey, kdx::SubclientRecord> subclients_;
  Texts hosts_, groups_;
  std::optional<int> state_ = 0;
  std::optional<std::uint32_t> cached_;  // the options of the first call that succeeded
};

// Arguments that are missing.
void refuseNothing() {
  std::vector<kdx::CJxIPAddr> addresses(1);
  kdx::CJxString text("before");
  require(kdx::CJxIPAddr::GetAllByName(nullptr, addresses, kdx::IP_FAMILY_ANY).IsErrorSet(), "a host without a name");
  require(addresses.size() == 1 && addresses[0].GetAddressString(text).IsErrorSet(), "an empty address");
  kdx::CJxDirectory directory;
  kdx::SJxDirEntry entry;
  bool end = false;
  require(directory.GetEntry(&entry, end).IsErrorSet() && !end, "an entry of no directory");
  require(!directory.Open(".", nullptr, false).IsErrorSet(), "a directory without a pattern");
  require(directory.GetEntry(nullptr, end).IsErrorSet() && !end, "no entry");
  require(!directory.GetEntry(&entry, end).IsErrorSet() && end, "no name that no pattern matches");
  require(!directory.Close().IsErrorSet() && directory.Close().IsErrorSet(), "a directory that is closed");
  require(directory.GetEntry(&entry, end).IsErrorSet(), "an entry of a closed directory");
  kdx::CJxFile file;
  const kdx::CJxFile& itself = file;
  require(file.Write("x", 1, nullptr).IsErrorSet() && (file = itself).Close().IsErrorSet(), "a file that isn't open");
  require(kdx::CJxFile::GetTimes(".", nullptr, nullptr, nullptr).IsErrorSet() || end, "times for nobody");
  kdx::string utf8;
  require(kdx::WideChar2UTF8String(kdx::wstring(3, 'w').c_str(), utf8) == 1 && utf8 == "www", "a wide C string");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  refuseNothing();
  kdx::testing::repeat(data, size, [](Choices& choices) {
    Settings settings(choices);
    for (std::size_t steps = choices.below(60); steps > 0; --steps) {
      settings.change();
      settings.compare();
    }
  });
  return 0;
}
