#include "kdxcommon/inhouse/embedded_site.h"

namespace kdx {
namespace {

constexpr int kStandardErrorDescriptor = 2;

std::shared_ptr<LineSink> standardErrorSink() {
  return std::make_shared<DescriptorLineSink>(kStandardErrorDescriptor);
}

}  // namespace

EmbeddedSite::EmbeddedSite() : lineSink_(standardErrorSink()) {}

EmbeddedSite::~EmbeddedSite() = default;

EmbeddedSite& EmbeddedSite::current() {
  static EmbeddedSite site;
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
  const auto found = numbers_.find({section, key});
  if (found == numbers_.end()) return std::nullopt;
  return found->second;
}

void EmbeddedSite::addSubclient(const SubclientKey& key, SubclientRecord record) {
  ZqCriticalSectionLock lock(&lock_);
  subclients_.insert_or_assign(key, std::move(record));
}

void EmbeddedSite::removeSubclient(const SubclientKey& key) {
  ZqCriticalSectionLock lock(&lock_);
  subclients_.erase(key);
}

std::optional<SubclientRecord> EmbeddedSite::subclient(const SubclientKey& key) const {
  ZqCriticalSectionLock lock(&lock_);
  const auto found = subclients_.find(key);
  if (found == subclients_.end()) return std::nullopt;
  return found->second;
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
