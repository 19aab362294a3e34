#include "kdxcommon/sinks/line_sink.h"

#include <cstddef>
#include <string>

#include "kdxcommon/os/operating_system.h"
#include "kdxcommon/sinks/file_lock.h"
#include "kdxcommon/sinks/log_line.h"

namespace kdx {
namespace {

constexpr bool isCut(std::uint32_t cuts) {
  return cuts % 2 != 0;
}

// Counts one more truncated line and returns the new count: a line break that another thread writes after an earlier
// one doesn't end this one.
std::uint32_t countCut(std::atomic<std::uint32_t>& cuts) {
  const auto next = [](std::uint32_t count) { return (count + 1) | 1; };
  std::uint32_t count = cuts.load();
  while (!cuts.compare_exchange_weak(count, next(count))) {
  }
  return next(count);
}

}  // namespace

LineSink::~LineSink() = default;

void DescriptorLineSink::write(const LogRecord& record) {
  if (drops()) return;
  os::OperatingSystem& system = os::OperatingSystem::current();
  char room[1024];  // for most lines; longer ones go to the heap
  ScratchMemory memory(room, sizeof room);
  ScratchText line(&memory);
  line.reserve(128 + record.function.size() + record.text.size() + record.errorText.size());
  line += '\n';
  const LogOrigin origin = {system.GetSystemTimeAsFileTime(), system.GetCurrentThreadId()};
  const auto appendLine = format_ == LogFormat::kJson ? appendJsonLine : appendLogLine;
  appendLine(record, origin, line);
  writeLine(line, origin.fileTime);
}

void DescriptorLineSink::writeLine(string_view line, std::uint64_t /*fileTime*/) {
  const FileLock lock(os::OperatingSystem::current(), descriptor_, care_ == Care::kLock);
  append(line);
}

std::size_t DescriptorLineSink::append(string_view line) {
  os::OperatingSystem& system = os::OperatingSystem::current();
  std::uint32_t cuts = cuts_.load();
  if (!isCut(cuts)) line.remove_prefix(1);
  const std::size_t length = line.size();
  while (!line.empty()) {
    const std::int64_t written = care_ == Care::kSignal
                                     ? system.writeWithoutSignal(descriptor_, line.data(), line.size())
                                     : system._write(descriptor_, line.data(), line.size());
    if (written <= 0) return length - line.size();
    line.remove_prefix(static_cast<std::size_t>(written));
    if (!line.empty()) cuts = countCut(cuts_);  // until the rest is written
  }
  if (isCut(cuts)) cuts_.compare_exchange_strong(cuts, cuts + 1);
  return length;
}

FileLineSink::FileLineSink(const char* path, LogFileUse use, LogFormat format)
    : DescriptorLineSink(os::OperatingSystem::current()._open(
                             path, os::kOpenWriteOnly | os::kOpenAppend | os::kOpenCreate, os::kModeWrite),
                         format) {
  // No caller can redirect this descriptor, so a regular file stays one.
  if (!opened() || os::OperatingSystem::current().GetFileType(descriptor_) != os::kFileTypeDisk) return;
  const bool locks = use == LogFileUse::kSeveralProcesses && !os::appendsWhole();
  care_ = locks ? Care::kLock : Care::kNone;
}

FileLineSink::~FileLineSink() {
  if (opened()) os::OperatingSystem::current()._close(descriptor_);
}

}  // namespace kdx
