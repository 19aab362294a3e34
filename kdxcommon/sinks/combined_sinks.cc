#include "kdxcommon/sinks/combined_sinks.h"

#include <algorithm>
#include <cstdint>
#include <mutex>
#include <utility>

#include "kdxcommon/os/operating_system.h"
#include "kdxcommon/sinks/fork_safe_mutex.h"
#include "kdxcommon/sinks/log_line.h"

namespace kdx {
namespace {

std::mutex& mutexOfSinks() {
  return forkSafeMutexOf<MemoryLineSink>();
}

bool writeAll(int descriptor, string_view text) {
  while (!text.empty()) {
    const std::int64_t written = os::OperatingSystem::current()._write(descriptor, text.data(), text.size());
    if (written <= 0) return false;
    text.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

}  // namespace

TeeLineSink::TeeLineSink(std::vector<Branch> branches) : branches_(std::move(branches)) {}

TeeLineSink::~TeeLineSink() = default;

void TeeLineSink::write(const LogRecord& record) {
  for (const Branch& branch : branches_) {
    if (record.level && *record.level > branch.level) continue;
    try {
      branch.sink->write(record);
    } catch (...) {  // as the log writer does
    }
  }
}

bool TeeLineSink::drops() const {
  return std::all_of(branches_.begin(), branches_.end(), [](const Branch& branch) { return branch.sink->drops(); });
}

MemoryLineSink::MemoryLineSink(std::size_t lines, LogFormat format)
    : format_(format), ring_(std::max<std::size_t>(lines, 1)) {
  mutexOfSinks();
}

MemoryLineSink::~MemoryLineSink() = default;

void MemoryLineSink::write(const LogRecord& record) {
  os::OperatingSystem& system = os::OperatingSystem::current();
  ScratchText line;
  const auto appendLine = format_ == LogFormat::kJson ? appendJsonLine : appendLogLine;
  appendLine(record, {system.GetSystemTimeAsFileTime(), system.GetCurrentThreadId()}, line);
  const std::lock_guard lock(mutexOfSinks());
  ring_[written_ % ring_.size()].assign(line);
  ++written_;
}

std::vector<string> MemoryLineSink::lines() const {
  const std::lock_guard lock(mutexOfSinks());
  std::vector<string> lines;
  for (std::size_t age = std::min(written_, ring_.size()); age > 0; --age) {
    lines.push_back(line(age));
    lines.back().pop_back();
  }
  return lines;
}

bool MemoryLineSink::writeTo(int descriptor) const noexcept {
  // If this very thread crashed in `write`, the system refuses it the mutex that it already has.
  const std::unique_lock lock(mutexOfSinks(), std::try_to_lock);
  if (!lock) return false;
  for (std::size_t age = std::min(written_, ring_.size()); age > 0; --age) {
    if (!writeAll(descriptor, line(age))) return false;
  }
  return true;
}

// Returns the line of which `age` - 1 are newer.
const string& MemoryLineSink::line(std::size_t age) const {
  return ring_[(written_ - age) % ring_.size()];
}

}  // namespace kdx
