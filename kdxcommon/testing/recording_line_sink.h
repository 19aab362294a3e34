// Keeps what is logged, for a test to look at; while one stands, the site's log goes to it.

#ifndef KDXCOMMON_TESTING_RECORDING_LINE_SINK_H_
#define KDXCOMMON_TESTING_RECORDING_LINE_SINK_H_

#include <memory>
#include <mutex>
#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "kdxcommon/inhouse/embedded_site.h"
#include "kdxcommon/logging/logger_state.h"

namespace kdx::testing {

struct LoggedLine {
  std::optional<int> level;
  std::string function;
  std::int64_t jobId = 0;
  std::string errorText;
  std::string text;
  bool operator==(const LoggedLine&) const = default;

  friend std::ostream& operator<<(std::ostream& out, const LoggedLine& line) {
    out << "job " << line.jobId << ", level " << (line.level ? std::to_string(*line.level) : "none");
    return out << ", " << line.function << ": " << line.text << " (" << line.errorText << ")";
  }
};

class RecordingLineSink : public LineSink {
 public:
  void write(const LogRecord& record) override {
    const std::lock_guard lock(mutex_);
    lines_.push_back({record.level, std::string(record.function), record.jobId, std::string(record.errorText),
                      std::string(record.text)});
  }

  /// The lines since the last call.
  std::vector<LoggedLine> take() {
    const std::lock_guard lock(mutex_);
    return std::exchange(lines_, {});
  }

  /// The texts since the last call, those of `level` and below.
  std::vector<std::string> takeTexts(int level) {
    std::vector<std::string> texts;
    for (LoggedLine& line : take()) {
      if (line.level.value_or(level) <= level) texts.push_back(std::move(line.text));
    }
    return texts;
  }

 private:
  std::mutex mutex_;
  std::vector<LoggedLine> lines_;
};

/// Sends the site's log to a recording sink, at a level, for a scope: as in a process that has not logged yet.
class ScopedLog {
 public:
  explicit ScopedLog(int level)
      : previousLevel_(EmbeddedSite::current().debugLevel()), previousSink_(EmbeddedSite::current().lineSink()) {
    EmbeddedSite::current().setDebugLevel(level);
    EmbeddedSite::current().setLineSink(sink_);
    forgetLoggerState();
  }
  ~ScopedLog() {
    EmbeddedSite::current().setLineSink(previousSink_);
    EmbeddedSite::current().setDebugLevel(previousLevel_);
    forgetLoggerState();
  }
  ScopedLog(const ScopedLog&) = delete;
  ScopedLog& operator=(const ScopedLog&) = delete;

  RecordingLineSink* operator->() const { return sink_.get(); }

 private:
  std::shared_ptr<RecordingLineSink> sink_ = std::make_shared<RecordingLineSink>();
  int previousLevel_;
  std::shared_ptr<LineSink> previousSink_;
};

}  // namespace kdx::testing

#endif  // KDXCOMMON_TESTING_RECORDING_LINE_SINK_H_
