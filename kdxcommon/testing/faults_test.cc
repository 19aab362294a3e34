// Every call of the operating system that an operation makes fails, each alone and with all that follow, in every way.

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <iostream>
#include <sstream>

#include "kdxcommon/datetime/date_time.h"
#include "kdxcommon/datetime/time_of_day.h"
#include "kdxcommon/inhouse/jxutils/jx_file.h"
#include "kdxcommon/inhouse/zqlib/last_error.h"
#include "kdxcommon/platform/files_and_clock.h"
#include "kdxcommon/platform/hardware.h"
#include "kdxcommon/platform/hosts.h"
#include "kdxcommon/platform/os_identity.h"
#include "kdxcommon/sinks/line_sink.h"
#include "kdxcommon/sinks/rotating_file_sink.h"
#include "kdxcommon/sinks/system_log_sink.h"
#include "kdxcommon/strings/wide_string.h"
#include "kdxcommon/testing/dump_scenarios.h"
#include "kdxcommon/testing/fake_machine.h"
#include "kdxcommon/testing/faulty_system.h"

namespace kdx {
namespace {

using testing::failEachCall;
using testing::FaultySystem;

// The lines of level -1 that report the failure of an operation of the system, and whether one contains its error.
struct Report {
  std::string_view operation, begin;
  bool withError = false;
};
constexpr Report kReports[] = {
    {"opendir", "Error Opening file [", true},   {"opendir", "Error getting files ["},
    {"readdir", "Error getting a File. ", true}, {"readdir", "Error getting files ["},
    {"readdir", "Error Happened in GetEntry()"}, {"remove", "File [", true},
    {"_open", "Error Opening File ["},           {"_write", "Failed to write dump to file ["},
    {"_close", "Error Closing file ["},
};

void expectReported(const FaultySystem& system, const std::string& line) {
  const std::string error = "[" + std::to_string(system.error()) + "]";
  EXPECT_TRUE(std::ranges::any_of(kReports, [&](const Report& report) {
    return report.operation == system.failed() && line.starts_with(report.begin) &&
           (!report.withError || line.find(error) != std::string::npos);
  })) << line;
}

// The lines of an operation tell no success that isn't one, and every failure.
void expectTold(const testing::DumpStage& stage, const testing::DumpScenario& scenario, bool result,
                const std::vector<testing::LoggedLine>& lines, const FaultySystem& system) {
  const std::string_view failed = system.failed();
  const testing::DumpStage::Files files = stage.files();
  bool anyFailure = false;
  std::size_t deletions = 0;
  for (const testing::LoggedLine& line : lines) {
    anyFailure = anyFailure || line.level == -1;
    if (line.level == -1 && system.faults() == 1) expectReported(system, line.text);
    if (line.text.starts_with("File Deleted [")) {
      const std::string path = line.text.substr(14, line.text.size() - 15);
      EXPECT_FALSE(std::filesystem::exists(testing::utf8Path(path))) << line;
      ++deletions;
    }
    if (line.text.starts_with("Bytes written :: [")) {
      EXPECT_EQ(line.text, "Bytes written :: [" + std::to_string(files.at(scenario.written).size()) + "]");
    }
  }
  const bool listingFailed = failed == "opendir" || failed == "readdir";
  const bool writes = *scenario.written != 0;
  if (!scenario.usesPartOfListing) {
    const bool isMark = scenario.name == std::string_view("mark");  // what it can't rename it leaves without a word
    const bool isSilent = failed.empty() || failed == "_stat64" || (isMark && !listingFailed);
    EXPECT_TRUE(anyFailure || (result && isSilent)) << failed;
    if (listingFailed) {
      EXPECT_TRUE(deletions == 0 && (writes || !result));
    }
    if (!result && !writes) {
      EXPECT_EQ(files, testing::DumpStage::kFirst);
    }
  } else if (!failed.empty() && failed != "remove") {
    EXPECT_FALSE(result);
  }
  if (writes && !anyFailure) {
    EXPECT_EQ(files.at(scenario.written), testing::DumpStage::kText);
  }
}

TEST(Faults, LeaveDumpsSoundAndAreTold) {
  const testing::DumpStage stage;
  testing::FixedClock sound;
  const os::ScopedOperatingSystem scope(sound);
  const testing::ScopedLog log(4);
  int runs = 0;
  for (const testing::DumpScenario& scenario : testing::kDumpScenarios) {
    const testing::DumpStage::Files untouched = filesAfter(stage, scenario);
    runs += failEachCall(scenario.name, [&](FaultySystem& system) {
      stage.restore();
      log->take();
      const bool result = scenario.run(stage);
      expectTold(stage, scenario, result, log->take(), system);
      stage.expectSound(untouched, scenario.written);
      const os::ScopedOperatingSystem recovered(sound);
      expectNextRunSound(stage, scenario, untouched);
    });
  }
  std::cout << runs << " runs with faults\n";
}

constexpr char kContent[] = "several bytes";

// Operations on the file "file", which holds kContent before each. They return whether all went well, and check what
// they report and leave.
using FileScenario = bool (*)(const testing::TemporaryDirectory&, FaultySystem&);

bool readFile(const testing::TemporaryDirectory& directory, FaultySystem& system) {
  string text = "before ";
  int error = 0;
  const bool read = platformReadEntireFileContents(directory.path("file"), text, error);
  EXPECT_EQ(error != 0, system.failed() == "fread");
  EXPECT_TRUE((string("before ") + kContent).starts_with(text) && text.size() == (read ? 20 : text.size())) << text;
  return read;
}

bool writeFile(const testing::TemporaryDirectory& directory, FaultySystem& system) {
  int error = 0;
  const bool written = platformWriteEntireFileContent(directory.path("file"), "NEW", error);
  EXPECT_EQ(error != 0, system.failed() == "fwrite");
  const string content = directory.read("file");
  EXPECT_TRUE(written ? content == "NEW" : string("NEW").starts_with(content) || content == kContent) << content;
  return written;
}

bool useFile(const testing::TemporaryDirectory& directory, FaultySystem& system) {
  const std::string path = directory.path("file");
  const int flags = os::kOpenReadWrite | os::kOpenTruncate;
  CJxFile file, other;
  const bool first = !file.Open(path.c_str(), os::kOpenReadOnly, 0).IsErrorSet();  // closed by the next
  other.Open(path.c_str(), os::kOpenReadOnly, 0);                                  // closed by its end
  const bool opened = !file.Open(path.c_str(), flags, 0).IsErrorSet();
  std::uint32_t written = 99;
  const CJxError wrote = file.Write("0123456789", 10, &written);
  EXPECT_EQ(wrote.IsErrorSet(), written < 10);
  EXPECT_EQ(directory.read("file"), opened ? string("0123456789", written) : kContent);
  if (opened && system.failed() == "_write" && system.error() > 0) {
    EXPECT_EQ(wrote.GetErrorCode(), static_cast<std::uint32_t>(system.error()));
  }
  const int faults = system.faults();
  const bool closed = !file.Close().IsErrorSet();
  EXPECT_EQ(closed, opened && system.faults() == faults);
  EXPECT_TRUE(file.Close().IsErrorSet() && CJxFile(other).Close().IsErrorSet());
  std::int64_t modified = -1;
  const bool dated = !CJxFile::GetTimes(path.c_str(), &modified, nullptr, nullptr).IsErrorSet();
  EXPECT_EQ(dated, modified != -1);
  return first && opened && !wrote.IsErrorSet() && closed && dated;
}

bool access(const testing::TemporaryDirectory& directory, FaultySystem& system) {
  ZQLastError error;
  const bool accessible = platformAccessW(CWideString(directory.path("file")).wString(), 4, &error);
  const bool missing = system.failed() == "_waccess" && system.error() == 2;
  EXPECT_EQ(error.number(), missing ? kErrorFileNotFound : static_cast<std::uint32_t>(system.error()));
  EXPECT_NE(error.message(), nullptr);
  return accessible;
}

// A line whose own writing met no fault stands whole, and on a line of its own.
bool logLines(const testing::TemporaryDirectory& directory, FaultySystem& system) {
  bool complete = true;
  for (const LogFileUse use : {LogFileUse::kOneProcess, LogFileUse::kSeveralProcesses}) {
    FileLineSink sink(directory.path("file").c_str(), use);
    EXPECT_EQ(sink.drops(), !sink.opened());
    for (const char* text : {"first", "second", "third"}) {
      const int faults = system.faults();
      sink.write({2, "f", 1, {}, text});
      const string content = '\n' + directory.read("file"), end = string(" 1 2 f: ") + text + '\n';
      if (sink.opened() && system.faults() == faults) {
        EXPECT_TRUE(content.ends_with(end)) << content;
        EXPECT_EQ(content.find('Z', content.rfind('\n', content.size() - 2)),
                  content.rfind('\n', content.size() - 2) + 24)
            << content;
      }
      complete = complete && content.ends_with(end);
    }
  }
  return complete;
}

// Whatever fails, a file contains whole lines of its own and at worst their beginnings, and only a write that fails
// loses a line. One that stands is not lost by a later rotation.
bool rotateLogs(const testing::TemporaryDirectory& directory, FaultySystem& system) {
  bool complete = true;
  for (const LogFileUse use : {LogFileUse::kOneProcess, LogFileUse::kSeveralProcesses}) {
    const string name = use == LogFileUse::kOneProcess ? "one" : "several";
    for (const char* end : {"", ".1", ".2", ".3"})
      std::filesystem::remove(testing::utf8Path(directory.path(name + end)));
    const auto lines = [&] {
      string all;
      for (const char* end : {".3", ".2", ".1", ""}) all += directory.read(name + end) + '\n';
      return all;
    };
    RotatingFileLineSink sink(directory.path(name).c_str(), {.maxBytes = 50, .olderFiles = 3}, use);  // a line each
    std::vector<string> standing;
    for (const char* text : {"first", "second", "third", "fourth"}) {
      const int faults = system.faults();
      sink.write({2, "f", 1, {}, text});
      const bool stands = lines().find(string(" 1 2 f: ") + text + '\n') != string::npos;
      const bool mayBeLost = system.faults() > 1 || (system.faults() != faults && system.reached() == "_write");
      EXPECT_TRUE(stands || !sink.opened() || mayBeLost) << text;
      complete = complete && stands;
      if (stands) standing.push_back(string(": ") + text + '\n');
    }
    for (const string& line : standing) EXPECT_NE(lines().find(line), string::npos) << system.reached() << line;
    std::istringstream all(lines());
    for (string line; std::getline(all, line);)
      EXPECT_EQ(line.rfind("Z "), line.size() < 26 ? string::npos : 23) << line;
  }
  return complete;
}

bool reportToSystem(const testing::TemporaryDirectory& directory, FaultySystem& system) {
  SystemLogSink("agent", directory.path("no daemon").c_str()).write({2, "f", 1, {}, "lost"});
  return system.failed().empty();
}

TEST(Faults, OfFilesAreReportedAndLeaveNothingOpen) {
  const testing::TemporaryDirectory directory;
  const std::pair<const char*, FileScenario> scenarios[] = {{"read", readFile},
                                                            {"write", writeFile},
                                                            {"use", useFile},
                                                            {"access", access},
                                                            {"log", logLines},
                                                            {"rotate", rotateLogs},
                                                            {"system's log", reportToSystem}};
  int runs = 0;
  for (const auto& [name, run] : scenarios) {
    runs += failEachCall(name, [&, scenario = run](FaultySystem& system) {
      directory.write("file", scenario == logLines ? "" : kContent);
      const bool succeeds = scenario(directory, system);
      const bool maySucceed =
          scenario == logLines || scenario == rotateLogs || (scenario == useFile && system.faults() == 1);
      if (!maySucceed) {
        EXPECT_EQ(succeeds, system.failed().empty()) << system.failed();
      }
    });
  }
  std::cout << runs << " runs with faults\n";
}

// Operations on a machine with a host and a zone. Each returns whether it succeeded, with the error that it reports,
// and checks what it sets.
using MachineScenario = bool (*)(int& error);

bool reported(bool succeeded, const ZQLastError& lastError, int& error) {
  error = static_cast<int>(lastError.number());
  EXPECT_EQ(lastError.isInformational(), succeeded);
  return succeeded;
}

const std::pair<const char*, MachineScenario> kMachineScenarios[] = {
    {"gethostname",
     [](int& error) {
       string name = "before";
       ZQLastError lastError;
       const bool known = platformGethostname(name, &lastError);
       EXPECT_EQ(name, known ? "h" : "before");
       return reported(known, lastError, error);
     }},
    {"hostid",
     [](int& error) {
       std::uint32_t id = 5;
       const bool known = platformHostid(id, error);
       EXPECT_TRUE(known ? id == 0x0A010203 : id == 0 || id == 5);
       return known;
     }},
    {"host by name",
     [](int& error) {
       LD_hostent_s found{"before", {"a"}, 5, 5, "before"};
       ZQLastError lastError;
       const bool known = platformGethostbynameV2("h", found, &lastError);
       EXPECT_EQ(found.addressText, known ? "10.1.2.3" : "before");
       return reported(known, lastError, error);
     }},
    {"address by name",
     [](int& error) {
       string address = "before";
       ZQLastError lastError;
       const bool known = platformGetIPbyHostname("h", address, lastError);
       EXPECT_EQ(address, known ? "n" : "before");
       return reported(known, lastError, error);
     }},
    {"names by address",
     [](int& error) {
       std::set<string> names{"before"};
       ZQLastError lastError;
       const bool known = platformGetHostnamesByIPAddr("10.1.2.3", names, lastError);
       EXPECT_TRUE(known ? names.size() == 1 && !names.contains("before") : names.empty());
       return reported(known, lastError, error);
     }},
    {"processor",
     [](int& error) {
       string type = "before";
       const bool known = platformTypeOfCPU(type, error);
       EXPECT_EQ(type.empty(), !known);
       return known;
     }},
    {"memory",
     [](int& error) {
       std::uint64_t bytes = 7;
       const bool known = platformSystemRAM(bytes, error);
       EXPECT_EQ(bytes, known ? 1'048'576U : 0U);
       return known;
     }},
    {"computer",
     [](int& error) {
       string name = "before";
       const bool known = platformComputerName(name, error);
       EXPECT_EQ(name, known ? "h" : "before");
       return known;
     }},
    {"system",
     [](int& error) {
       LD_OSInformation_s information;
       const bool known = platformOSInformation(information, error);
       EXPECT_EQ(information.family != 0, known);
       EXPECT_EQ(information.name == "Unknown Operating System", !known);
       return known;
     }},
    {"version",
     [](int& error) {
       string name = "before", servicePack = "before";
       std::uint32_t major = 7, minor = 7, build = 7;
       const bool known = platformOSVersionNumeric(name, major, minor, build, servicePack, error);
       EXPECT_TRUE(known ? !name.empty() : (name + servicePack).empty() && major + minor + build == 0);
       return known;
     }},
    {"distribution",
     [](int& error) {
       string name = "before";
       EXPECT_TRUE(platformOSDistribution(name, error) && name != "before");
       return true;
     }},
    {"zone",
     [](int& error) {
       TimeZone_t zone{"A", "B", 1, true, 2};
       ZQLastError lastError;
       const bool known = platformGetTimeZone(zone, &lastError);
       EXPECT_EQ(zone.biasSeconds == 1 && zone.daylightActive && zone.standardName == "A", !known);
       return reported(known, lastError, error);
     }},
    {"local time",
     [](int& error) {
       CTime time;
       const bool known = time.set(20, 0, 0, false);
       EXPECT_TRUE(known || time.seconds() == 72'000);
       string text;
       EXPECT_EQ(time.formatLocalHHMMSS(text).size(), 8U);
       error = 0;
       return true;
     }},
    {"local date",
     [](int& error) {
       CDateTime date({.year = 2010, .month = 1, .day = 5, .hour = 12}, false);
       string text;
       EXPECT_EQ(date.formatLocalYYYYMMDDHHMMSS(text).size(), 19U) << text;
       EXPECT_EQ(date.formatXMLDateTime(text, false).size(), 20U) << text;
       error = 0;
       return true;
     }},
};

struct FaultsOfTheMachine : testing::FakeMachine {
  FaultsOfTheMachine() {
    ownName = "h";
    names = {"n"};
    osRelease = "PRETTY_NAME=Linux 12\n";
    kernel = {"Linux", "h", "6.1.0-18", "#1", "x86_64"};
  }
};

TEST_F(FaultsOfTheMachine, AreReportedWithTheirNumbers) {
  const testing::ScopedLog log(1);
  int runs = 0;
  for (const bool onWindows : {true, false}) {
    if (!onWindows)
      failing = {{"GetVersionExA148", ENOSYS}, {"GetVersionExA156", ENOSYS}, {"GetVersionExW276", ENOSYS}};
    for (const auto& [name, run] : kMachineScenarios) {
      runs += failEachCall(name, [&, scenario = run](FaultySystem& system) {
        int reason = 0;
        const bool succeeded = scenario(reason);
        EXPECT_TRUE(succeeded || !system.failed().empty());
        EXPECT_EQ(reason, succeeded ? 0 : system.error()) << system.failed();
      });
    }
  }
  std::cout << runs << " runs with faults\n";
}

}  // namespace
}  // namespace kdx
