// One data-collection job from its start to its end, as an agent runs it: the thread takes a job id, learns whether
// data is to be collected, dumps its XML texts under the retention rules, fails or finishes, and lets the job id go.
//
//   collect_job --limit 2 first.xml second.xml

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <limits>
#include <map>
#include <memory>
#include <new>
#include <optional>
#include <system_error>

#include "console.h"
#include "dump_table.h"
#include "failure.h"
#include "input_text.h"
#include "kdxcommon/dumpfile/dump_file.h"
#include "kdxcommon/inhouse/embedded_site.h"
#include "kdxcommon/inhouse/jxutils/jx_file.h"
#include "kdxcommon/inhouse/jxutils/jx_utf_os_api.h"
#include "kdxcommon/inhouse/zqlib/last_error.h"
#include "kdxcommon/logging/job_identity.h"
#include "kdxcommon/os/operating_system.h"
#include "kdxcommon/settings/subclient_options.h"
#include "options.h"

namespace collect_job {
namespace {

constexpr int kSilent = -2;

// The log speaks while the job runs. What fails before, the program says itself.
class LogWhileRunning {
 public:
  explicit LogWhileRunning(int level) { kdx::EmbeddedSite::current().setDebugLevel(level); }
  ~LogWhileRunning() { kdx::EmbeddedSite::current().setDebugLevel(kSilent); }
  LogWhileRunning(const LogWhileRunning&) = delete;
  LogWhileRunning& operator=(const LogWhileRunning&) = delete;
};

// Tells the library what an installation would know.
void fillSite(const Options& options) {
  kdx::EmbeddedSite& site = kdx::EmbeddedSite::current();
  const kdx::ApplicationKey key = {options.appIdPart1, options.appIdPart2};
  site.addApplication(key, {.type = options.applicationType, .collectsData = true});
  site.addSubclient(
      key,
      {.id = options.subclientId, .dataCollectionOptions = options.collectionOptions, .directory = options.directory});
  if (options.limit) site.setNumber("KDX", "nDUMPFILELIMIT", *options.limit);
  if (options.keepFailedDays) site.setNumber("KDX", "nDAYSTOKEEPFAILEDJOBDUMPFILES", *options.keepFailedDays);

  site.setDebugLevel(kSilent);
  if (options.logFile.empty()) return;
  const auto sink = std::make_shared<kdx::FileLineSink>(options.logFile.c_str());
  if (!sink->opened()) throw Failure(kCannotWrite, "can't write the log file " + options.logFile);
  site.setLineSink(sink);
}

kdx::CDumpFile dumpOf(const Options& options, std::int64_t jobId) {
  return {options.jobType, options.appIdPart1, options.appIdPart2, jobId, options.firstIteration};
}

// The names of the application's dumps begin with this.
std::string dumpPrefix(const Options& options) {
  kdx::CDumpFile dump = dumpOf(options, 1);
  if (dump.getFullName().empty()) {
    throw Failure(kRefusedJob, "application type " + std::to_string(options.applicationType) + " leaves no dumps");
  }
  return dump.getBeginName().c_str();
}

// Makes sure that files can be made in the directory and deleted from it, with a name that is no dump's. Nothing is
// written into it: on a full disk, pruning may yet make the room.
void prepareDirectory(const std::string& directory) {
  const std::filesystem::path path = pathOf(directory);
  std::error_code error;
  std::filesystem::create_directory(path, error);
  if (error) throw Failure(kCannotWrite, "can't make the directory " + directory + ": " + error.message());

  std::string probe = directory + "/collect_job.probe";
  kdx::CJxFile file;
  const auto make = [&] {
    return file.Open(probe.c_str(), kdx::os::kOpenWriteOnly | kdx::os::kOpenCreate | kdx::os::kOpenExclusive,
                     kdx::os::kModeWrite);
  };
  kdx::CJxError failed = make();
  while (failed.IsErrorSet() && std::filesystem::exists(pathOf(probe), error)) {
    probe += '~';
    failed = make();
  }
  if (!failed.IsErrorSet()) failed = file.Close();
  if (!failed.IsErrorSet()) failed = kdx::CJxUTFOSAPI::remove(probe.c_str());
  if (failed.IsErrorSet()) {
    const kdx::ZQLastError reason(failed.GetErrorCode(), kdx::ZQLE_MAJOR);
    throw Failure(kCannotWrite, "can't write into the directory " + directory + ": " + reason.message());
  }
}

// A dump that is to be dumped again could be pruned, or written over, before it is read.
void refuseStandingDumps(const Options& options, const std::vector<Dump>& standing) {
  const std::filesystem::path directory = pathOf(options.directory);
  for (const std::string& file : options.files) {
    for (const Dump& dump : standing) {
      std::error_code error;
      if (std::filesystem::equivalent(pathOf(file), directory / pathOf(dump.name), error)) {
        throw Failure(kBadCommandLine, "'" + file + "' is a dump of the directory that the job prunes: copy it first");
      }
    }
  }
}

std::int64_t chooseJobId(const Options& options, const std::vector<Dump>& standing) {
  if (options.jobId) return *options.jobId;
  std::int64_t highest = 0;
  for (const Dump& dump : standing) highest = std::max(highest, dump.job.value_or(0));
  if (highest == std::numeric_limits<std::int64_t>::max()) {
    throw Failure(kBadCommandLine, "no job id is left above those in " + options.directory + ": choose one with --job");
  }
  return highest + 1;
}

struct JobResult {
  int mode = -1;
  bool fileAnalytics = false;
  std::size_t dumps = 0;
  std::uintmax_t bytes = 0;
  std::optional<Failure> failure;
};

void learnOptions(const Options& options, JobResult& result) {
  bool enabled = false;
  if (!kdx::getKDXSubClientOptions(enabled, result.mode, result.fileAnalytics, options.appIdPart2,
                                   options.appIdPart1)) {
    throw Failure(kRefusedJob, "the subclient's options can't be looked up");
  }
  if (!enabled) {
    throw Failure(kCollectionOff,
                  "data collection is switched off for subclient " + std::to_string(options.subclientId));
  }
}

// A dump of the same job may stand from an earlier run. One that can't be written must stop the job before it prunes.
void checkStandingDumps(kdx::CDumpFile dump, const InputTexts& inputs) {
  for (std::size_t i = 0; i < inputs.size(); ++i, dump.setItrId(dump.getItrId() + 1)) {
    dump.setName();
    const std::filesystem::path path = pathOf(dump.getFullName());
    std::error_code error;
    if (std::filesystem::exists(path, error) && !std::fstream(path, std::ios::in | std::ios::out).is_open()) {
      throw Failure(kCannotWrite, "can't write the dump " + dump.getFullName());
    }
  }
}

void dumpText(kdx::CDumpFile& dump, InputText input) {
  // A write that fails is told in the log alone, so the file's size has to show whether the dump is whole.
  const bool opened = dump.dumpXMLBlob(std::move(input.text));
  const std::string file = dump.getFullName();
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(pathOf(file), error);
  if (!opened || error || size != input.utf8Bytes) {
    throw Failure(kDumpFailed, "the dump " + file + " failed: " + std::to_string(input.utf8Bytes) +
                                   " bytes expected, " +
                                   (error ? "can't be checked: " + error.message() : std::to_string(size) + " there"));
  }
}

void dumpAll(kdx::CDumpFile& dump, const InputTexts& inputs, const Options& options, JobResult& result) {
  const bool dumping = dump.getDumpFileLimit() != 0;
  Progress dumped(options.progress, "dumped", inputs.size());
  for (std::size_t i = 0; i < inputs.size(); ++i) {
    InputText input = inputs.read(i);
    dump.setItrId(options.firstIteration + static_cast<std::int64_t>(i));
    if (dumping) {
      const std::size_t bytes = input.utf8Bytes;
      dumpText(dump, std::move(input));
      result.bytes += bytes;
      ++result.dumps;
    } else {
      dump.dumpXMLBlob(std::move(input.text));
    }
    dumped.advance();
  }
}

void markAsFailed(kdx::CDumpFile& dump) {
  std::map<int, kdx::CJxString> unmarked;
  if (!dump.markAsFailed() || !dump.getAllXmlDumpFilesCreated(unmarked) || !unmarked.empty()) {
    throw Failure(kDumpFailed,
                  "not every dump of job " + std::to_string(dump.getJobId()) + " could be marked as failed");
  }
}

// From the thread's job id to its reset. What fails once dumps may have changed stands in the result, so that the table
// still follows.
JobResult runJob(const Options& options, const InputTexts& inputs, std::int64_t jobId) {
  const LogWhileRunning log(options.debugLevel);
  const kdx::KDXJobIDForCurrentThreadMonitor resetsAtEnd;
  kdx::setJobIDForCurrentThread(jobId);  // the monitor's own constructor takes job ids of 32 bits alone

  JobResult result;
  learnOptions(options, result);
  kdx::CDumpFile dump = dumpOf(options, jobId);
  if (dump.getDumpFileLimit() != 0) checkStandingDumps(dump, inputs);
  const auto attempt = [&result](const auto& step) {
    try {
      step();
    } catch (const Failure& failure) {
      if (!result.failure) result.failure = failure;
    }
  };
  attempt([&] { dumpAll(dump, inputs, options, result); });
  if (options.fail) attempt([&] { markAsFailed(dump); });
  return result;
}

const char* nameOfMode(int mode) {
  return mode == 0 ? "discovery" : mode == 1 ? "analysis" : "none";
}

void report(const Options& options, std::int64_t jobId, const JobResult& result, const std::string& prefix,
            const std::vector<Dump>& before) {
  const std::vector<Dump> after = listDumps(options.directory, prefix);
  const std::vector<Dump> pruned = prunedDumps(before, after, jobId);
  std::cout << "Job " << jobId << " of subclient " << options.subclientId << ", collection mode "
            << nameOfMode(result.mode) << ", file analytics " << (result.fileAnalytics ? "on" : "off") << "\n"
            << "Dumps written: " << result.dumps << ", bytes: " << result.bytes << (options.fail ? ", failed" : "")
            << "\n\n"
            << prefix << " dumps in " << printable(options.directory) << ": " << after.size() << "\n";
  if (!after.empty()) printDumps(std::cout, after);
  std::cout << "\nPruned in this run: " << pruned.size() << "\n";
  if (!pruned.empty()) printDumps(std::cout, pruned);
  if (!std::cout.flush()) throw Failure(kUnexpected, "can't write the table to the standard output stream");
}

int run(int argc, const char* const* argv) {
  const std::optional<Options> options = parseOptions(argc, argv);
  if (!options) return kDone;
  fillSite(*options);
  const std::string prefix = dumpPrefix(*options);
  InputTexts inputs(options->files);
  inputs.check(options->progress);
  prepareDirectory(options->directory);
  const std::vector<Dump> before = listDumps(options->directory, prefix);
  refuseStandingDumps(*options, before);
  const std::int64_t jobId = chooseJobId(*options, before);

  const JobResult result = runJob(*options, inputs, jobId);
  try {
    report(*options, jobId, result, prefix, before);
  } catch (const Failure&) {
    if (!result.failure) throw;  // else the first failure is the one to tell
  }
  if (result.failure) throw *result.failure;
  return kDone;
}

int end(int status, std::string_view reason) {
  std::cerr << "collect_job: " + printable(reason) + "\n";
  return status;
}

}  // namespace
}  // namespace collect_job

int main(int argc, char** argv) {
  using namespace collect_job;
  try {
    return run(argc, argv);
  } catch (const Failure& failure) {
    return end(failure.status(), failure.what());
  } catch (const std::bad_alloc&) {
    return end(kUnexpected, "out of memory");
  } catch (const std::exception& error) {
    return end(kUnexpected, error.what());
  }
}
