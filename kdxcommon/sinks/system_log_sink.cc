#include "kdxcommon/sinks/system_log_sink.h"

#include <string>

#include "kdxcommon/base/job_id.h"
#include "kdxcommon/sinks/log_line.h"

namespace kdx {
namespace {

int severityOf(const LogRecord& record) {
  const int level = record.level.value_or(1);
  if (level < 0) return os::kSeverityError;
  if (level == 0) return os::kSeverityNotice;
  return level <= 2 ? os::kSeverityInformational : os::kSeverityDebug;
}

// Removes what exceeds `most` bytes, at the end of a character.
void truncate(ScratchText& text, std::size_t most) {
  if (text.size() <= most) return;
  while ((static_cast<unsigned char>(text[most]) & 0xC0) == 0x80) --most;
  text.resize(most);
}

}  // namespace

SystemLogSink::SystemLogSink(const char* source, const char* address)
    : log_(os::OperatingSystem::current().openSystemLog(source, address)) {}

SystemLogSink::~SystemLogSink() = default;

void SystemLogSink::write(const LogRecord& record) {
  if (!log_) return;
  ScratchText text;
  if (record.jobId != UNDEFINED_JOB_ID) text.append("job ").append(std::to_string(record.jobId)).append(" ");
  appendLogMessage(record, text);
  truncate(text, os::kLongestReport);
  log_->report(severityOf(record), string(text));
}

}  // namespace kdx
