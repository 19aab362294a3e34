#include "kdxcommon/sinks/line_sink.h"

#include <cstddef>
#include <memory_resource>
#include <string>

#include "kdxcommon/os/operating_system.h"
#include "kdxcommon/sinks/log_line.h"

namespace kdx {
namespace {

constexpr bool isCut(std::uint32_t cuts) {
  return cuts % 2 != 0;
}

// Counts one more cut line and returns the new count: a line break that another thread writes behind an earlier one
// doesn't end it.
std::uint32_t countCut(std::atomic<std::uint32_t>& cuts) {
  const auto next = [](std::uint32_t count) { return (count + 1) | 1; };
  std::uint32_t count = cuts.load();
  while (!cuts.compare_exchange_weak(count, next(count))) {
  }
  return next(count);
}

// A lock on a file for a scope. Where it can't be had, the line is worth more than the order of lines.
class FileLock {
 public:
  FileLock(os::OperatingSystem& system, int descriptor, bool wanted)
      : system_(system), descriptor_(descriptor), locked_(wanted && system.LockFile(descriptor)) {}
  ~FileLock() {
    if (locked_) system_.UnlockFile(descriptor_);
  }
  FileLock(const FileLock&) = delete;
  FileLock& operator=(const FileLock&) = delete;

 private:
  os::OperatingSystem& system_;
  int descriptor_;
  bool locked_;
};

}  // namespace

LineSink::~LineSink() = default;

void DescriptorLineSink::write(const LogRecord& record) {
  if (drops()) return;
  os::OperatingSystem& system = os::OperatingSystem::current();
  std::byte room[1024];  // for most lines; longer ones go to the heap
  std::pmr::monotonic_buffer_resource memory(room, sizeof room);
  std::pmr::string line(&memory);
  line.reserve(128 + record.function.size() + record.text.size() + record.errorText.size());
  line += '\n';
  appendLogLine(record, {system.GetSystemTimeAsFileTime(), system.GetCurrentThreadId()}, line);
  writeLine(line);
}

// `line` begins with the line break that only a line behind a cut one needs.
void DescriptorLineSink::writeLine(string_view line) {
  os::OperatingSystem& system = os::OperatingSystem::current();
  const FileLock lock(system, descriptor_, care_ == Care::kLock);
  std::uint32_t cuts = cuts_.load();
  if (!isCut(cuts)) line.remove_prefix(1);
  while (!line.empty()) {
    const std::int64_t written = care_ == Care::kSignal
                                     ? system.writeWithoutSignal(descriptor_, line.data(), line.size())
                                     : system._write(descriptor_, line.data(), line.size());
    if (written <= 0) return;
    line.remove_prefix(static_cast<std::size_t>(written));
    if (!line.empty()) cuts = countCut(cuts_);  // until the rest is written
  }
  if (isCut(cuts)) cuts_.compare_exchange_strong(cuts, cuts + 1);
}

FileLineSink::FileLineSink(const char* path, LogFileUse use)
    : DescriptorLineSink(os::OperatingSystem::current()._open(
          path, os::kOpenWriteOnly | os::kOpenAppend | os::kOpenCreate, os::kModeWrite)) {
  // Nobody else puts another file behind this descriptor, and so a regular file stays one.
  if (!opened() || os::OperatingSystem::current().GetFileType(descriptor_) != os::kFileTypeDisk) return;
  care_ = use == LogFileUse::kSeveralProcesses ? Care::kLock : Care::kNone;
}

FileLineSink::~FileLineSink() {
  if (opened()) os::OperatingSystem::current()._close(descriptor_);
}

}  // namespace kdx
