#include "kdxcommon/sinks/combined_sinks.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <thread>

#include "kdxcommon/os/operating_system.h"
#include "kdxcommon/testing/temporary_directory.h"

namespace kdx {
namespace {

struct ThrowingSink : LineSink {
  void write(const LogRecord& /*record*/) override { throw std::runtime_error("full"); }
};

std::string textsOf(const MemoryLineSink& sink) {
  std::string texts;
  for (const string& line : sink.lines()) texts += line.back();
  return texts;
}

TEST(CombinedSinks, HaveLevelsOfTheirOwnAndSurviveOneThatThrows) {
  const auto failures = std::make_shared<MemoryLineSink>(10), all = std::make_shared<MemoryLineSink>(3);
  TeeLineSink tee({{std::make_shared<ThrowingSink>(), 4}, {failures, -1}, {all, 4}});
  const struct {
    std::optional<int> level;
    string_view text;
  } records[] = {{4, "a"}, {-1, "b"}, {{}, "c"}, {0, "d"}};
  for (const auto& record : records) tee.write({record.level, "f", 1, {}, record.text});
  EXPECT_EQ(textsOf(*failures), "bc");
  EXPECT_EQ(textsOf(*all), "bcd");
  EXPECT_FALSE(tee.drops());
  EXPECT_TRUE(TeeLineSink({{std::make_shared<DescriptorLineSink>(-1), 4}}).drops());
}

TEST(CombinedSinksConcurrency, KeepWholeLinesOfSeveralThreads) {
  MemoryLineSink sink(5);
  {
    std::vector<std::jthread> threads;
    for (int thread = 0; thread < 4; ++thread) {
      threads.emplace_back([&sink] {
        for (int i = 0; i < 100; ++i) sink.write({2, "f", 1, {}, "text"});
        sink.lines();
      });
    }
  }
  EXPECT_EQ(sink.lines().size(), 5U);
  string expected;
  for (const string& line : sink.lines()) {
    EXPECT_TRUE(line.ends_with(" 1 2 f: text"));
    expected += line + '\n';
  }
  const testing::TemporaryDirectory directory;
  os::OperatingSystem& system = os::OperatingSystem::current();
  const int file = system._open(directory.path("log").c_str(), os::kOpenWriteOnly | os::kOpenCreate, os::kModeWrite);
  EXPECT_TRUE(sink.writeTo(file) && !sink.writeTo(-1));
  system._close(file);
  EXPECT_EQ(directory.read("log"), expected);
}

}  // namespace
}  // namespace kdx
