// What an installation of the component knows: its settings, its applications with their subclients, its clients and
// its cluster, its debug level and where its log goes. The in-house libraries answer from here. A host program fills it
// by calls, before its jobs start; with nothing configured, settings are absent, there is no application, no client and
// no cluster, the debug level is 0 and the log goes to the standard error stream.
//
//   kdx::EmbeddedSite& site = kdx::EmbeddedSite::current();
//   site.setNumber("KDX", "nDUMPFILELIMIT", 3);
//   site.addApplication({1, 2}, {.type = 33, .collectsData = true});
//   site.addSubclient({1, 2}, {.id = 12, .directory = "/var/lib/agent/dumps"});
//
// Thread safety: safe; each change is seen as a whole. What the site doesn't know is an empty result, anything else a
// copy. Throws only std::bad_alloc.
//
// The site is made when the library loads and is never destroyed. The child of a `fork` has a copy of it, unlocked and
// consistent whatever the parent's other threads were doing with it. Its line sink is a copy, too: a sink of the host
// that has a lock must keep that sound itself; the library's sinks have none.

#ifndef KDXCOMMON_INHOUSE_EMBEDDED_SITE_H_
#define KDXCOMMON_INHOUSE_EMBEDDED_SITE_H_

#include <compare>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <utility>

#include "kdxcommon/base/export.h"
#include "kdxcommon/base/string_types.h"
#include "kdxcommon/base/thread_annotations.h"
#include "kdxcommon/inhouse/zqbasiclib/critical_section.h"
#include "kdxcommon/sinks/line_sink.h"

namespace kdx {

/// The two numbers that stand for one subclient of one application.
struct ApplicationKey {
  std::uint32_t appIdPart1 = 0;
  std::uint32_t appIdPart2 = 0;
  auto operator<=>(const ApplicationKey&) const = default;
};

/// What the site knows of the application that a subclient belongs to.
struct ApplicationRecord {
  std::uint32_t type = 0;     ///< the application type's number
  bool collectsData = false;  ///< the application type's data collection property
};

/// What the site knows of one subclient.
struct SubclientRecord {
  std::uint32_t id = 0;                     ///< the subclient's own id; 0 is none
  std::uint32_t dataCollectionOptions = 0;  ///< its word of option bits
  string directory;                         ///< where its files live; UTF-8
};

/// The site: a process has one.
class KDX_EXPORT EmbeddedSite {
 public:
  /// Returns the site of this process.
  static EmbeddedSite& current();

  EmbeddedSite(const EmbeddedSite&) = delete;
  EmbeddedSite& operator=(const EmbeddedSite&) = delete;

  /// Settings: a number for a section and a key, set in the place of an earlier one, forgotten, and told.
  void setNumber(const string& section, const string& key, std::uint32_t value);
  void removeNumber(const string& section, const string& key);
  std::optional<std::uint32_t> number(const string& section, const string& key) const;

  /// Applications and subclients, added in the place of what `key` stood for, forgotten, and told.
  void addApplication(const ApplicationKey& key, ApplicationRecord record);
  void addSubclient(const ApplicationKey& key, SubclientRecord record);
  void removeApplication(const ApplicationKey& key);
  void removeSubclient(const ApplicationKey& key);
  std::optional<ApplicationRecord> application(const ApplicationKey& key) const;
  std::optional<SubclientRecord> subclient(const ApplicationKey& key) const;

  // Clients, hosts and the cluster. Names of clients and hosts are taken as they are, case included.

  /// The client that this process works for. A name once in focus is kept until the process ends, for those who hold
  /// it.
  void setFocusClientName(const string& clientName);
  const char* focusClientName() const;  ///< never null; empty before one is set; holds until the process ends

  /// The host that a client runs on, set in the place of an earlier one, forgotten with the client, and told.
  void setClientHostName(const string& clientName, const string& hostName);
  void removeClient(const string& clientName);
  std::optional<string> clientHostName(const string& clientName) const;

  /// Above 0 where a cluster is configured on this machine, 0 at first; none where that can't be told.
  void setClusterState(std::optional<int> state);
  std::optional<int> clusterState() const;

  /// The cluster group that a host belongs to, set in the place of an earlier one, forgotten, and told.
  void setClusterGroup(const string& hostName, const string& groupName);
  void removeClusterGroup(const string& hostName);
  std::optional<string> clusterGroup(const string& hostName) const;

  // The debug log.

  /// Messages of this level and below are written; -1 leaves failures alone, anything lower nothing. Set it before the
  /// process's first message: KDXLoggerTraits, and with it all of the library but CDumpFile and getKDXSubClientOptions,
  /// reads the level once, at its first message, and sees no later change. EvDebug and EvEvent see each change.
  void setDebugLevel(int level);
  int debugLevel() const;

  /// Where lines go from now on; null gives back the default, the standard error stream. A line under way in another
  /// thread still reaches the sink that it began with, which lives until then.
  void setLineSink(std::shared_ptr<LineSink> sink);
  std::shared_ptr<LineSink> lineSink() const;

 private:
  EmbeddedSite();
  ~EmbeddedSite() = delete;

  mutable ZqCriticalSection lock_;
  std::map<std::pair<string, string>, std::uint32_t> numbers_ KDX_GUARDED_BY(lock_);
  std::map<ApplicationKey, ApplicationRecord> applications_ KDX_GUARDED_BY(lock_);
  std::map<ApplicationKey, SubclientRecord> subclients_ KDX_GUARDED_BY(lock_);
  std::set<string> focusClientNames_ KDX_GUARDED_BY(lock_);
  const char* focusClientName_ KDX_GUARDED_BY(lock_) = "";  // one of those above
  std::map<string, string> clientHostNames_ KDX_GUARDED_BY(lock_);
  std::optional<int> clusterState_ KDX_GUARDED_BY(lock_) = 0;
  std::map<string, string> clusterGroups_ KDX_GUARDED_BY(lock_);
  std::shared_ptr<LineSink> lineSink_ KDX_GUARDED_BY(lock_);
};

}  // namespace kdx

#endif  // KDXCOMMON_INHOUSE_EMBEDDED_SITE_H_
