// Runs one data-collection job as an agent does: the thread gets a job id, checks whether data is to be collected,
// dumps its XML texts under the retention rules, and marks the dumps as failed if an error occurs.

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cctype>
#include <chrono>
#include <filesystem>
#include <iostream>

#include "input_text.h"
#include "kdxcommon/kdxcommon.h"
#include "table.h"

namespace {

namespace fs = std::filesystem;
constexpr kdx::ApplicationKey kApplication = {1, 1};

struct Options {
  std::vector<std::string> files = {""};  // one iteration each; the empty name is the sample
  std::optional<std::int64_t> jobId;      // none: the next free one
  kdx::ApplicationRecord application = {.type = 605, .collectsData = true};
  kdx::SubclientRecord subclient = {.id = 7, .dataCollectionOptions = 0x201, .directory = "dumps"};
  std::optional<std::uint32_t> limit;  // none: the library's default
  int debugLevel = 0;
};

constexpr char kFooter[] = R"(Examples:
  collect_job --limit 2 first.xml second.xml
  generate | collect_job --directory /var/dumps -

Each text is one iteration: UTF-8, or UTF-16 with a byte order mark. Its dump is UTF-8. An XML declaration that names
another encoding is corrected, or rejected if it may be right. If an error occurs, the job's dumps are marked as failed.

Exit status:
  0  done
  1  an unexpected error
  2  bad command line
  3  a text can't be read
  4  a text is not valid, contains a NUL character or declares another encoding
  5  the directory or a dump can't be written
  6  the job is rejected: its id is in use, or its application type has no dumps
  7  data collection is switched off for the subclient
  8  a dump is missing at the end of the job: another job has pruned it)";

void addOptions(CLI::App& app, Options& options) {
  app.footer(kFooter);
  app.allow_windows_style_options(false);  // an argument that begins with a slash is a path on every system
  app.set_version_flag("--version", std::string("collect_job ") + kdx::version());
  app.add_option("files", options.files, "XML files or pipes, - for the standard input (a sample)");
  app.add_option("--directory", options.subclient.directory,
                 "Directory of the dumps, created if it is missing (dumps)");
  app.add_option("--job,--job-id", options.jobId, "Job id (the next free one in the directory)");
  app.add_option("--app-type", options.application.type, "Application type (605)");
  app.add_option("--subclient", options.subclient.id, "The subclient's id (7)");
  app.add_option("--options", options.subclient.dataCollectionOptions,
                 "Data collection bits: 0x1 on, 0x200 discovery, 0x100 analysis, 0x10 file analytics (0x201)");
  app.add_option("--limit", options.limit,
                 "Number of dumps that the subclient may keep (1). 0 deletes all and writes none");
  app.add_option("--debug-level", options.debugLevel, "Log lines of this level and below: -2 none to 4 all (0)");
}

fs::path pathOf(const std::string& utf8) {
  return std::u8string(utf8.begin(), utf8.end());
}

std::string systemReason(std::uint32_t code = kdx::platformGetLastError()) {
  return kdx::ZQLastError(code, kdx::ZQLE_MAJOR).message();
}

// Writes one line to the standard error stream, with control characters replaced by question marks, since they could
// break the line or move the cursor of a terminal.
void report(std::string text) {
  for (char& c : text) c = std::iscntrl(static_cast<unsigned char>(c)) ? '?' : c;
  std::cerr << "collect_job: " << text << std::endl;
}

// Shows the progress of a long job: in place on a terminal, otherwise as one line per second.
struct Progress {
  using Clock = std::chrono::steady_clock;
  ~Progress() { std::cerr << (shown && inPlace ? "\n" : "") << std::flush; }
  void show(std::size_t done, std::size_t total) {
    if (Clock::now() < due && !(shown && inPlace && done == total)) return;
    shown = true;
    due = Clock::now() + std::chrono::milliseconds(inPlace ? 100 : 1000);
    // In place, the cursor returns to the start of the line, so that a log line overwrites this one.
    std::cerr << "collect_job: " << done << " of " << total << " texts dumped" << (inPlace ? '\r' : '\n') << std::flush;
  }
  // A terminal is a character device. So is /dev/null, which accepts anything. Windows has no such file and gets lines.
  std::error_code ignored;
  const bool inPlace = fs::is_character_file("/dev/stderr", ignored);
  bool shown = false;
  Clock::time_point due = Clock::now() + std::chrono::seconds(1);
};

std::vector<kdx::DumpRecord> readDumps(const std::string& directory) {
  std::vector<kdx::DumpRecord> dumps;
  const kdx::CJxError error = kdx::listDumps(directory.c_str(), dumps);
  const std::string reason = systemReason(error.GetErrorCode());
  if (error.IsErrorSet()) throw Failure(kCannotWrite, "can't list the directory " + directory + ": " + reason);
  std::ranges::sort(dumps, {}, &kdx::DumpRecord::parts);
  return dumps;
}

std::int64_t highestJobId(const std::string& directory) {
  std::int64_t highest = 0;
  for (const kdx::DumpRecord& dump : readDumps(directory)) highest = std::max(highest, dump.parts.jobId);
  return highest;
}

std::int64_t jobIdAfter(std::int64_t id) {
  if (id == std::numeric_limits<std::int64_t>::max()) throw Failure(kRefused, "no higher job id is left");
  return id + 1;
}

void checkCollection() {
  bool enabled = false, fileAnalytics = false;
  int mode = -1;
  if (!kdx::getKDXSubClientOptions(enabled, mode, fileAnalytics, kApplication.appIdPart2, kApplication.appIdPart1)) {
    throw Failure(kRefused, "the subclient's options can't be looked up");
  }
  if (!enabled) throw Failure(kCollectionOff, "data collection is switched off for the subclient");
  constexpr const char* kModes[] = {"none", "discovery", "analysis"};
  std::cout << "Collection mode " << kModes[mode + 1] << ", file analytics " << (fileAnalytics ? "on" : "off") << "\n";
}

void dumpAll(kdx::CDumpFile& dump, const std::vector<std::string>& files) {
  Progress progress;
  for (std::size_t i = 0; i < files.size(); ++i) {
    InputText input = readInput(files[i]);
    dump.setItrId(static_cast<std::int64_t>(i));
    const bool opened = dump.dumpXMLBlob(std::move(input.text));
    const std::uint32_t code = kdx::platformGetLastError();  // before another call changes it
    // A failed write is only logged, so the size of the file determines whether the dump is complete.
    const std::string file = dump.getFullName();
    std::error_code gone;
    const bool cut = fs::file_size(pathOf(file), gone) != input.utf8Bytes && !gone;
    if (!opened || cut) throw Failure(kCannotWrite, "can't write the dump " + file + ": " + systemReason(code));
    progress.show(i + 1, files.size());
  }
  std::map<int, kdx::CJxString> standing;
  const bool listed = dump.getDumpFileLimit() != 0 && dump.getAllXmlDumpFilesCreated(standing);
  if (listed && standing.size() < files.size()) throw Failure(kGone, "another job has pruned dumps of this one");
}

void showDumps(const kdx::CDumpFile& dump, const std::string& directory) {
  Table table({{.right = true}, {}});
  for (const kdx::DumpRecord& other : readDumps(directory)) {
    if (dump.getBeginName() == std::string(other.parts.beginName).c_str()) table.add(sizeText(other.size), other.name);
  }
  std::cout << "After job " << dump.getJobId() << ", " << printable(directory) << " holds:\n"
            << table.text(terminalWidth(), 2) << "See also: dumps explain " << printable(directory) << "\n";
}

void runJob(const Options& options, std::int64_t jobId) {
  const kdx::KDXJobIDForCurrentThreadMonitor resetsAtEnd;
  kdx::setJobIDForCurrentThread(jobId);  // the monitor's own constructor takes only 32-bit job ids
  checkCollection();
  kdx::CDumpFile dump(kdx::ITERATION_JOB, kApplication.appIdPart1, kApplication.appIdPart2, jobId, 0);
  if (dump.getFullName().empty()) throw Failure(kRefused, "no dump can have such a job, subclient or application type");
  try {
    dumpAll(dump, options.files);
  } catch (...) {
    dump.markAsFailed();
    const std::string reason = systemReason();
    std::map<int, kdx::CJxString> unmarked;
    dump.getAllXmlDumpFilesCreated(unmarked);
    if (!unmarked.empty()) report("not every dump could be marked as failed: " + reason);
    showDumps(dump, options.subclient.directory);
    throw;
  }
  showDumps(dump, options.subclient.directory);
}

void run(const Options& options) {
  kdx::EmbeddedSite& site = kdx::EmbeddedSite::current();  // provides the data of an installation
  site.addApplication(kApplication, options.application);
  site.addSubclient(kApplication, options.subclient);
  if (options.limit) site.setNumber("KDX", "nDUMPFILELIMIT", *options.limit);
  site.setDebugLevel(options.debugLevel);
  // A job claims its id by creating a lock directory, which exists while the job runs. The lock isn't a dump, so it is
  // never pruned. A lock that remains after a crash blocks only its own id.
  std::error_code error;
  const auto release = [&error](const std::string* lock) { fs::remove(pathOf(*lock), error); };
  const std::string& directory = options.subclient.directory;
  fs::create_directory(pathOf(directory));
  for (std::int64_t id = options.jobId ? *options.jobId : jobIdAfter(highestJobId(directory));; id = jobIdAfter(id)) {
    const std::string lock = directory + "/collect_job_" + std::to_string(id) + ".lock";
    const bool claimed = fs::create_directory(pathOf(lock), error);
    if (error && error != std::errc::file_exists) throw fs::filesystem_error("can't make a lock", pathOf(lock), error);
    const std::unique_ptr<const std::string, decltype(release)> claim(claimed ? &lock : nullptr, release);
    // A job that has ended since the directory was listed may have had this id or a higher one.
    if (claimed && (options.jobId || highestJobId(directory) < id)) return runJob(options, id);
    if (options.jobId) throw Failure(kRefused, "job " + std::to_string(id) + " is running; if not, remove " + lock);
  }
}

}  // namespace

int main(int argc, char** argv) {
  try {
    CLI::App app("Runs a data-collection job, which dumps XML texts under the retention rules.", "collect_job");
    Options options;
    addOptions(app, options);
    try {
      app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {  // or --help and --version
      return app.exit(error) == 0 ? kDone : kBadUsage;
    }
    run(options);
    if (!std::cout.flush()) throw Failure(kUnexpected, "can't write to the standard output: " + systemReason());
    return kDone;
  } catch (const Failure& failure) {
    report(failure.what());
    return failure.status;
  } catch (const fs::filesystem_error& error) {
    report(error.what());
    return kCannotWrite;
  } catch (const std::exception& error) {
    std::cerr << "collect_job: " << error.what() << "\n";  // there may be no memory left to build a text
    return kUnexpected;
  }
}
