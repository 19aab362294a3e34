// Operations on a directory of dumps, and what holds there whatever fails and wherever the process ends.

#ifndef KDXCOMMON_TESTING_DUMP_SCENARIOS_H_
#define KDXCOMMON_TESTING_DUMP_SCENARIOS_H_

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "kdxcommon/dumpfile/dump_file.h"
#include "kdxcommon/testing/dump_site.h"
#include "kdxcommon/testing/recording_line_sink.h"
#include "kdxcommon/testing/wide_text.h"

namespace kdx::testing {

/// A directory with dumps of jobs 3, 4 and 5, of which 5 is running, failed dumps, and files that no rule touches.
class DumpStage {
 public:
  using Files = std::map<std::string, std::string>;

  DumpStage() {
    site_.setLimit(5);
    site_.setDays(30);
  }

  Files files() const {
    Files files;
    for (const std::string& name : site_.names()) files[name] = site_.directory.read(name);
    return files;
  }

  /// Puts back what stood at first.
  void restore() const {
    for (const std::string& name : site_.names()) {
      if (!kFirst.contains(name)) std::filesystem::remove(utf8Path(path(name)));
    }
    for (const auto& [name, content] : kFirst) {
      if (site_.directory.read(name) == content) continue;
      std::filesystem::remove(utf8Path(path(name)));  // some systems are slow to truncate a file
      site_.directory.write(name, content);
      FixedClock().date(path(name), FixedClock().now - (content == "expired" ? 31 * 86'400 : 0));
    }
  }

  std::string path(const std::string& name) const { return site_.directory.path(name); }
  std::string directory() const { return site_.directory.path(); }
  CDumpFile dump(int iteration) const { return {ITERATION_JOB, 602, 7, 5, iteration}; }

  static constexpr char kText[] = "<new dump=\"5\"/>";

  // Whatever happened: what no rule touches stands, so does each dump of the running job under one of its two names,
  // and the one that is written holds a part of its text. No file is gone that an untouched run keeps.
  void expectSound(const Files& untouched, const std::string& written) const {
    const Files now = files();
    for (const auto& [name, content] : kFirst) {
      const bool isOwn = name.find("_JOB_5_") != std::string::npos && name.ends_with(".txt");
      const auto found = isOwn && !now.contains(name) ? now.find(name + ".failed") : now.find(name);
      if (found == now.end()) {
        EXPECT_TRUE(!isOwn && (!untouched.contains(name) || name.find("_JOB_5_") != std::string::npos)) << name;
      } else if (name == written) {
        EXPECT_TRUE(found->second == content || std::string(kText).starts_with(found->second)) << found->second;
      } else {
        EXPECT_TRUE(found->second == content || found->second == untouched.at(name)) << name;
      }
    }
    for (const auto& [name, content] : now) EXPECT_TRUE(kFirst.contains(name) || untouched.contains(name)) << name;
  }

  static inline const Files kFirst = {
      {"KDXSQLDump_SC_7_JOB_3_ITR_0.txt", "3"},
      {"KDXSQLDump_SC_7_JOB_3_ITR_1.txt", "3"},
      {"KDXSQLDump_SC_7_JOB_4_ITR_0.txt", "4"},
      {"KDXSQLDump_SC_7_JOB_5_ITR_0.txt", "own 0"},
      {"KDXSQLDump_SC_7_JOB_5_ITR_1.txt", "own 1"},
      {"KDXSQLDump_SC_7_JOB_5_ITR_0.txt.failed", "older"},
      {"KDXSQLDump_SC_7_JOB_4_ITR_1.txt.failed", "failed"},
      {"KDXSQLDump_SC_8_JOB_2_ITR_0.txt.failed", "expired"},
      {"KDXSQLDump_SC_8_JOB_1_ITR_0.txt", "of another subclient"},
      {"KDXSQLDump_SC_7_DISCOVERY_JOB_1.txt", "of another job type"},
      {"KDXSQLDump_SC_7_JOB_1_ITR_0.txt.bak", "foreign"},
      {"notes", "foreign"},
  };

 private:
  DumpSite site_{602, 7};
};

/// An operation, the dump that it writes, and whether it handles the names found so far if the directory can't be read
/// to its end, and reports that by its result alone. Returns the operation's result and checks its outputs.
struct DumpScenario {
  const char* name;
  bool (*run)(const DumpStage& stage);
  const char* written = "";
  bool usesPartOfListing = false;
};

inline const DumpScenario kDumpScenarios[] = {
    {"dump", [](const DumpStage& s) { return s.dump(2).dumpXMLBlob(wide(u"<new dump=\"5\"/>")); },
     "KDXSQLDump_SC_7_JOB_5_ITR_2.txt"},
    {"dump over a dump", [](const DumpStage& s) { return s.dump(1).dumpXMLBlob(wide(u"<new dump=\"5\"/>")); },
     "KDXSQLDump_SC_7_JOB_5_ITR_1.txt"},
    {"prune", [](const DumpStage& s) { return s.dump(2).pruneDumpXMLBlob(); }},
    {"prune failed", [](const DumpStage& s) { return s.dump(2).pruneFailedDumpXMLBlob(); }},
    {"prune expired", [](const DumpStage& s) { return s.dump(2).pruneTimeExceededFailedDumpFiles(); }},
    {"mark", [](const DumpStage& s) { return s.dump(2).markAsFailed(); }},
    {"last iteration",
     [](const DumpStage& s) {
       std::int64_t last = 7;
       const bool known = s.dump(2).getLastItrIdUsedForDumping(last);
       EXPECT_EQ(last, known ? 1 : -1);
       return known;
     }},
    {"own dumps",
     [](const DumpStage& s) {
       std::map<int, CJxString> own;
       const bool known = s.dump(2).getAllXmlDumpFilesCreated(own);
       EXPECT_EQ(own.size(), known ? 2U : 0U);
       return known;
     }},
    {"list",
     [](const DumpStage& s) {
       std::vector<CJxString> found;
       const CJxError error = CDumpFile::getFilesOfPattern(s.directory().c_str(), "KDXSQLDump_SC_7_JOB_*.txt", found);
       EXPECT_TRUE(found.size() == 5 || (error.IsErrorSet() && found.size() < 6));
       return !error.IsErrorSet();
     },
     "", true},
    {"delete",
     [](const DumpStage& s) {
       return !CDumpFile::delFilesOfPattern(s.directory().c_str(), "KDXSQLDump_SC_7_JOB_3_*.txt").IsErrorSet();
     },
     "", true},
};

/// The files after an untouched run.
inline DumpStage::Files filesAfter(const DumpStage& stage, const DumpScenario& scenario) {
  stage.restore();
  EXPECT_TRUE(scenario.run(stage)) << scenario.name;
  return stage.files();
}

/// A run after one that failed leaves what an untouched one does, but for the half of a job that is within the limit.
inline void expectNextRunSound(const DumpStage& stage, const DumpScenario& scenario,
                               const DumpStage::Files& untouched) {
  EXPECT_TRUE(scenario.run(stage));
  DumpStage::Files files = stage.files();
  const auto isHalf = [&](const auto& file) { return file.second == "3" && !untouched.contains(file.first); };
  EXPECT_LE(std::erase_if(files, isHalf), 1U);
  EXPECT_EQ(files, untouched);
}

}  // namespace kdx::testing

#endif  // KDXCOMMON_TESTING_DUMP_SCENARIOS_H_
