#include "console.h"

#include <iostream>

namespace collect_job {

// Control characters, those from U+0080 to U+009F too, become question marks.
std::string printable(std::string_view text) {
  std::string shown;
  for (const char byte : text) {
    const auto value = static_cast<unsigned char>(byte);
    const bool afterC2 = !shown.empty() && shown.back() == '\xC2';
    if (value < 0x20 || value == 0x7F) {
      shown += '?';
    } else if (afterC2 && value >= 0x80 && value <= 0x9F) {
      shown.back() = '?';
    } else {
      shown += byte;
    }
  }
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
