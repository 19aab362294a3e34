#include "kdxcommon/inhouse/embedded_site.h"

#include "kdxcommon/inhouse/zqbasiclib/held_during_forks.h"
#include "kdxcommon/sinks/debug_level.h"

namespace kdx {
namespace {

// Made when the library loads: the child of a fork would wait for ever for what another thread was still making.
[[maybe_unused]] const EmbeddedSite& madeAtLoading = EmbeddedSite::current();

constexpr int kStandardErrorDescriptor = 2;

std::shared_ptr<LineSink> standardErrorSink() {
  return std::make_shared<DescriptorLineSink>(kStandardErrorDescriptor);
}

template <typename Map>
std::optional<typename Map::mapped_type> lookUp(const Map& map, const typename Map::key_type& key) {
  const auto found = map.find(key);
  if (found == map.end()) return std::nullopt;
  return found->second;
}

}  // namespace

EmbeddedSite::EmbeddedSite() : lineSink_(standardErrorSink()) {}

EmbeddedSite& EmbeddedSite::current() {
  // Never destroyed: threads and statics of the host may log until the process is gone.
  static EmbeddedSite& site = heldDuringForks<&EmbeddedSite::lock_>(*new EmbeddedSite);
  return site;
}

void EmbeddedSite::setNumber(const string& section, const string& key, std::uint32_t value) {
  ZqCriticalSectionLock lock(&lock_);
  numbers_[{section, key}] = value;
}

void EmbeddedSite::removeNumber(const string& section, const string& key) {
  ZqCriticalSectionLock lock(&lock_);
  numbers_.erase({section, key});
}

std::optional<std::uint32_t> EmbeddedSite::number(const string& section, const string& key) const {
  ZqCriticalSectionLock lock(&lock_);
  return lookUp(numbers_, {section, key});
}

void EmbeddedSite::addApplication(const ApplicationKey& key, ApplicationRecord record) {
  ZqCriticalSectionLock lock(&lock_);
  applications_.insert_or_assign(key, record);
}

void EmbeddedSite::addSubclient(const ApplicationKey& key, SubclientRecord record) {
  ZqCriticalSectionLock lock(&lock_);
  subclients_.insert_or_assign(key, std::move(record));
}

void EmbeddedSite::removeApplication(const ApplicationKey& key) {
  ZqCriticalSectionLock lock(&lock_);
  applications_.erase(key);
}

void EmbeddedSite::removeSubclient(const ApplicationKey& key) {
  ZqCriticalSectionLock lock(&lock_);
  subclients_.erase(key);
}

std::optional<ApplicationRecord> EmbeddedSite::application(const ApplicationKey& key) const {
  ZqCriticalSectionLock lock(&lock_);
  return lookUp(applications_, key);
}

std::optional<SubclientRecord> EmbeddedSite::subclient(const ApplicationKey& key) const {
  ZqCriticalSectionLock lock(&lock_);
  return lookUp(subclients_, key);
}

void EmbeddedSite::setFocusClientName(const string& clientName) {
  ZqCriticalSectionLock lock(&lock_);
  focusClientName_ = focusClientNames_.insert(clientName).first->c_str();
}

const char* EmbeddedSite::focusClientName() const {
  ZqCriticalSectionLock lock(&lock_);
  return focusClientName_;
}

void EmbeddedSite::setClientHostName(const string& clientName, const string& hostName) {
  ZqCriticalSectionLock lock(&lock_);
  clientHostNames_.insert_or_assign(clientName, hostName);
}

void EmbeddedSite::removeClient(const string& clientName) {
  ZqCriticalSectionLock lock(&lock_);
  clientHostNames_.erase(clientName);
}

std::optional<string> EmbeddedSite::clientHostName(const string& clientName) const {
  ZqCriticalSectionLock lock(&lock_);
  return lookUp(clientHostNames_, clientName);
}

void EmbeddedSite::setClusterState(std::optional<int> state) {
  ZqCriticalSectionLock lock(&lock_);
  clusterState_ = state;
}

std::optional<int> EmbeddedSite::clusterState() const {
  ZqCriticalSectionLock lock(&lock_);
  return clusterState_;
}

void EmbeddedSite::setClusterGroup(const string& hostName, const string& groupName) {
  ZqCriticalSectionLock lock(&lock_);
  clusterGroups_.insert_or_assign(hostName, groupName);
}

void EmbeddedSite::removeClusterGroup(const string& hostName) {
  ZqCriticalSectionLock lock(&lock_);
  clusterGroups_.erase(hostName);
}

std::optional<string> EmbeddedSite::clusterGroup(const string& hostName) const {
  ZqCriticalSectionLock lock(&lock_);
  return lookUp(clusterGroups_, hostName);
}

void EmbeddedSite::setDebugLevel(int level) {
  configuredDebugLevel.store(level, std::memory_order_relaxed);
}

int EmbeddedSite::debugLevel() const {
  return configuredDebugLevel.load(std::memory_order_relaxed);
}

void EmbeddedSite::setLineSink(std::shared_ptr<LineSink> sink) {
  if (!sink) sink = standardErrorSink();
  ZqCriticalSectionLock lock(&lock_);
  lineSink_.swap(sink);  // the old one is released after the lock
}

std::shared_ptr<LineSink> EmbeddedSite::lineSink() const {
  ZqCriticalSectionLock lock(&lock_);
  return lineSink_;
}

}  // namespace kdx
