// Directories with dumps and names that only resemble them: what CDumpFile explains must be what it then does, and what
// it tells of it. The first two bytes of the input are the number of directories less one. The other bytes are choices;
// after their end a generator goes on, which they start. The seed "10000" is that many directories.

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "choices.h"
#include "kdxcommon/dumpfile/dump_directory.h"
#include "kdxcommon/dumpfile/dump_file.h"
#include "kdxcommon/dumpfile/dump_names.h"
#include "kdxcommon/inhouse/embedded_site.h"
#include "kdxcommon/os/operating_system_wrapper.h"
#include "kdxcommon/testing/recording_line_sink.h"
#include "kdxcommon/testing/wide_text.h"

namespace {

using Names = std::set<std::string>;

constexpr std::int64_t kDay = 86400;
constexpr std::int64_t kNow = 1'700'000'000;
constexpr std::uint32_t kSubclients[] = {1, 1, 1, 2, 12};

using kdx::testing::Choices;
using kdx::testing::require;

// One directory in memory: names with their dates.
class Disk : public kdx::os::OperatingSystemWrapper {
 public:
  std::map<std::string, std::int64_t> files;
  int readings = 0;

  Names names() const {
    Names all;
    for (const auto& [name, date] : files) all.insert(name);
    return all;
  }

  std::unique_ptr<kdx::os::DirectoryStream> opendir(const char*) override {
    ++readings;
    return std::make_unique<Stream>(names());
  }
  int remove(const char* path) override { return files.erase(nameOf(path)) == 1 ? 0 : -1; }
  int rename(const char* from, const char* to) override {
    auto node = files.extract(nameOf(from));
    if (node.empty() || files.contains(nameOf(to))) return -1;
    node.key() = nameOf(to);
    files.insert(std::move(node));
    return 0;
  }
  int _stat64(const char* path, kdx::os::FileTimes& times) override {
    const auto file = files.find(nameOf(path));
    if (file == files.end()) return -1;
    times = {.modified = file->second};
    return 0;
  }
  int _open(const char* path, int, int) override {
    files[nameOf(path)] = kNow;
    return 1000;
  }
  std::int64_t _write(int, const void*, std::size_t count) override { return static_cast<std::int64_t>(count); }
  int _close(int) override { return 0; }
  std::int64_t _time64(std::int64_t*) override { return kNow; }

 private:
  class Stream : public kdx::os::DirectoryStream {
   public:
    explicit Stream(Names names) : names_(std::move(names)), next_(names_.begin()) {}
    int readdir(kdx::os::DirectoryEntry& entry) override {
      if (next_ == names_.end()) return 0;
      entry = {(next_++)->c_str(), true};
      return 1;
    }

   private:
    const Names names_;
    Names::const_iterator next_;
  };

  static std::string nameOf(std::string path) { return path.substr(path.find_last_of("/\\") + 1); }
};

std::string spelled(const kdx::DumpName& parts) {
  const std::string beginName(parts.beginName);
  const kdx::DumpSeries series{beginName.c_str(), parts.jobType, parts.scId};
  return std::string(kdx::dumpFileName(series, parts.jobId, parts.itrId)) + (parts.failed ? ".failed" : "");
}

// Mostly a dump's name; otherwise with a piece too few, too many or of another kind.
std::string randomName(Choices& choices) {
  static const std::string kBegins[] = {"KDXSQLDump", "KDXSQLDump", "KDXSQLDump", "KDXOraDump"};
  static const std::string kJobs[] = {"1", "2", "8", "9", "10", "11", "12", "100", "3000000000"};
  static const std::string kOdd[] = {"",    "_JOB_9",  "JOB_10_",  "_DISCOVERY", "x",  "-1",     "007",
                                     "JOB", "_JOB_9_", "99999999", ".txt",       "..", ".failed"};
  const bool discovery = choices.below(3) == 0;
  std::string pieces[] = {choices.among(kBegins),
                          "_SC_" + std::to_string(choices.among(kSubclients)),
                          discovery ? "_DISCOVERY_JOB_" : "_JOB_",
                          choices.among(kJobs),
                          discovery ? "" : "_ITR_" + std::to_string(static_cast<int>(choices.below(4)) - 1),
                          ".txt",
                          choices.below(2) ? "" : ".failed"};
  const std::size_t draw = choices.below(8);
  for (std::size_t changes = draw; changes > 5; --changes) {
    std::string& piece = pieces[choices.below(std::size(pieces))];
    piece = choices.below(2) ? piece + choices.among(kOdd) : choices.among(kOdd);
  }
  std::string name;
  for (const std::string& piece : pieces) name += piece;
  const std::optional<kdx::DumpName> parts = kdx::parseDumpName(name);
  require(parts ? spelled(*parts) == name : draw > 5, "the parts of a name spell it");
  return name;
}

bool equal(const std::vector<kdx::DumpFate>& left, const std::vector<kdx::DumpFate>& right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(), [](const auto& a, const auto& b) {
    return a.name == b.name && a.kind == b.kind && a.reason == b.reason;
  });
}

class Directory {
 public:
  explicit Directory(Choices& choices) : choices_(choices) {
    constexpr std::int64_t kAges[] = {0, kDay - 1, kDay, 5 * kDay, 30 * kDay, 31 * kDay, 400 * kDay, -kDay, 1 - kDay};
    for (std::size_t files = choices.below(32); files > 0; --files) {
      disk_.files[randomName(choices)] = kNow - choices.among(kAges);
    }
    constexpr std::uint32_t kLimits[] = {0, 1, 2, 3, 5, 8, 20}, kDays[] = {0, 1, 5, 30};
    site_.setNumber("KDX", "nDUMPFILELIMIT", limit_ = choices.among(kLimits));
    site_.setNumber("KDX", "nDAYSTOKEEPFAILEDJOBDUMPFILES", choices.among(kDays));
  }

  void check() {
    constexpr std::int64_t kJobs[] = {1, 2, 9, 10, 12, 50, 3'000'000'000};
    const kdx::ZQBkpLevel type = choices_.below(2) ? kdx::ITERATION_JOB : kdx::DISCOVERY_JOB;
    kdx::CDumpFile dump(type, 602, choices_.among(kSubclients), choices_.among(kJobs), 0);
    std::vector<kdx::DumpFate> explained, told;
    const Names before = disk_.names();
    const bool marks = choices_.below(2) != 0, tells = choices_.below(2) != 0, writes = !marks && !tells;
    require(marks ? dump.explainMarkAsFailed(explained) : dump.explainDumpXMLBlob(explained), "an explanation");
    require(disk_.names() == before && disk_.readings == 1, "an explanation reads once and changes nothing");
    if (tells) {
      require(marks ? dump.markAsFailed(told) : dump.makeRoom(told), "an operation that tells");
      require(equal(explained, told), "an operation tells what was explained");
    } else {
      require(marks ? dump.markAsFailed() : dump.dumpXMLBlob(kdx::testing::wide(u"<a/>")), "an operation");
    }
    Names expected = namesAfter(explained, before);
    if (writes && limit_ != 0) expected.insert(dump.GetName());
    require(disk_.names() == expected, "the operation does what was explained");
  }

 private:
  static Names namesAfter(const std::vector<kdx::DumpFate>& fates, Names names) {
    for (const kdx::DumpFate& fate : fates) {
      require(names.contains(fate.name) && !fate.reason.empty(), "a reason for a file");
      if (fate.kind != kdx::DumpFate::kStays) names.erase(fate.name);
    }
    for (const kdx::DumpFate& fate : fates) {
      if (fate.kind == kdx::DumpFate::kMarked) names.insert(fate.name + ".failed");
      require(fate.kind != kdx::DumpFate::kRefused, "nothing is refused");
    }
    return names;
  }

  Choices& choices_;
  kdx::EmbeddedSite& site_ = kdx::EmbeddedSite::current();
  Disk disk_;
  kdx::os::ScopedOperatingSystem scope_{disk_};
  std::uint32_t limit_ = 0;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  for (const std::uint32_t id : kSubclients) {
    kdx::EmbeddedSite::current().addApplication({602, id}, {.type = 602});
    kdx::EmbeddedSite::current().addSubclient({602, id}, {.id = id, .directory = "dumps"});
  }
  kdx::testing::ScopedLog errors(-1);
  kdx::testing::repeat(data, size, [](Choices& choices) { Directory(choices).check(); });
  require(errors->take().empty(), "no error is logged");
  return 0;
}
