// EmbeddedSite: the data of an installation of the component: its settings, its applications with their subclients, its
// clients and its cluster, its debug level and the destination of its log. The in-house libraries read them from here.
// A host program sets them by calls, before its jobs start. By default there are no settings, no application, no client
// and no cluster, the debug level is 0 and the log goes to the standard error stream.
//
//   kdx::EmbeddedSite& site = kdx::EmbeddedSite::current();
//   site.setNumber("KDX", "nDUMPFILELIMIT", 3);
//   site.addApplication({1, 2}, {.type = 33, .collectsData = true});
//   site.addSubclient({1, 2}, {.id = 12, .directory = "/var/lib/agent/dumps"});
//
// Thread-safe; each change is atomic. A look-up returns a copy, or an empty optional if the site has no such record.
// Throws only std::bad_alloc.
//
// The site is initialised when the library loads and is never destroyed. The child of a `fork` has a copy of it,
// unlocked and consistent whatever the parent's other threads were doing with it. Its line sink is a copy, too: a sink
// of the host that has a lock must handle forks itself; the library's sinks do so.

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

/// The two numbers that identify one subclient of one application.
struct ApplicationKey {
  std::uint32_t appIdPart1 = 0;  ///< the first number
  std::uint32_t appIdPart2 = 0;  ///< the second number
  auto operator<=>(const ApplicationKey&) const = default;
};

/// The site's record of the application that a subclient belongs to.
struct ApplicationRecord {
  std::uint32_t type = 0;     ///< the application type's number
  bool collectsData = false;  ///< the application type's data collection property
};

/// The site's record of one subclient.
struct SubclientRecord {
  std::uint32_t id = 0;                     ///< the subclient's own id; 0 is none
  std::uint32_t dataCollectionOptions = 0;  ///< a set of option bits
  string directory;                         ///< the directory of its files, in UTF-8
};

/// The site. There is one for each process.
class KDX_EXPORT EmbeddedSite {
 public:
  /// Returns the site of this process.
  static EmbeddedSite& current();

  EmbeddedSite(const EmbeddedSite&) = delete;
  EmbeddedSite& operator=(const EmbeddedSite&) = delete;

  /// Settings. Set the number of a section and a key and replace an earlier one; remove it, a no-op if there is none;
  /// return it.
  void setNumber(const string& section, const string& key, std::uint32_t value);
  void removeNumber(const string& section, const string& key);
  std::optional<std::uint32_t> number(const string& section, const string& key) const;

  /// Applications and subclients. Add the record of `key` and replace an earlier one; remove it, a no-op if there is
  /// none; return it.
  void addApplication(const ApplicationKey& key, ApplicationRecord record);
  void addSubclient(const ApplicationKey& key, SubclientRecord record);
  void removeApplication(const ApplicationKey& key);
  void removeSubclient(const ApplicationKey& key);
  std::optional<ApplicationRecord> application(const ApplicationKey& key) const;
  std::optional<SubclientRecord> subclient(const ApplicationKey& key) const;

  // Clients, hosts and the cluster. Names of clients and hosts are compared exactly, case included.

  /// Sets the name of the client that this process works for. Earlier names stay valid until the process ends.
  void setFocusClientName(const string& clientName);
  /// Returns that name: never null, empty before one is set, valid until the process ends.
  const char* focusClientName() const;

  /// Set the name of the host that a client runs on and replace an earlier one; remove the client, a no-op if there is
  /// none; return the host's name.
  void setClientHostName(const string& clientName, const string& hostName);
  void removeClient(const string& clientName);
  std::optional<string> clientHostName(const string& clientName) const;

  /// Set and return the state of the cluster: above 0 if one is configured on this machine, none if that can't be
  /// determined. The default is 0.
  void setClusterState(std::optional<int> state);
  std::optional<int> clusterState() const;

  /// Set the cluster group that a host belongs to and replace an earlier one; remove it, a no-op if there is none;
  /// return it.
  void setClusterGroup(const string& hostName, const string& groupName);
  void removeClusterGroup(const string& hostName);
  std::optional<string> clusterGroup(const string& hostName) const;

  // The debug log.

  /// Set and return the debug level. Messages of this level and below are written: -1 writes only failures, a lower
  /// level nothing. Set it before the process's first message: KDXLoggerTraits, and with it all of the library except
  /// CDumpFile and getKDXSubClientOptions, reads the level once, at its first message, and ignores later changes.
  /// EvDebug and EvEvent use the present level.
  void setDebugLevel(int level);
  int debugLevel() const;

  /// Set and return the sink of all later lines; a null pointer restores the default, the standard error stream. A line
  /// that another thread is writing still reaches the former sink, which is kept alive until then.
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
  const char* focusClientName_ KDX_GUARDED_BY(lock_) = "";  // one of focusClientNames_
  std::map<string, string> clientHostNames_ KDX_GUARDED_BY(lock_);
  std::optional<int> clusterState_ KDX_GUARDED_BY(lock_) = 0;
  std::map<string, string> clusterGroups_ KDX_GUARDED_BY(lock_);
  std::shared_ptr<LineSink> lineSink_ KDX_GUARDED_BY(lock_);
};

}  // namespace kdx

#endif  // KDXCOMMON_INHOUSE_EMBEDDED_SITE_H_
