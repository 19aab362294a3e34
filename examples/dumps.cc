// Looks at a directory of dumps: lists them, explains what the retention rules would do to each and why, applies the
// rules, and marks a job's dumps as failed.
//
//   dumps explain /var/lib/agent/dumps --limit 3

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <ctime>
#include <iostream>
#include <limits>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "kdxcommon/kdxcommon.h"
#include "table.h"

namespace {

using nlohmann::ordered_json;

/// The exit statuses, from 0 in the order of `--help`.
enum ExitStatus { kDone, kUnexpected, kBadUsage, kUnreadable, kRefused, kAmbiguous };

struct Failure : std::runtime_error {
  Failure(ExitStatus endsWith, const std::string& reason) : std::runtime_error(reason), status(endsWith) {}
  ExitStatus status;
};

struct Options {
  std::string directory;
  std::optional<std::string> prefix;
  std::optional<std::uint32_t> subclient;
  std::optional<std::string> type;
  std::optional<std::int64_t> job;
  std::optional<std::uint32_t> limit;
  std::optional<std::uint32_t> days;
  int debugLevel = 0;
  bool json = false, csv = false, dryRun = false;
};

constexpr char kFooter[] = R"(Examples:
  dumps list /var/dumps                       size, age and name of each dump
  dumps list /var/dumps --job 3456 --json     the parts of the names as JSON
  dumps explain /var/dumps --limit 3          what the next dump would delete
  dumps prune /var/dumps --limit 3 --dry-run  the same
  dumps prune --config dumps.ini              settings from a file, such as
                                                directory = "/var/dumps"
                                                limit = 3
  dumps mark-failed /var/dumps --job 3456     renames the dumps, and deletes
                                              failed dumps of other jobs

The rules work on the dumps of one application, subclient and job type. If the
directory has those of several, choose with --prefix, --subclient and --type.
Control characters and bytes that aren't UTF-8 are escaped in names, as \x1B; in
JSON such bytes are replaced by U+FFFD.

Exit status:
  0  done
  1  an unexpected error, or the output can't be written
  2  bad command line or settings
  3  the directory can't be read
  4  a dump can't be deleted or renamed
  5  no single job to work on: dumps of several applications, subclients or job
     types, no dump of the job to mark, or no next job id)";

std::string inQuotes(const std::string& text) {
  return '\'' + printable(text) + '\'';
}

// Dumps.

std::vector<kdx::DumpRecord> readDumps(const std::string& directory) {
  std::vector<kdx::DumpRecord> dumps;
  const kdx::CJxError error = kdx::listDumps(directory.c_str(), dumps);
  if (error.IsErrorSet()) {
    std::string reason = kdx::ZQLastError(error.GetErrorCode(), kdx::ZQLE_MAJOR).message();
    reason.erase(reason.find_last_not_of("\r\n") + 1);  // Windows' texts end with a line break
    throw Failure(kUnreadable, "can't read the directory " + inQuotes(directory) + ": " + reason);
  }
  std::ranges::sort(dumps, {}, &kdx::DumpRecord::parts);
  return dumps;
}

const char* typeText(kdx::ZQBkpLevel type) {
  return type == kdx::DISCOVERY_JOB ? "discovery" : "iteration";
}

bool isWanted(const Options& options, const kdx::DumpName& dump) {
  const auto matches = [](const auto& wanted, const auto& part) { return !wanted || *wanted == part; };
  return matches(options.prefix, dump.beginName) && matches(options.subclient, dump.scId) &&
         matches(options.type, typeText(dump.jobType)) && matches(options.job, dump.jobId);
}

// Output.

std::string utcText(std::int64_t seconds) {
  const std::time_t time = seconds;
  // Null for a date that the C library doesn't support.
  const std::tm* utc = std::gmtime(&time);  // NOLINT(concurrency-mt-unsafe): the program has one thread
  std::array<char, 64> text{};
  if (utc) std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", utc);
  return text.data();
}

/// Writes rows as JSON, an array of objects, or as CSV.
class Rows {
 public:
  Rows(bool json, std::vector<std::string> columns) : json_(json), columns_(std::move(columns)) {
    for (std::string& column : columns_) {
      if (!json_) std::cout << column << (&column == &columns_.back() ? '\n' : ',');
      column.insert(0, 1, '"').append("\": ");
    }
  }

  /// Adds a row with a value for each column: a text, a number, a boolean or null.
  void add(std::initializer_list<ordered_json> values) {
    row_.clear();
    const std::string* column = columns_.data();
    for (const ordered_json& value : values) {
      if (!row_.empty()) row_ += json_ ? ", " : ",";
      row_ += json_ ? *column++ + dumped(value) : csvValue(value);
    }
    json_ ? std::cout << (std::exchange(first_, false) ? "[{" : ",\n {") << row_ << '}' : std::cout << row_ << '\n';
  }

  void end() const { std::cout << (!json_ ? "" : first_ ? "[]\n" : "]\n"); }

 private:
  static std::string dumped(const ordered_json& value) {
    return value.dump(-1, ' ', false, ordered_json::error_handler_t::replace);
  }
  static std::string csvValue(const ordered_json& value) {
    if (value.is_string()) return csvField(printable(value.get_ref<const std::string&>()));
    return value.is_null() ? "" : value.dump();
  }

  bool json_;
  bool first_ = true;
  std::vector<std::string> columns_;  // as members of a JSON object begin
  std::string row_;
};

void printDumps(const std::vector<kdx::DumpRecord>& dumps) {
  const std::int64_t now = kdx::platformTime(nullptr);
  Table table({{"SIZE", true}, {"AGE", true}, {"NAME"}});
  std::int64_t failed = 0, bytes = 0;
  for (const kdx::DumpRecord& dump : dumps) {
    const bool known = dump.size >= 0;
    table.add(known ? sizeText(dump.size) : "?", known ? ageText(now - dump.modified) : "?", dump.name);
    failed += dump.parts.failed ? 1 : 0;
    bytes += known ? dump.size : 0;
  }
  if (!dumps.empty()) std::cout << table.text(terminalWidth());
  std::cout << countText(std::ssize(dumps), "dump") << ", " << failed << " failed, " << sizeText(bytes) << '\n';
}

void writeDumps(const std::vector<kdx::DumpRecord>& dumps, bool json) {
  Rows rows(json, {"name", "prefix", "subclient", "type", "job", "iteration", "failed", "bytes", "modified"});
  for (const auto& [name, parts, size, modified] : dumps) {
    const bool iterates = parts.jobType == kdx::ITERATION_JOB;
    const bool known = size >= 0;
    rows.add({name, parts.beginName, parts.scId, typeText(parts.jobType), parts.jobId,
              iterates ? ordered_json(parts.itrId) : ordered_json(), parts.failed,
              known ? ordered_json(size) : ordered_json(), known ? ordered_json(utcText(modified)) : ordered_json()});
  }
  rows.end();
}

/// Returns the word for the fate of one file or of several, before or after the operation.
const char* wordOf(kdx::DumpFate::Kind kind, bool done, bool several = false) {
  constexpr const char* kOne[] = {"stays", "goes", "marked", "refused"};
  constexpr const char* kSeveral[] = {"stay", "go", "marked", "refused"};
  if (done && kind == kdx::DumpFate::kGoes) return "deleted";
  return several ? kSeveral[kind] : kOne[kind];
}

/// Prints what an operation would do to each file, or the files on which it was `done`.
void printFates(const std::string& headline, const std::vector<kdx::DumpFate>& fates, bool done) {
  Table table({{"FATE"}, {"NAME"}, {"REASON"}});
  std::map<kdx::DumpFate::Kind, std::int64_t> counts;
  for (const kdx::DumpFate& fate : fates) {
    ++counts[fate.kind];
    if (done && fate.kind == kdx::DumpFate::kStays) continue;
    table.add(wordOf(fate.kind, done), printable(fate.name), printable(fate.reason));
  }
  std::cout << headline << '\n' << table.text(terminalWidth()) << countText(std::ssize(fates), "file");
  const char* separator = ": ";
  for (const auto& [kind, count] : counts) {
    std::cout << std::exchange(separator, ", ") << count << ' ' << wordOf(kind, done, count != 1);
  }
  std::cout << '\n';
}

void writeFates(const std::vector<kdx::DumpFate>& fates, bool done, bool json) {
  Rows rows(json, {"name", "fate", "reason"});
  for (const auto& [name, kind, reason] : fates) {
    if (!done || kind != kdx::DumpFate::kStays) rows.add({name, wordOf(kind, done), reason});
  }
  rows.end();
}

// The subcommands.

void list(const Options& options) {
  std::vector<kdx::DumpRecord> dumps = readDumps(options.directory);
  std::erase_if(dumps, [&](const kdx::DumpRecord& dump) { return !isWanted(options, dump.parts); });
  options.json || options.csv ? writeDumps(dumps, options.json) : printDumps(dumps);
}

/// Returns the application, subclient and job type to work on: the only ones among the dumps that the options choose,
/// for marking among those that aren't marked; otherwise, if there is no dump, those of the options. Returns nothing if
/// there is neither.
std::optional<kdx::DumpName> chosenSeries(const Options& options, const std::vector<kdx::DumpRecord>& dumps,
                                          bool marks) {
  std::set<kdx::DumpName> found;
  for (const kdx::DumpRecord& dump : dumps) {
    const auto& [beginName, scId, jobType, jobId, itrId, failed] = dump.parts;
    if (!isWanted(options, dump.parts) || (marks && failed)) continue;
    found.insert({.beginName = beginName, .scId = scId, .jobType = jobType});
  }
  if (found.empty() && !marks && options.prefix && options.subclient && options.type) {
    const bool discovers = *options.type == typeText(kdx::DISCOVERY_JOB);
    found.insert({.beginName = *options.prefix,
                  .scId = *options.subclient,
                  .jobType = discovers ? kdx::DISCOVERY_JOB : kdx::ITERATION_JOB});
  }
  if (found.empty()) return {};
  if (found.size() == 1) return *found.begin();
  std::string choices;
  for (const kdx::DumpName& series : found) {
    choices += "\n  --prefix " + std::string(series.beginName) + " --subclient " + std::to_string(series.scId) +
               " --type " + typeText(series.jobType);
  }
  throw Failure(kAmbiguous, "the directory has dumps of several applications, subclients or job types:" + choices);
}

std::int64_t jobAfter(const std::vector<kdx::DumpRecord>& dumps) {
  std::int64_t highest = 0;
  for (const kdx::DumpRecord& dump : dumps) highest = std::max(highest, dump.parts.jobId);
  if (highest == std::numeric_limits<std::int64_t>::max()) throw Failure(kAmbiguous, "no higher job id is left");
  return highest + 1;
}

/// Sorts by the parts of the names; those that aren't named as dumps come last.
void sortByJob(std::vector<kdx::DumpFate>& fates) {
  std::vector<std::pair<kdx::DumpName, kdx::DumpFate>> sorted;
  for (kdx::DumpFate& fate : fates) {
    constexpr kdx::DumpName kLast = {.beginName = "~"};
    const kdx::DumpName parts = kdx::parseDumpName(fate.name).value_or(kLast);
    sorted.emplace_back(parts, std::move(fate));
  }
  std::ranges::sort(sorted, {}, [](const auto& named) { return std::tie(named.first, named.second.name); });
  fates.clear();
  for (auto& named : sorted) fates.push_back(std::move(named.second));
}

/// Applies an operation of CDumpFile, or explains it, and prints what it returns.
void apply(Options options, bool marks, bool explains) {
  const std::vector<kdx::DumpRecord> dumps = readDumps(options.directory);
  const std::optional<std::int64_t> job = options.job;
  if (!marks) options.job.reset();  // the job may have no dump yet
  const std::optional<kdx::DumpName> series = chosenSeries(options, dumps, marks);
  if (!series && marks) throw Failure(kAmbiguous, "job " + std::to_string(*job) + " has no dump to mark");
  kdx::EmbeddedSite& site = kdx::EmbeddedSite::current();
  if (options.limit) site.setNumber("KDX", "nDUMPFILELIMIT", *options.limit);
  if (options.days) site.setNumber("KDX", "nDAYSTOKEEPFAILEDJOBDUMPFILES", *options.days);
  std::vector<kdx::DumpFate> fates;
  std::string headline = "No dumps";
  if (series) {
    site.addApplication({1, 1}, {.type = kdx::applicationTypeOf(series->beginName)});
    site.addSubclient({1, 1}, {.id = series->scId, .directory = options.directory});
    kdx::CDumpFile dump(series->jobType, 1, 1, job ? *job : jobAfter(dumps), 0);
    const bool done = marks ? (explains ? dump.explainMarkAsFailed(fates) : dump.markAsFailed(fates))
                            : (explains ? dump.explainDumpXMLBlob(fates) : dump.makeRoom(fates));
    if (!done) throw Failure(kUnreadable, "can't read the directory " + inQuotes(options.directory));
    headline = (marks ? "Marking job " : "Before a dump of job ") + std::to_string(dump.getJobId()) + " (" +
               std::string(series->beginName) + ", subclient " + std::to_string(series->scId) + ", " +
               typeText(series->jobType) + "; " +
               (marks ? "" : "limit " + std::to_string(dump.getDumpFileLimit()) + ", ") +
               countText(dump.getDaysToKeepFailedJobDumpFiles(), "day") + "):";
  }
  sortByJob(fates);
  options.json || options.csv ? writeFates(fates, !explains, options.json) : printFates(headline, fates, !explains);
  const auto refused = [](const kdx::DumpFate& fate) { return fate.kind == kdx::DumpFate::kRefused; };
  if (std::ranges::any_of(fates, refused)) throw Failure(kRefused, "not every dump could be deleted or renamed");
}

// The command line.

/// One help for the whole program, whatever the subcommand.
struct Help : CLI::Formatter {
  std::string make_usage(const CLI::App*, std::string) const override {
    return "Usage: dumps SUBCOMMAND DIRECTORY [OPTIONS]\n";
  }
};

void addOptions(CLI::App& app, Options& options) {
  auto help = std::make_shared<Help>();
  help->column_width(24);
  app.formatter(help);
  app.footer(kFooter);
  app.fallthrough();
  app.allow_windows_style_options(false);  // an argument that begins with a slash is a path on every system
  app.set_version_flag("--version", std::string("dumps ") + kdx::version());
  app.set_config("--config", "", "Reads options from a file, without their dashes");
  app.allow_config_extras(CLI::config_extras_mode::error);
  app.add_option("directory", options.directory, "The directory of the dumps");
  app.add_option("--prefix", options.prefix, "Dumps of this prefix, such as KDXSQLDump");
  app.add_option("--subclient", options.subclient, "Dumps of this subclient")->check(CLI::PositiveNumber);
  app.add_option("--type", options.type, "Dumps of this job type: iteration, discovery")
      ->check(CLI::IsMember({typeText(kdx::ITERATION_JOB), typeText(kdx::DISCOVERY_JOB)}).description(""));
  app.add_option("--job", options.job, "The job (explain, prune: the next job)")->check(CLI::PositiveNumber);
  app.add_option("--limit", options.limit, "Dumps that may be kept (explain: 1)");
  app.add_option("--days", options.days, "Days that failed dumps are kept (30)");
  app.add_option("--debug-level", options.debugLevel, "Log lines up to this level: -2 none to 4 all (0)");
  app.add_flag("--json", options.json, "As JSON, an array of objects");
  app.add_flag("--csv", options.csv, "As CSV, with a line of titles");
}

struct Subcommand {
  const char* name;
  const char* description;
  void (*run)(const Options&);
};

constexpr Subcommand kSubcommands[] = {
    {"list", "Lists the dumps with size and age", list},
    {"explain", "Shows which files a job's dump would delete, and why",
     [](const Options& options) { apply(options, false, true); }},
    {"prune", "Deletes them, and shows what it deleted; needs --limit",
     [](const Options& options) {
       if (!options.limit) throw Failure(kBadUsage, "prune needs --limit");
       apply(options, false, options.dryRun);
     }},
    {"mark-failed", "Renames a job's dumps to failed ones; needs --job",
     [](const Options& options) {
       if (!options.job) throw Failure(kBadUsage, "mark-failed needs --job");
       apply(options, true, options.dryRun);
     }},
};

int run(int argc, char** argv) {
  CLI::App app("Looks at a directory of dumps and applies the retention rules to it.", "dumps");
  Options options;
  addOptions(app, options);
  void (*chosen)(const Options&) = nullptr;
  for (const Subcommand& subcommand : kSubcommands) {
    CLI::App* added = app.add_subcommand(subcommand.name, subcommand.description);
    added->set_help_flag();
    added->callback([&chosen, &subcommand] { chosen = subcommand.run; });
  }
  app.add_flag("--dry-run", options.dryRun, "With prune, mark-failed: only explains");
  app.require_subcommand(1);
  try {
    app.parse(argc, argv);
  } catch (const CLI::CallForHelp&) {
    std::cout << app.get_formatter()->make_help(&app, app.get_name(), CLI::AppFormatMode::Normal);
    return kDone;
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) return app.exit(error);
    throw Failure(kBadUsage, printable(error.what()));
  }
  if (options.directory.empty()) throw Failure(kBadUsage, "a directory is required");
  if (options.json && options.csv) throw Failure(kBadUsage, "--json excludes --csv");
  if (options.prefix && kdx::applicationTypeOf(*options.prefix) == 0) {
    throw Failure(kBadUsage, "no application's dumps have the prefix " + inQuotes(*options.prefix));
  }
  kdx::EmbeddedSite::current().setDebugLevel(options.debugLevel);
  chosen(options);
  return kDone;
}

}  // namespace

int main(int argc, char** argv) {
  std::ios::sync_with_stdio(false);
  try {
    int status = kDone;
    try {
      status = run(argc, argv);
    } catch (const Failure& failure) {
      std::cout << std::flush;
      std::cerr << "dumps: " << failure.what() << '\n';
      status = failure.status;
    }
    if (!std::cout.flush()) throw std::runtime_error("can't write to the standard output");
    return status;
  } catch (const std::exception& error) {
    std::cerr << "dumps: " << error.what() << '\n';
    return kUnexpected;
  }
}
