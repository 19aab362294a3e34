#include "console.h"

#include <algorithm>
#include <iostream>

namespace collect_job {

std::string printable(std::string_view text) {
  std::string shown(text);
  std::replace_if(
      shown.begin(), shown.end(), [](char c) { return (c >= 0 && c < ' ') || c == '\x7f'; }, '?');
  return shown;
}

Progress::~Progress() {
  if (lineOpen_) std::cerr << std::endl;
}

void Progress::advance() {
  using std::chrono_literals::operator""ms;
  ++count_;
  if (style_ == ProgressStyle::kOff) return;

  const bool inPlace = style_ == ProgressStyle::kInPlace;
  const Clock::time_point now = Clock::now();
  const bool due = now - shown_ >= (inPlace ? 100ms : 1000ms);
  if (!due && !(inPlace && count_ == total_)) return;

  shown_ = now;
  lineOpen_ = inPlace;
  std::cerr << (inPlace ? "\r" : "") << "collect_job: " << count_ << " of " << total_ << " files " << done_;
  if (inPlace) {
    std::cerr << std::flush;
  } else {
    std::cerr << std::endl;
  }
}

}  // namespace collect_job
