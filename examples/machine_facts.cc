// What the library can tell about this machine: its system, hardware, hosts, cluster, clock and zone, as a table or as
// JSON. Where a fact can't be had its reason stands: on Linux, which is no Windows, that is so for whatever goes by
// Windows' version numbers. On Windows the version is the system's own because the program's manifest names it; without
// one it would be 6.2 on all that came later.
//
//   machine_facts --json

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <iostream>
#include <set>
#include <string>
#include <vector>

#include "kdxcommon/inhouse/zqlib/last_error.h"
#include "kdxcommon/platform/cluster.h"
#include "kdxcommon/platform/files_and_clock.h"
#include "kdxcommon/platform/hardware.h"
#include "kdxcommon/platform/hosts.h"
#include "kdxcommon/platform/os_identity.h"
#include "kdxcommon/strings/wide_string.h"

namespace {

constexpr int kFailed = 1;
constexpr int kBadCommandLine = 2;

struct Fact {
  std::string name;
  std::string operation;
  std::string value;  // a number, a text, or the reason of a failure
  enum { kNumber, kText, kReason } kind;
};

class Facts {
 public:
  /// The operation that the next facts come from.
  void from(const char* operation) { operation_ = operation; }

  void add(const char* name, const std::string& text) { facts_.push_back({name, operation_, text, Fact::kText}); }
  void add(const char* name, std::int64_t number) {
    facts_.push_back({name, operation_, std::to_string(number), Fact::kNumber});
  }

  /// Whether the operation succeeded; if not, the reason stands as the fact `name`.
  bool had(const char* name, bool succeeded, const std::string& reason) {
    if (!succeeded) facts_.push_back({name, operation_, reason, Fact::kReason});
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

  const std::vector<Fact>& all() const { return facts_; }

 private:
  const char* operation_ = "";
  std::vector<Fact> facts_;
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
    facts.add("vendor", information.vendor);
    facts.add("version", versionText(information.majorVersion, information.minorVersion, information.buildNumber));
    facts.add("service pack", information.servicePack);
    facts.add("service pack number",
              std::to_string(information.servicePackMajor) + '.' + std::to_string(information.servicePackMinor));
    facts.add("family", information.family);
    facts.add("edition", information.edition);
  }

  facts.from("platformUname");
  kdx::LD_utsname_s uname{};
  kdx::ZQLastError lastError;
  if (facts.had("system name", kdx::platformUname(uname, &lastError), lastError)) {
    facts.add("system name", uname.sysname);
    facts.add("node name", uname.nodename);
    facts.add("release", uname.release);
    facts.add("build", uname.version);
    facts.add("machine", uname.machine);
    facts.add("host id, hexadecimal", uname.hostid);
  }

  facts.from("platformOSVersionNumeric");
  std::string name, servicePack;
  std::uint32_t major = 0, minor = 0, build = 0;
  if (facts.had("short name", kdx::platformOSVersionNumeric(name, major, minor, build, servicePack, error), error)) {
    facts.add("short name", name);
    facts.add("its version", versionText(major, minor, build));
    facts.add("its service pack", servicePack);
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
  if (facts.had("processors", kdx::platformNumberOfCPUs(count, error), error)) facts.add("processors", count);

  facts.from("platformSystemRAM");
  std::uint64_t bytes = 0;
  if (facts.had("memory, bytes", kdx::platformSystemRAM(bytes, error), error)) {
    facts.add("memory, bytes", static_cast<std::int64_t>(bytes));
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
  if (facts.had("host id", kdx::platformHostid(hostid, number), number)) facts.add("host id", hostid);

  facts.from("platformGethostbynameV2");
  kdx::LD_hostent_s host;
  if (facts.had("official name", kdx::platformGethostbynameV2(hostName, host, &error), error)) {
    facts.add("official name", host.name);
    facts.add("aliases", joined(host.aliases));
    facts.add("address type", host.addressType);
    facts.add("IPv4 address", host.addressText);
    facts.add("the same as a number", host.addressNumber);
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
  if (facts.had("cluster", kdx::platformClustered(clustered, nullptr), reason)) {
    facts.add("cluster", clustered ? "yes" : "no");
  }
  facts.from("platformClusteredForCN");
  if (facts.had("cluster group", kdx::platformClusteredForCN(clustered, group, nullptr), reason)) {
    facts.add("cluster group", group);
  }
}

void addClockAndZone(Facts& facts) {
  facts.from("platformTime");
  facts.add("seconds since 1970", kdx::platformTime(nullptr));
  facts.from("platformTimezone");
  facts.add("zone, seconds east", kdx::platformTimezone());

  facts.from("platformGetTimeZone");
  kdx::TimeZone_t zone;
  kdx::ZQLastError error;
  if (facts.had("standard time", kdx::platformGetTimeZone(zone, &error), error)) {
    facts.add("standard time", zone.standardName);
    facts.add("daylight time", zone.daylightName);
    facts.add("seconds west", zone.biasSeconds);
    facts.add("and by daylight time", zone.daylightBiasSeconds);
    facts.add("daylight time now", zone.daylightActive ? "yes" : "no");
  }
}

/// The inside of a JSON string. Bytes that are no UTF-8 count as Latin-1, whose characters have their numbers.
std::string escaped(const std::string& text) {
  const bool utf8 = text.empty() || !kdx::CWideString(text).wString().empty();
  std::string out;
  for (const char character : text) {
    const auto byte = static_cast<unsigned char>(character);
    if (byte < 0x20 || byte == 0x7F || (byte >= 0x80 && !utf8)) {
      char code[sizeof "\\u0000"];
      std::snprintf(code, sizeof code, "\\u%04x", static_cast<unsigned>(byte));
      out += code;
    } else {
      if (byte == '"' || byte == '\\') out += '\\';
      out += character;
    }
  }
  return out;
}

void printJson(const std::vector<Fact>& facts) {
  const char* separator = "[\n";
  for (const Fact& fact : facts) {
    const char* quote = fact.kind == Fact::kNumber ? "" : "\"";
    std::cout << separator << R"(  {"fact": ")" << fact.name << R"(", "operation": ")" << fact.operation << R"(", ")"
              << (fact.kind == Fact::kReason ? "error" : "value") << "\": " << quote << escaped(fact.value) << quote
              << '}';
    separator = ",\n";
  }
  std::cout << "\n]\n";
}

void printTable(const std::vector<Fact>& facts) {
  const auto widest = [&facts](std::string Fact::*field) {
    return std::ranges::max(facts, {}, [field](const Fact& fact) { return (fact.*field).size(); }).*field;
  };
  const std::size_t nameWidth = widest(&Fact::name).size(), operationWidth = widest(&Fact::operation).size();
  for (const Fact& fact : facts) {
    std::cout << fact.name << std::string(nameWidth + 2 - fact.name.size(), ' ') << fact.operation
              << std::string(operationWidth + 2 - fact.operation.size(), ' ')
              << (fact.kind == Fact::kReason ? '(' + escaped(fact.value) + ')' : escaped(fact.value)) << '\n';
  }
}

int run(int argc, char** argv) {
  bool json = false;
  CLI::App app("Shows what KDXCommon can tell about this machine, or in parentheses why it can't.", "machine_facts");
  app.add_flag("--json", json, "As JSON: an array of objects, each with a value or an error");
  app.footer("Exit status: 0 done, 1 an unexpected error or the output can't be written, 2 bad command line");
  try {
    app.parse(argc, argv);
  } catch (const CLI::Success& help) {
    return app.exit(help);
  } catch (const CLI::ParseError& error) {
    std::cerr << "machine_facts: " << error.what() << '\n';
    return kBadCommandLine;
  }
  Facts facts;
  for (const auto add : {addSystem, addHardware, addHosts, addCluster, addClockAndZone}) add(facts);
  if (json) {
    printJson(facts.all());
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
