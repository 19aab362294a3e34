// Keeps what is logged, for a test to look at; while one stands, the site's log goes to it.

#ifndef KDXCOMMON_TESTING_RECORDING_LINE_SINK_H_
#define KDXCOMMON_TESTING_RECORDING_LINE_SINK_H_

#include <mutex>
#include <ostream>
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
    lines_.push_back(
        {record.level, string(record.function), record.jobId, string(record.errorText), string(record.text)});
  }

  /// The lines since the last call.
  std::vector<LoggedLine> take() {
    const std::lock_guard lock(mutex_);
    return std::exchange(lines_, {});
  }

  /// The texts since the last call, those of `level` and below, and those without one.
  std::vector<std::string> takeTexts(int level) {
    std::vector<std::string> texts;
    for (const LoggedLine& line : take()) {
      if (line.level <= level) texts.push_back(line.text);
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
  explicit ScopedLog(int level) { set(level, sink_); }
  ~ScopedLog() { set(previousLevel_, previousSink_); }
  ScopedLog(const ScopedLog&) = delete;
  ScopedLog& operator=(const ScopedLog&) = delete;

  RecordingLineSink* operator->() const { return sink_.get(); }

 private:
  static void set(int level, const std::shared_ptr<LineSink>& sink) {
    EmbeddedSite::current().setDebugLevel(level);
    EmbeddedSite::current().setLineSink(sink);
    forgetLoggerState();
  }

  std::shared_ptr<RecordingLineSink> sink_ = std::make_shared<RecordingLineSink>();
  int previousLevel_ = EmbeddedSite::current().debugLevel();
  std::shared_ptr<LineSink> previousSink_ = EmbeddedSite::current().lineSink();
};

}  // namespace kdx::testing

#endif  // KDXCOMMON_TESTING_RECORDING_LINE_SINK_H_
