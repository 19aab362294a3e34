// A site with applications and a directory for dumps, for the length of a test.

#ifndef KDXCOMMON_TESTING_DUMP_SITE_H_
#define KDXCOMMON_TESTING_DUMP_SITE_H_

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <set>
#include <string>

#include "kdxcommon/inhouse/embedded_site.h"
#include "kdxcommon/os/operating_system_wrapper.h"
#include "kdxcommon/testing/temporary_directory.h"

namespace kdx::testing {

/// Subclient `id` of an application type is known under the two numbers (type, id), as are its files' directory and,
/// where a test sets them, the limits. All are forgotten at the end.
class DumpSite {
 public:
  DumpSite() = default;
  DumpSite(std::uint32_t applicationType, std::uint32_t id) { add(applicationType, id); }
  ~DumpSite() {
    for (const ApplicationKey& key : keys_) {
      EmbeddedSite::current().removeApplication(key);
      EmbeddedSite::current().removeSubclient(key);
    }
    EmbeddedSite::current().removeNumber("KDX", "nDUMPFILELIMIT");
    EmbeddedSite::current().removeNumber("KDX", "nDAYSTOKEEPFAILEDJOBDUMPFILES");
  }

  void add(std::uint32_t applicationType, std::uint32_t id, std::uint32_t options = 0, bool collectsData = false) {
    addApplication(applicationType, id, collectsData);
    EmbeddedSite::current().addSubclient({applicationType, id},
                                         {.id = id, .dataCollectionOptions = options, .directory = directory.path()});
  }
  /// An application without a subclient.
  void addApplication(std::uint32_t applicationType, std::uint32_t id, bool collectsData = false) {
    keys_.insert({applicationType, id});
    EmbeddedSite::current().addApplication({applicationType, id},
                                           {.type = applicationType, .collectsData = collectsData});
  }
  void setLimit(std::uint32_t limit) { EmbeddedSite::current().setNumber("KDX", "nDUMPFILELIMIT", limit); }
  void setDays(std::uint32_t days) { EmbeddedSite::current().setNumber("KDX", "nDAYSTOKEEPFAILEDJOBDUMPFILES", days); }

  /// The names that stand in the directory.
  std::set<std::string> names() const {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(utf8Path(directory.path()))) {
      names.insert(utf8Text(entry.path().filename()));
    }
    return names;
  }

  TemporaryDirectory directory{"_\u0434\u0430\u043C\u043F\u044B \u8CC7\u6599"};  // dumps live in any script

 private:
  std::set<ApplicationKey> keys_;
};

/// A system whose clock a test sets.
class FixedClock : public os::OperatingSystemWrapper {
 public:
  std::int64_t _time64(std::int64_t* seconds) override {
    if (seconds) *seconds = now;
    return now;
  }

  /// Dates a file by this clock.
  void date(const std::string& path, std::int64_t seconds) const {
    const std::chrono::sys_seconds time{std::chrono::seconds(seconds)};
    std::filesystem::last_write_time(utf8Path(path), std::chrono::file_clock::from_sys(time));
  }

  std::int64_t now = 1'700'000'000;
};

}  // namespace kdx::testing

#endif  // KDXCOMMON_TESTING_DUMP_SITE_H_
