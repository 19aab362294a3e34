#include "kdxcommon/sinks/line_sink.h"

#include "kdxcommon/os/operating_system.h"
#include "kdxcommon/sinks/log_line.h"

namespace kdx {

LineSink::~LineSink() = default;

void DescriptorLineSink::write(const LogRecord& record) {
  if (descriptor_ < 0) return;
  os::OperatingSystem& system = os::OperatingSystem::current();
  string line;
  line.reserve(128 + record.function.size() + record.text.size() + record.errorText.size());
  appendLogLine(record, {system.GetSystemTimeAsFileTime(), system.GetCurrentThreadId()}, line);
  string_view left = line;
  while (!left.empty()) {
    const std::int64_t written = system._write(descriptor_, left.data(), left.size());
    if (written <= 0) return;
    left.remove_prefix(static_cast<std::size_t>(written));
  }
}

FileLineSink::FileLineSink(const char* path)
    : DescriptorLineSink(os::OperatingSystem::current()._open(
          path, os::kOpenWriteOnly | os::kOpenAppend | os::kOpenCreate, os::kModeWrite)) {}

FileLineSink::~FileLineSink() {
  if (opened()) os::OperatingSystem::current()._close(descriptor_);
}

}  // namespace kdx
