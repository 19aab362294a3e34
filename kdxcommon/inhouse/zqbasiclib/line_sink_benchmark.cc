#include <benchmark/benchmark.h>

#include <cstdio>
#include <ctime>
#include <filesystem>
#include <memory>

#include "kdxcommon/inhouse/embedded_site.h"
#include "kdxcommon/inhouse/zqbasiclib/line_sink.h"
#include "kdxcommon/inhouse/zqbasiclib/log_line.h"
#include "kdxcommon/inhouse/zqlib/ev_event.h"
#include "kdxcommon/os/operating_system.h"

namespace kdx {
namespace {

constexpr char kFunction[] = "CDumpFile::dumpXMLBlob";
constexpr std::int64_t kJob = 3456;

// A file in the working directory, so that it lies on a disk even where the system's temporary files don't.
struct LogFile {
  ~LogFile() { std::filesystem::remove(path); }
  const char* path = "line_sink_benchmark.log";
};

// The site's log goes to a file at level 2 while one stands.
struct LogToFile {
  LogToFile() {
    EmbeddedSite::current().setDebugLevel(2);
    EmbeddedSite::current().setLineSink(std::make_shared<FileLineSink>(file.path));
  }
  ~LogToFile() {
    EmbeddedSite::current().setLineSink(nullptr);
    EmbeddedSite::current().setDebugLevel(0);
  }
  LogFile file;
};
std::unique_ptr<LogToFile> logToFile;

void openLog(const benchmark::State& /*state*/) {
  logToFile = std::make_unique<LogToFile>();
}
void closeLog(const benchmark::State& /*state*/) {
  logToFile.reset();
}

// What a line costs at least: the C library formats all of it, and the system takes it in one write.
void vsnprintfAndWrite(benchmark::State& state) {
  const LogFile file;
  OperatingSystem& system = OperatingSystem::current();
  const int descriptor = system._open(file.path, kOpenWriteOnly | kOpenAppend | kOpenCreate, kModeWrite);
  for (auto _ : state) {
    const std::uint64_t milliseconds = system.GetSystemTimeAsFileTime() / 10'000 - 11'644'473'600'000;
    const std::time_t seconds = static_cast<std::time_t>(milliseconds / 1000);
    const std::tm time = *std::gmtime(&seconds);
    char line[512];
    const int length = std::snprintf(line, sizeof line, "%04d-%02d-%02dT%02d:%02d:%02d.%03dZ %u %lld %d %s: %s [%u]\n",
                                     time.tm_year + 1900, time.tm_mon + 1, time.tm_mday, time.tm_hour, time.tm_min,
                                     time.tm_sec, static_cast<int>(milliseconds % 1000), system.GetCurrentThreadId(),
                                     static_cast<long long>(kJob), 2, kFunction, "Bytes written ::", 123456U);
    benchmark::DoNotOptimize(system._write(descriptor, line, static_cast<std::size_t>(length)));
  }
  system._close(descriptor);
}
BENCHMARK(vsnprintfAndWrite);

void writeLine(benchmark::State& state) {
  EvEvent event;
  event.setJobId(kJob);
  for (auto _ : state) event.DebugLvl(kFunction, 2, "%s [%u]", "Bytes written ::", 123456U);
}
BENCHMARK(writeLine)->Setup(openLog)->Teardown(closeLog);
BENCHMARK(writeLine)->Setup(openLog)->Teardown(closeLog)->Threads(8)->UseRealTime();

void dropLine(benchmark::State& state) {
  const EvEvent event;
  for (auto _ : state) event.DebugLvl(kFunction, 4, "%s [%u]", "Bytes written ::", 123456U);
}
BENCHMARK(dropLine);

// `range` bytes of text: plain, with an e-acute (no escape) and a line break in each 64 bytes.
void composeLine(benchmark::State& state, string_view inEachBlock) {
  string text(static_cast<std::size_t>(state.range()), 'x');
  for (std::size_t i = 20; i + inEachBlock.size() <= text.size(); i += 64) {
    text.replace(i, inEachBlock.size(), inEachBlock);
  }
  const LogRecord record{2, kFunction, kJob, {}, text};
  string line;
  for (auto _ : state) {
    line.clear();
    appendLogLine(record, {134'083'026'051'230'000, 4711}, line);
    benchmark::DoNotOptimize(line.data());
  }
}
BENCHMARK_CAPTURE(composeLine, plain, "")->Arg(24)->Arg(1000)->Arg(100'000);
BENCHMARK_CAPTURE(composeLine, accents, "\xC3\xA9")->Arg(1000);
BENCHMARK_CAPTURE(composeLine, quotes, "\xE2\x80\x99")->Arg(1000);
BENCHMARK_CAPTURE(composeLine, line_breaks, "\n")->Arg(1000);

}  // namespace
}  // namespace kdx
