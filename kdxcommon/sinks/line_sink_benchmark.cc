#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdarg>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <type_traits>

#include "kdxcommon/base/printf_format.h"
#include "kdxcommon/inhouse/embedded_site.h"
#include "kdxcommon/inhouse/zqlib/ev_event.h"
#include "kdxcommon/os/operating_system.h"
#include "kdxcommon/sinks/combined_sinks.h"
#include "kdxcommon/sinks/line_sink.h"
#include "kdxcommon/sinks/log_line.h"
#include "kdxcommon/sinks/rotating_file_sink.h"
#include "kdxcommon/sinks/system_log_sink.h"

namespace kdx {
namespace {

constexpr char kFunction[] = "CDumpFile::dumpXMLBlob";
constexpr std::int64_t kJob = 3456;

// In the working directory, so that it is on a disk even if the system's temporary files aren't.
constexpr char kPath[] = "line_sink_benchmark.log";

// Removes the log and its older files.
struct RemovedAtEnd {
  ~RemovedAtEnd() {
    for (const char* ending : {"", ".1", ".2"}) std::filesystem::remove(kPath + std::string(ending));
  }
};

// The least that a line can cost: the C library formats all of it, and the system writes it in one call.
KDX_PRINTF(2, 3) void formatAndWrite(int descriptor, const char* format, ...) {
  char line[512];
  std::va_list arguments;
  va_start(arguments, format);
  const int length = std::vsnprintf(line, sizeof line, format, arguments);
  va_end(arguments);
  benchmark::DoNotOptimize(os::OperatingSystem::current()._write(descriptor, line, static_cast<std::size_t>(length)));
}

void vsnprintfAndWrite(benchmark::State& state) {
  const RemovedAtEnd file;
  os::OperatingSystem& system = os::OperatingSystem::current();
  const int descriptor = system._open(kPath, os::kOpenWriteOnly | os::kOpenAppend | os::kOpenCreate, os::kModeWrite);
  for (auto _ : state) {
    using namespace std::chrono;
    const sys_time<milliseconds> now(milliseconds(system.GetSystemTimeAsFileTime() / 10'000 - 11'644'473'600'000));
    const auto day = floor<days>(now);
    const year_month_day date(day);
    const hh_mm_ss time(now - day);
    formatAndWrite(descriptor, "%04d-%02u-%02uT%02d:%02d:%02d.%03dZ %u %lld %d %s: %s [%u]\n",
                   static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                   static_cast<unsigned>(date.day()), static_cast<int>(time.hours().count()),
                   static_cast<int>(time.minutes().count()), static_cast<int>(time.seconds().count()),
                   static_cast<int>(time.subseconds().count()), system.GetCurrentThreadId(),
                   static_cast<long long>(kJob), 2, kFunction, "Bytes written ::", 123456U);
  }
  system._close(descriptor);
}
BENCHMARK(vsnprintfAndWrite);
BENCHMARK(vsnprintfAndWrite)->Threads(8)->UseRealTime();

struct DiscardingSink : LineSink {
  void write(const LogRecord& record) override { benchmark::DoNotOptimize(record.text.data()); }
};

// The least that a message can cost whose line is discarded.
KDX_PRINTF(1, 2) void format(const char* format, ...) {
  char text[512];
  std::va_list arguments;
  va_start(arguments, format);
  benchmark::DoNotOptimize(std::vsnprintf(text, sizeof text, format, arguments));
  va_end(arguments);
}

void vsnprintfOnly(benchmark::State& state) {
  for (auto _ : state) format("%s [%u]", "Bytes written ::", 123456U);
}
BENCHMARK(vsnprintfOnly);

// A message of the log, from its formatting to the system.
void writeLine(benchmark::State& state, std::shared_ptr<LineSink> (*makeSink)()) {
  EmbeddedSite& site = EmbeddedSite::current();
  if (state.thread_index() == 0) {
    site.setDebugLevel(2);
    site.setLineSink(makeSink());
  }
  EvEvent event;
  event.setJobId(kJob);
  for (auto _ : state) event.DebugLvl(kFunction, 2, "%s [%u]", "Bytes written ::", 123456U);
  if (state.thread_index() == 0) {
    const RemovedAtEnd file;
    site.setLineSink(nullptr);
    site.setDebugLevel(0);
  }
}
using MakeSink = std::shared_ptr<LineSink>();
constexpr Rotation kRotation = {.maxBytes = 10 << 20, .olderFiles = 2};
template <typename Sink>
std::shared_ptr<LineSink> makeFile(LogFileUse use, LogFormat format) {
  if constexpr (std::is_same_v<Sink, RotatingFileLineSink>) {
    return std::make_shared<Sink>(kPath, kRotation, use, format);
  } else {
    return std::make_shared<Sink>(kPath, use, format);
  }
}
constexpr auto kOne = LogFileUse::kOneProcess, kSeveral = LogFileUse::kSeveralProcesses;
constexpr struct {
  const char* name;
  MakeSink* make;
} kSinks[] = {
    {"plain", [] { return makeFile<FileLineSink>(kOne, LogFormat::kText); }},
    {"plain_json", [] { return makeFile<FileLineSink>(kOne, LogFormat::kJson); }},
    {"rotating", [] { return makeFile<RotatingFileLineSink>(kOne, LogFormat::kText); }},
    {"rotating_several_processes", [] { return makeFile<RotatingFileLineSink>(kSeveral, LogFormat::kText); }},
    {"discarding", []() -> std::shared_ptr<LineSink> { return std::make_shared<DiscardingSink>(); }},
    {"dropping", []() -> std::shared_ptr<LineSink> { return std::make_shared<DescriptorLineSink>(-1); }},
    {"memory", []() -> std::shared_ptr<LineSink> { return std::make_shared<MemoryLineSink>(200); }},
    {"system_log", []() -> std::shared_ptr<LineSink> { return std::make_shared<SystemLogSink>("benchmark"); }},
};
const bool registered = [] {
  for (const auto& [name, make] : kSinks) {
    benchmark::RegisterBenchmark((std::string("writeLine/") + name).c_str(), writeLine, make);
    benchmark::RegisterBenchmark((std::string("writeLine/") + name).c_str(), writeLine, make)
        ->Threads(8)
        ->UseRealTime();
  }
  return true;
}();

// `range` bytes of text: plain, with an e-acute (no escape) and a line break in each 64 bytes.
void composeLine(benchmark::State& state, string_view inEachBlock) {
  string text(static_cast<std::size_t>(state.range()), 'x');
  for (std::size_t i = 20; i + inEachBlock.size() <= text.size(); i += 64) {
    text.replace(i, inEachBlock.size(), inEachBlock);
  }
  const LogRecord record{2, kFunction, kJob, {}, text};
  ScratchText line;
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
// Nothing else but one byte in each block.
BENCHMARK_CAPTURE(composeLine, cjk,
                  "\u8CC7\u6599\u6536\u96C6\u5DE5\u4F5C\u4E4B\u8A18\u9304\u6A94\u6848\u5BEB\u5165\u78C1\u789F\u5B8C"
                  "\u6210\u65BC\u4ECA\u65E5\u4E0B")
    ->Arg(1000);

}  // namespace
}  // namespace kdx
