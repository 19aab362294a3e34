#include "options.h"

#include <CLI/CLI.hpp>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <limits>

#include "failure.h"
#include "input_text.h"
#include "kdxcommon/inhouse/zqutils/subclient_dir.h"

namespace collect_job {
namespace {

constexpr std::int64_t kMaxNumber = std::numeric_limits<std::uint32_t>::max();
constexpr std::int64_t kMaxIteration = std::numeric_limits<std::int32_t>::max();
constexpr std::int64_t kMaxJobId = std::numeric_limits<std::int64_t>::max();

constexpr char kDescription[] =
    "Runs a data-collection job: dumps XML texts into a directory under the retention rules,\n"
    "and shows what then stands there.";

constexpr char kFooter[] =
    R"(Each file is one iteration of the job; a discovery job leaves one dump and takes one file. A text is UTF-8, or UTF-16
with a byte order mark. All texts and the directory are checked before the first dump, so that older dumps stand where
a job can't begin. A job ends at a dump that fails; its dumps are marked as failed with --fail alone.

Exit status:
  0  done
  1  an unexpected error
  2  bad command line or configuration file
  3  a file is missing, can't be read, or is too large for a dump
  4  a text is not valid in its encoding or holds a NUL character
  5  the dump directory, a dump in it or the log file can't be written
  6  the job is refused: its application type leaves no dumps
  7  data collection is switched off for the subclient
  8  a dump failed, or a failed job's dump kept its name
  9  a file changed while the job ran)";

// Whole numbers in decimal, or in hexadecimal behind 0x. A leading zero is refused: it would read as octal.
CLI::Validator numberFrom(std::int64_t low, std::int64_t high) {
  const auto check = [low, high](const std::string& text) -> std::string {
    const bool hexadecimal = text.starts_with("0x");
    const char* const digits = text.data() + (hexadecimal ? 2 : 0);
    const char* const end = text.data() + text.size();
    std::int64_t value = 0;
    const auto [stop, error] = std::from_chars(digits, end, value, hexadecimal ? 16 : 10);
    const bool octal = text.size() > 1 && text[0] == '0' && !hexadecimal;
    if (error == std::errc() && stop == end && !octal && value >= low && value <= high) return {};
    return "'" + text + "' is not a number from " + std::to_string(low) + " to " + std::to_string(high);
  };
  return {check, ""};
}

void addJobOptions(CLI::App& app, Options& options) {
  app.add_option("--app-type", options.applicationType,
                 "Application type: 11, 13, 17, 19, 21, 29, 33, 34, 42, 43, 53 or 600 to 607")
      ->check(numberFrom(0, kMaxNumber));
  app.add_option("--subclient", options.subclientId, "The subclient's id")->check(numberFrom(1, kMaxNumber));
  app.add_option("--app-id-part1", options.appIdPart1, "First number of the application id")
      ->check(numberFrom(0, kMaxNumber));
  app.add_option("--app-id-part2", options.appIdPart2, "Second number of the application id")
      ->check(numberFrom(0, kMaxNumber));
  app.add_option("--options", options.collectionOptions,
                 "Data collection option bits: 0x1 on, 0x200 discovery, 0x100 analysis, 0x10 file analytics")
      ->check(numberFrom(0, kMaxNumber))
      ->default_str("0x201");
  app.add_option("--job", options.jobId, "Job id (one more than the highest in the directory)")
      ->check(numberFrom(1, kMaxJobId));
  const auto setJobType = [&options](const std::string& name) {
    options.jobType = name == "discovery" ? kdx::DISCOVERY_JOB : kdx::ITERATION_JOB;
  };
  app.add_option_function<std::string>("--job-type", setJobType, "iteration or discovery")
      ->check(CLI::IsMember({"iteration", "discovery"}).description(""))
      ->default_str("iteration");
  app.add_option("--first-iteration", options.firstIteration, "Iteration id of the first file")
      ->check(numberFrom(-1, kMaxIteration));
  app.add_flag("--fail", options.fail, "Mark the job as failed at its end");
}

void addSiteOptions(CLI::App& app, Options& options) {
  const auto checkDirectory = [](const std::string& text) {
    const bool fits = !text.empty() && text.size() < kdx::kSubclientDirSize;
    return std::string(fits ? "" : "the name of a directory has from 1 to 1024 bytes");
  };
  app.add_option("--directory", options.directory,
                 "Where the dumps live. Created if it is missing, but not the directory above it")
      ->check(CLI::Validator(checkDirectory, ""));
  app.add_option("--limit", options.limit,
                 "Dumps that the subclient may keep of a job type (1). 0 turns dumping off and deletes every dump")
      ->check(numberFrom(0, kMaxNumber));
  app.add_option("--keep-failed-days", options.keepFailedDays, "How many days old a failed dump may become (30)")
      ->check(numberFrom(0, kMaxNumber));
  app.add_option("--debug-level", options.debugLevel, "Log lines of this level and below: -2 none to 4 all")
      ->check(numberFrom(-2, 4));
  app.add_option("--log-file", options.logFile, "Append the log to this file (standard error)");
  const auto setProgress = [&options](const std::string& name) {
    options.progress = name == "off"        ? ProgressStyle::kOff
                       : name == "in-place" ? ProgressStyle::kInPlace
                                            : ProgressStyle::kLines;
  };
  app.add_option_function<std::string>("--progress", setProgress,
                                       "On standard error: lines (now and then), in-place or off")
      ->check(CLI::IsMember({"lines", "in-place", "off"}).description(""))
      ->default_str("lines");
}

// What the command line gives already stays. CLI11's own way of reading knows no name outside ASCII on Windows.
void readConfiguration(CLI::App& app, const std::string& name) {
  const std::filesystem::path path = pathOf(name);
  std::ifstream file(path);
  if (!file || std::filesystem::is_directory(path)) {
    throw Failure(kBadCommandLine, "can't read the configuration file '" + name + "'");
  }
  app.parse_from_stream(file);
}

}  // namespace

std::optional<Options> parseOptions(int argc, const char* const* argv) {
  Options options;
  CLI::App app(kDescription, "collect_job");
  app.option_defaults()->always_capture_default();
  app.footer(kFooter);
  app.add_option("files", options.files, "XML files (a sample that the program holds)");
  addJobOptions(app, options);
  addSiteOptions(app, options);
  app.allow_windows_style_options(false);  // what begins with a slash is a path on every system
  std::optional<std::string> config;
  app.add_option("--config", config, "Read options from this file, one long name = value a line")->configurable(false);
  app.allow_config_extras(CLI::config_extras_mode::error);
  try {
    app.parse(argc, argv);
    if (config) readConfiguration(app, *config);
  } catch (const CLI::Success& help) {
    app.exit(help);
    return std::nullopt;
  } catch (const CLI::ConfigError& error) {
    throw Failure(kBadCommandLine, "the configuration file has an unknown option: " + std::string(error.what()));
  } catch (const CLI::ParseError& error) {
    throw Failure(kBadCommandLine, error.what());
  }
  if (options.jobType == kdx::DISCOVERY_JOB && options.files.size() > 1) {
    throw Failure(kBadCommandLine, "a discovery job leaves one dump: name one file, or none for the sample");
  }
  return options;
}

}  // namespace collect_job
