// Prints the library's facts about this machine: its system, hardware, hosts, cluster, clock and zone, as a table or as
// JSON. If a fact isn't available, the reason is printed instead. On Windows the version is the actual one because the
// program's manifest lists it; without a manifest it would be 6.2 on all later versions.
//
//   machine_facts --json

#include <CLI/CLI.hpp>
#include <cstdint>
#include <exception>
#include <iostream>
#include <nlohmann/json.hpp>
#include <set>
#include <string>

#include "kdxcommon/base/version.h"
#include "kdxcommon/inhouse/zqlib/last_error.h"
#include "kdxcommon/platform/cluster.h"
#include "kdxcommon/platform/files_and_clock.h"
#include "kdxcommon/platform/hardware.h"
#include "kdxcommon/platform/hosts.h"
#include "kdxcommon/platform/os_identity.h"
#include "table.h"

namespace {

using nlohmann::ordered_json;

constexpr int kFailed = 1;
constexpr int kBadCommandLine = 2;

/// Facts in the order in which they were added: an array of objects, each with a value or an error.
class Facts {
 public:
  /// Sets the operation that returns the next facts.
  void from(const char* operation) { operation_ = operation; }

  /// Adds a text or a number.
  template <typename Value>
  void add(const char* name, const Value& value) {
    facts_.push_back({{"fact", name}, {"operation", operation_}, {"value", value}});
  }

  /// Returns `succeeded`. If it is false, adds the reason instead of the fact `name`.
  bool had(const char* name, bool succeeded, const std::string& reason) {
    if (!succeeded) facts_.push_back({{"fact", name}, {"operation", operation_}, {"error", reason}});
    return succeeded;
  }
  bool had(const char* name, bool succeeded, const kdx::ZQLastError& error) {
    std::string reason = error.message();
    reason.erase(reason.find_last_not_of("\r\n") + 1);
    return had(name, succeeded, reason);
  }
  bool had(const char* name, bool succeeded, const int& error) {
    return had(name, succeeded, kdx::ZQLastError(static_cast<std::uint32_t>(error), kdx::ZQLE_CRITICAL));
  }

  const ordered_json& all() const { return facts_; }

 private:
  const char* operation_ = "";
  ordered_json facts_ = ordered_json::array();
};

std::string versionText(std::uint32_t major, std::uint32_t minor, std::uint32_t build) {
  return std::to_string(major) + '.' + std::to_string(minor) + '.' + std::to_string(build);
}

template <typename Texts>
std::string joined(const Texts& texts) {
  std::string all;
  for (const std::string& text : texts) all += (all.empty() ? "" : " ") + text;
  return all;
}

void addSystem(Facts& facts) {
  int error = 0;
  facts.from("platformOSInformation");
  kdx::LD_OSInformation_s information;
  if (facts.had("operating system", kdx::platformOSInformation(information, error), error)) {
    facts.add("operating system", information.name);
    facts.add("operating system vendor", information.vendor);
    facts.add("operating system version",
              versionText(information.majorVersion, information.minorVersion, information.buildNumber));
    facts.add("service pack or code name", information.servicePack);
    facts.add("service pack version",
              std::to_string(information.servicePackMajor) + '.' + std::to_string(information.servicePackMinor));
    facts.add("operating system family (1 Windows, 2 Linux)", information.family);
    facts.add("Windows edition code", information.edition);
  }

  facts.from("platformUname");
  kdx::LD_utsname_s uname{};
  kdx::ZQLastError lastError;
  if (facts.had("system name", kdx::platformUname(uname, &lastError), lastError)) {
    facts.add("system name", uname.sysname);
    facts.add("node name", uname.nodename);
    facts.add("system release", uname.release);
    facts.add("system version", uname.version);
    facts.add("machine type", uname.machine);
    facts.add("host id (hexadecimal)", uname.hostid);
  }

  facts.from("platformOSVersionNumeric");
  std::string name, servicePack;
  std::uint32_t major = 0, minor = 0, build = 0;
  if (facts.had("short system name", kdx::platformOSVersionNumeric(name, major, minor, build, servicePack, error),
                error)) {
    facts.add("short system name", name);
    facts.add("kernel version", versionText(major, minor, build));
    facts.add("service pack or kernel suffix", servicePack);
  }

  facts.from("platformOSDistribution");
  std::string distribution;
  if (facts.had("distribution", kdx::platformOSDistribution(distribution, error), error)) {
    facts.add("distribution", distribution);
  }
}

void addHardware(Facts& facts) {
  int error = 0;
  facts.from("platformTypeOfCPU");
  std::string type, name;
  if (facts.had("processor", kdx::platformTypeOfCPU(type, error), error)) facts.add("processor", type);

  facts.from("platformNumberOfCPUs");
  std::uint32_t count = 0;
  if (facts.had("processors online", kdx::platformNumberOfCPUs(count, error), error))
    facts.add("processors online", count);

  facts.from("platformSystemRAM");
  std::uint64_t bytes = 0;
  if (facts.had("physical memory (bytes)", kdx::platformSystemRAM(bytes, error), error)) {
    facts.add("physical memory (bytes)", bytes);
  }

  facts.from("platformComputerName");
  if (facts.had("computer name", kdx::platformComputerName(name, error), error)) facts.add("computer name", name);
}

void addHosts(Facts& facts) {
  int number = 0;
  kdx::ZQLastError error;
  facts.from("platformGethostname");
  std::string hostName;
  if (facts.had("host name", kdx::platformGethostname(hostName, &error), error)) facts.add("host name", hostName);

  facts.from("platformHostid");
  std::uint32_t hostid = 0;
  if (facts.had("host id (number)", kdx::platformHostid(hostid, number), number)) facts.add("host id (number)", hostid);

  facts.from("platformGethostbynameV2");
  kdx::LD_hostent_s host;
  if (facts.had("official host name", kdx::platformGethostbynameV2(hostName, host, &error), error)) {
    facts.add("official host name", host.name);
    facts.add("host aliases", joined(host.aliases));
    facts.add("address family number", host.addressType);
    facts.add("IPv4 address", host.addressText);
    facts.add("IPv4 address as a number", host.addressNumber);
  }

  facts.from("platformGetIPbyHostname");
  std::string address;
  if (facts.had("first address", kdx::platformGetIPbyHostname(hostName, address, error), error)) {
    facts.add("first address", address);
  }

  facts.from("platformGetHostnamesByIPAddr");
  std::set<std::string> names;
  if (facts.had("names of the IPv4 address", kdx::platformGetHostnamesByIPAddr(host.addressText, names, error),
                error)) {
    facts.add("names of the IPv4 address", joined(names));
  }
}

void addCluster(Facts& facts) {
  const std::string reason = "no answer, as the log says";
  bool clustered = false;
  std::string group;
  facts.from("platformClustered");
  if (facts.had("cluster configured", kdx::platformClustered(clustered, nullptr), reason)) {
    facts.add("cluster configured", clustered ? "yes" : "no");
  }
  facts.from("platformClusteredForCN");
  if (facts.had("cluster group", kdx::platformClusteredForCN(clustered, group, nullptr), reason)) {
    facts.add("cluster group", group);
  }
}

void addClockAndZone(Facts& facts) {
  facts.from("platformTime");
  facts.add("time (seconds since 1970, UTC)", kdx::platformTime(nullptr));
  facts.from("platformTimezone");
  facts.add("standard time offset (seconds east of UTC)", kdx::platformTimezone());

  facts.from("platformGetTimeZone");
  kdx::TimeZone_t zone;
  kdx::ZQLastError error;
  if (facts.had("standard time name", kdx::platformGetTimeZone(zone, &error), error)) {
    facts.add("standard time name", zone.standardName);
    facts.add("daylight time name", zone.daylightName);
    facts.add("standard time bias (seconds west of UTC)", zone.biasSeconds);
    facts.add("daylight bias (seconds)", zone.daylightBiasSeconds);
    facts.add("daylight time in force", zone.daylightActive ? "yes" : "no");
  }
}

/// Returns a value for human readers: a text has no quotes.
std::string shown(const ordered_json& value) {
  return value.is_string() ? printable(value.get_ref<const std::string&>()) : value.dump();
}

// On a narrow terminal the operations are left out.
void printTable(const ordered_json& facts) {
  constexpr std::size_t kWide = 100;
  const std::size_t width = terminalWidth();
  const bool wide = width == 0 || width >= kWide;
  Table table(wide ? std::vector<Table::Column>(3) : std::vector<Table::Column>(2));
  for (const ordered_json& fact : facts) {
    const std::string name = shown(fact["fact"]);
    const std::string value = fact.contains("value") ? shown(fact["value"]) : '(' + shown(fact["error"]) + ')';
    wide ? table.add(name, shown(fact["operation"]), value) : table.add(name, value);
  }
  std::cout << table.text(width);
}

int run(int argc, char** argv) {
  bool json = false;
  CLI::App app("Prints KDXCommon's facts about this machine, or in parentheses why a fact isn't available.",
               "machine_facts");
  app.set_version_flag("--version", std::string("machine_facts ") + kdx::version());
  app.add_flag("--json", json, "As JSON: an array of objects, each with a value or an error");
  app.footer("Exit status: 0 done, 1 an unexpected error or the output can't be written, 2 bad command line");
  try {
    app.parse(argc, argv);
  } catch (const CLI::Success& text) {  // --help and --version
    return app.exit(text);
  } catch (const CLI::ParseError& error) {
    std::cerr << "machine_facts: " << error.what() << '\n';
    return kBadCommandLine;
  }
  Facts facts;
  for (const auto add : {addSystem, addHardware, addHosts, addCluster, addClockAndZone}) add(facts);
  if (json) {
    // Control characters are escaped, and bytes that aren't UTF-8 replaced by U+FFFD.
    std::cout << facts.all().dump(2, ' ', false, ordered_json::error_handler_t::replace) << '\n';
  } else {
    printTable(facts.all());
  }
  return std::cout.flush() ? 0 : kFailed;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run(argc, argv);
  } catch (const std::exception& error) {
    std::cerr << "machine_facts: " << error.what() << '\n';
    return kFailed;
  }
}
