// What the program shows on a terminal beside its table.

#ifndef KDXCOMMON_EXAMPLES_CONSOLE_H_
#define KDXCOMMON_EXAMPLES_CONSOLE_H_

#include <chrono>
#include <cstddef>
#include <string>
#include <string_view>

namespace collect_job {

/// The text with a `?` in place of each control character, so that a file's name can't break a line or move a cursor.
std::string printable(std::string_view text);

enum class ProgressStyle {
  kLines,    ///< a line now and then, and none where the work is short
  kInPlace,  ///< one line that is written over, for a terminal
  kOff,
};

/// Tells on the standard error stream how far the work on many files has come.
class Progress {
 public:
  /// `done` is the word for what happens to the files: "checked".
  Progress(ProgressStyle style, const char* done, std::size_t total) : style_(style), done_(done), total_(total) {}
  ~Progress();  ///< ends a line that is written over
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  void advance();

 private:
  using Clock = std::chrono::steady_clock;

  ProgressStyle style_;
  const char* done_;
  std::size_t total_;
  std::size_t count_ = 0;
  Clock::time_point shown_ = Clock::now();
  bool lineOpen_ = false;
};

}  // namespace collect_job

#endif  // KDXCOMMON_EXAMPLES_CONSOLE_H_
