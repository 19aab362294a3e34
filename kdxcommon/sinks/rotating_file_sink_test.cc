#include "kdxcommon/sinks/rotating_file_sink.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "kdxcommon/os/operating_system_wrapper.h"
#include "kdxcommon/testing/temporary_directory.h"

namespace kdx {
namespace {

constexpr Rotation kTwoLines = {.maxBytes = 80, .olderFiles = 2};  // a line has 36 bytes

// A clock that stands still unless it is told, and a disk that may refuse to rename. A full disk, and files that
// somebody else moves, are in fuzz/rotation_fuzz.cc.
struct Machine : os::OperatingSystemWrapper {
  std::uint64_t GetSystemTimeAsFileTime() override { return seconds * 10'000'000; }
  std::uint32_t GetCurrentThreadId() override { return 7; }
  int rename(const char* from, const char* to) override {
    return renames ? OperatingSystemWrapper::rename(from, to) : -1;
  }
  std::uint64_t seconds = 0;
  bool renames = true;
};

class RotatingFileSinks : public ::testing::Test {
 protected:
  void write(const std::string& texts) {
    for (const char text : texts) sink_->write({2, "f", 1, {}, {&text, 1}});
  }
  // The one-letter texts of a file, or `!` if it is missing.
  std::string texts(const char* name) const {
    if (!directory_.has(name)) return "!";
    std::string all;
    std::istringstream lines(directory_.read(name));
    for (std::string line; std::getline(lines, line);) all += line.back();
    return all;
  }
  std::string logs() const { return texts("log") + ' ' + texts("log.1") + ' ' + texts("log.2") + ' ' + texts("log.3"); }

  Machine machine_;
  const os::ScopedOperatingSystem scope_{machine_};
  const testing::TemporaryDirectory directory_;
  std::unique_ptr<RotatingFileLineSink> sink_ =
      std::make_unique<RotatingFileLineSink>(directory_.path("log").c_str(), kTwoLines);
};

TEST_F(RotatingFileSinks, KeepTheNewestFilesAndGoOnAfterARestart) {
  write("abc");
  EXPECT_EQ(logs(), "c ab ! !");
  sink_.reset();
  sink_ = std::make_unique<RotatingFileLineSink>(directory_.path("log").c_str(), kTwoLines);
  write("defgh");
  EXPECT_EQ(logs(), "gh ef cd !");
  std::filesystem::remove(testing::utf8Path(directory_.path("log.1")));  // as a process leaves it that is killed
  write("ij");
  EXPECT_EQ(logs(), "ij gh cd !");
}

TEST_F(RotatingFileSinks, LoseNoFileIfTheyCannotBeRenamed) {
  write("abc");
  machine_.renames = false;
  write("def");
  EXPECT_EQ(logs(), "cdef ab ! !");
  machine_.renames = true;
  write("g");  // not before the next second
  ++machine_.seconds;
  write("h");
  EXPECT_EQ(logs(), "h cdefg ab !");
}

TEST_F(RotatingFileSinks, OpenOnlyRegularFiles) {
  const RotatingFileLineSink directory(directory_.path().c_str());
  const RotatingFileLineSink nothing(nullptr);
  EXPECT_TRUE(!directory.opened() && directory.drops() && !nothing.opened());
}

}  // namespace
}  // namespace kdx
