#include "kdxcommon/sinks/rotating_file_sink.h"

#include <algorithm>
#include <mutex>
#include <utility>

#include "kdxcommon/os/fork_handlers.h"
#include "kdxcommon/os/kept_last_error.h"
#include "kdxcommon/sinks/file_lock.h"
#include "kdxcommon/sinks/fork_safe_mutex.h"

namespace kdx {
namespace {

constexpr std::uint64_t kTicksPerSecond = 10'000'000;
constexpr std::uint32_t kSystemFileNotFound = 2;  // ENOENT, ERROR_FILE_NOT_FOUND
constexpr int kAttempts = 16;                     // to find a file whose name stays while it is locked

std::mutex& mutexOfSinks() {
  return forkSafeMutexOf<RotatingFileLineSink>();
}

// Returns how many times this process or its ancestors have been the child of a fork since the first call.
unsigned countForks() {
  static std::atomic<unsigned> forks{0};
  static const bool registered = [] {
    os::onFork([] {}, [] {}, [] { ++forks; });
    return true;
  }();
  static_cast<void>(registered);
  return forks;
}

}  // namespace

RotatingFileLineSink::RotatingFileLineSink(const char* path, Rotation rotation, LogFileUse use, LogFormat format)
    : DescriptorLineSink(-1, format), path_(path ? path : ""), rotation_(rotation), use_(use), forks_(countForks()) {
  care_ = Care::kNone;
  reopen();
}

// Closing a file releases the lock of another sink of this process on it, so no such sink may be writing.
RotatingFileLineSink::~RotatingFileLineSink() {
  const std::lock_guard lock(mutexOfSinks());
  if (opened_) os::OperatingSystem::current()._close(descriptor_);
}

bool RotatingFileLineSink::reopen() {
  const std::lock_guard lock(mutexOfSinks());
  return (opened_ && isOpenFileOfName()) || openFileOfName();
}

// If no file is found that can be locked under its name, the line goes to the one that is open.
void RotatingFileLineSink::writeLine(string_view line, std::uint64_t fileTime) {
  os::OperatingSystem& system = os::OperatingSystem::current();
  const std::lock_guard lock(mutexOfSinks());
  const std::uint64_t second = fileTime / kTicksPerSecond;
  for (int attempt = 0; attempt != kAttempts; ++attempt) {
    {
      const FileLock fileLock(system, descriptor_, use_ == LogFileUse::kSeveralProcesses);
      if (isFileForLine(line, second, fileLock.locked())) {
        file_.size += append(line);
        return;
      }
    }
    if (openFileOfName()) continue;
    refused_ = second;
    break;
  }
  file_.size += append(line);
}

// Returns whether the open file is the one that a line goes to: not if its name stands for another file, which it does,
// too, after this function has rotated it.
bool RotatingFileLineSink::isFileForLine(string_view line, std::uint64_t second, bool locked) {
  const bool severalProcesses = use_ == LogFileUse::kSeveralProcesses;
  const bool isChild = !severalProcesses && forks_ != countForks();
  const bool mayRotate = !isChild && refused_ != second && locked == severalProcesses;
  const auto isFull = [&] { return file_.size > 0 && file_.size + lengthOf(line) > rotation_.maxBytes; };

  if (severalProcesses || isChild || checked_ != second || (isFull() && mayRotate)) {
    checked_ = second;
    if (!isOpenFileOfName()) return false;
  }
  if (!isFull() || !mayRotate) return true;
  if (rotate()) return false;
  refused_ = second;
  return true;
}

// Returns whether the name still stands for the open file, whose size is then read anew.
bool RotatingFileLineSink::isOpenFileOfName() {
  os::FileStatus now;
  if (os::OperatingSystem::current().fileStatus(path_.c_str(), now) != 0) return false;
  if (now.volume != file_.volume || now.file != file_.file) return false;
  if (now.size != std::exchange(file_.size, now.size)) setCut(endsWithinALine());
  return true;
}

// Opens the file of the name instead of the present one. Returns false and keeps the present one if that fails.
bool RotatingFileLineSink::openFileOfName() {
  os::OperatingSystem& system = os::OperatingSystem::current();
  const int opened =
      system._open(path_.c_str(), os::kOpenReadWrite | os::kOpenAppend | os::kOpenCreate, os::kModeWrite);
  if (opened < 0) return false;
  os::FileStatus status;
  if (system.fileStatus(opened, status) != 0 ||
      (use_ == LogFileUse::kOneProcess && forks_ == countForks() && !system.TryLockFile(opened))) {
    const os::KeptLastError reason;
    system._close(opened);
    return false;
  }
  if (opened_) system._close(descriptor_);
  descriptor_ = opened;
  file_ = status;
  setCut(endsWithinALine());
  opened_ = true;
  return true;
}

// Renames the file and the older ones up to the first free number; without one, removes the oldest. Returns whether the
// name is free. If a step fails, no file but the oldest is lost.
bool RotatingFileLineSink::rotate() const {
  os::OperatingSystem& system = os::OperatingSystem::current();
  const int oldest = std::max(rotation_.olderFiles, 1);
  os::FileTimes times;
  int number = 1;
  while (number <= oldest && system._stat64(olderName(number).c_str(), times) == 0) ++number;
  // A number isn't free because its file can't be examined: on POSIX the renames would replace that file.
  if (number <= oldest && system.GetLastError() != kSystemFileNotFound) return false;
  if (number > oldest && system.remove(olderName(--number).c_str()) != 0) return false;
  for (; number > 0; --number) {
    if (system.rename(olderName(number - 1).c_str(), olderName(number).c_str()) != 0) return false;
  }
  return true;
}

// Returns whether the open file ends without a line break: a writer was killed, or the disk was full.
bool RotatingFileLineSink::endsWithinALine() const {
  char last = '\n';
  if (file_.size > 0) os::OperatingSystem::current().pread(descriptor_, &last, 1, file_.size - 1);
  return last != '\n';
}

string RotatingFileLineSink::olderName(int number) const {
  return number == 0 ? path_ : path_ + '.' + std::to_string(number);
}

}  // namespace kdx
