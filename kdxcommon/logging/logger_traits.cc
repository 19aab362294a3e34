#include "kdxcommon/logging/logger_traits.h"

#include <atomic>
#include <cstdio>
#include <memory>
#include <new>

#include "kdxcommon/inhouse/zqlib/last_error.h"
#include "kdxcommon/logging/function_logger.h"
#include "kdxcommon/logging/job_identity.h"
#include "kdxcommon/logging/logger_state.h"
#include "kdxcommon/os/kept_last_error.h"

namespace kdx {
namespace {

// Process-wide, without a lock: each store is one value, and the flag is written last.
std::atomic<int> debugLevel_ = 0;
std::atomic<bool> bDebugLevel_ = false;
std::atomic<std::int64_t> jobId_ = 0;

bool isCachedLevelAtMost(int level) {
  return debugLevel_.load(std::memory_order_relaxed) <= level;
}

// The text is cut to what `size` has room for. One that the C library can't format stands as its format does.
KDX_PRINTF(3, 0) void formatInto(char* buffer, std::size_t size, const char* format, std::va_list arguments) {
  if (size == 0 || std::vsnprintf(buffer, size, format, arguments) >= 0) return;
  buffer[string_view(format).copy(buffer, size - 1)] = '\0';
}

// The text of an error number; none where there is no memory for it, so that the line itself isn't lost.
const char* textOf(const ZQLastError& error) {
  try {
    return error.message();
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

}  // namespace

void forgetLoggerState() {
  bDebugLevel_ = false;
  debugLevel_ = 0;
  jobId_ = 0;
}

KDXLoggerTraits::~KDXLoggerTraits() = default;

int KDXLoggerTraits::getDebugLevel() {
  if (!bDebugLevel_.load(std::memory_order_acquire)) [[unlikely]]
    readDebugLevel();
  return debugLevel_.load(std::memory_order_relaxed);
}

void KDXLoggerTraits::setDebugLevel(int level) {
  debugLevel_.store(level, std::memory_order_relaxed);
  bDebugLevel_.store(true, std::memory_order_release);
}

// Out of line, so that a message that is dropped pays for no more than its test.
[[gnu::noinline]] void KDXLoggerTraits::readDebugLevel() {
  setDebugLevel(EvDebug(nullptr).getDebugLevel());
}

bool KDXLoggerTraits::isDebugLevel(int level) {
  return level <= getDebugLevel();
}

bool KDXLoggerTraits::level0() {
  return isCachedLevelAtMost(0);
}
bool KDXLoggerTraits::level1() {
  return isCachedLevelAtMost(1);
}
bool KDXLoggerTraits::level2() {
  return isCachedLevelAtMost(2);
}

void KDXLoggerTraits::message(int level, const string& function, std::uint32_t errorNumber, const char* format,
                              ...) const {
  if (!isDebugLevel(level)) return;
  std::va_list arguments;
  va_start(arguments, format);
  write(level, function.c_str(), errorNumber, format, arguments);
  va_end(arguments);
}

void KDXLoggerTraits::message(int level, const string& function, const char* format, ...) const {
  if (!isDebugLevel(level)) return;
  std::va_list arguments;
  va_start(arguments, format);
  write(level, function.c_str(), std::nullopt, format, arguments);
  va_end(arguments);
}

void KDXLoggerTraits::messageOfSize(std::size_t bufferSize, int level, const string& /*function*/, const char* format,
                                    ...) const {
  if (!isDebugLevel(level)) return;
  const os::KeptLastError kept;
  const std::unique_ptr<char[]> buffer(new (std::nothrow) char[bufferSize]);
  if (!buffer) {
    message(0, string("KDXLoggerTraits::messageOfSize()"), "Failed to allocate BufferOnHeap!");
    return;
  }
  std::va_list arguments;
  va_start(arguments, format);
  formatInto(buffer.get(), bufferSize, format, arguments);
  va_end(arguments);
  EvDebug debug(nullptr);
  setEvDebugJobID(debug);
  char noText[] = "";
  debug.logMessage(bufferSize > 0 ? buffer.get() : noText);
}

std::size_t KDXLoggerTraits::getDefaultBufferSize() const {
  return 4096;
}

[[gnu::noinline]] void KDXLoggerTraits::write(int level, const char* function, std::optional<std::uint32_t> errorNumber,
                                              const char* format, std::va_list arguments) const {
  const os::KeptLastError kept;
  EvDebug debug(nullptr);
  setEvDebugJobID(debug);
  const ZQLastError error(errorNumber.value_or(0), ZQLE_MAJOR);
  debug.handleMsgEventDebug_NEW(level, function, 0, debug.getJobId(), errorNumber ? textOf(error) : nullptr, format,
                                arguments);
}

void KDXLoggerTraits::setEvDebugJobID(EvDebug& debug) const {
  if (localJobID_ > 0) return debug.setJobId(localJobID_);
  const std::int64_t threadJobId = getJobIDForCurrentThread();
  if (threadJobId != UNDEFINED_JOB_ID) return debug.setJobId(threadJobId);
  setJobID(debug);
}

void KDXLoggerTraits::setJobID(EvDebug& debug) {
  const std::int64_t jobId = jobId_.load(std::memory_order_relaxed);
  debug.setJobId(jobId != 0 ? jobId : UNDEFINED_JOB_ID);
}

void KDXLoggerTraits::setJobID(std::int64_t jobId) {
  const FunctionLogger log("KDXLoggerTraits::setJobID");
  if (jobId == 0) return log(0, "Undefined jobId");
  jobId_.store(jobId, std::memory_order_relaxed);
  log(0, "Using jobId [%lld] for logging ...", static_cast<long long>(jobId));
}

}  // namespace kdx
