#include "kdxcommon/logging/logger_traits.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <condition_variable>
#include <cwchar>
#include <map>
#include <mutex>
#include <set>
#include <sstream>
#include <thread>

#include "kdxcommon/inhouse/embedded_site.h"
#include "kdxcommon/logging/function_logger.h"
#include "kdxcommon/logging/job_identity.h"
#include "kdxcommon/testing/recording_line_sink.h"
#include "kdxcommon/testing/temporary_directory.h"

// The sanitizers' allocators end the program where memory can't be had, unless they are told to give null.
extern "C" [[gnu::visibility("default")]] const char* __asan_default_options() {
  return "allocator_may_return_null=1";
}
extern "C" [[gnu::visibility("default")]] const char* __tsan_default_options() {
  return "allocator_may_return_null=1";
}

namespace kdx {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::LoggedLine;
using testing::ScopedLog;

class LoggerTraitsTest : public ::testing::Test {
 protected:
  ~LoggerTraitsTest() override { resetJobIDForCurrentThread(); }

  ScopedLog log_{2};
  const string function_ = "Agent::run";
};

TEST_F(LoggerTraitsTest, PassesTheLevelsUpToTheOneReadFirst) {
  EXPECT_TRUE(KDXLoggerTraits::level0());
  const KDXLoggerTraits logger;
  for (int level = -1; level <= 4; ++level) logger.message(level, function_, "%d", level);
  EXPECT_THAT(log_->takeTexts(4), ElementsAre("-1", "0", "1", "2"));
  EXPECT_FALSE(KDXLoggerTraits::level0());
  EXPECT_FALSE(KDXLoggerTraits::level1());
  EXPECT_TRUE(KDXLoggerTraits::level2());
  EmbeddedSite::current().setDebugLevel(4);
  logger.message(3, function_, "dropped");
  EXPECT_EQ(KDXLoggerTraits::getDebugLevel(), 2);
  EXPECT_THAT(log_->take(), IsEmpty());
}

TEST_F(LoggerTraitsTest, LogsUnderTheFirstJobThatIsKnown) {
  KDXLoggerTraits logger(7);
  const KDXLoggerTraits copy = logger;
  const auto jobOf = [this](const KDXLoggerTraits& writer) {
    writer.message(0, function_, "x");
    return log_->take().at(0).jobId;
  };
  setJobIDForCurrentThread(9);
  EXPECT_EQ(jobOf(copy), 7);
  logger.setLocalJobID(-5);
  EXPECT_EQ(logger.getLocalJobID(), -5);
  EXPECT_EQ(jobOf(logger), 9);
  setJobIDForCurrentThread(0);
  EXPECT_EQ(jobOf(logger), 0);
  resetJobIDForCurrentThread();
  EXPECT_EQ(jobOf(logger), UNDEFINED_JOB_ID);
  KDXLoggerTraits::setJobID(55);
  KDXLoggerTraits::setJobID(0);
  EXPECT_THAT(log_->take(),
              ElementsAre(LoggedLine{0, "KDXLoggerTraits::setJobID", 55, "", "Using jobId [55] for logging ..."},
                          LoggedLine{0, "KDXLoggerTraits::setJobID", 55, "", "Undefined jobId"}));
  EXPECT_EQ(jobOf(logger), 55);
  setJobIDForCurrentThread(-3);
  EXPECT_EQ(jobOf(logger), -3);
}

TEST_F(LoggerTraitsTest, SetsTheJobWhereItsNoticeIsDropped) {
  EmbeddedSite::current().setDebugLevel(-1);
  KDXLoggerTraits::setJobID(55);
  KDXLoggerTraits().message(-1, function_, 2, "a %s", "failure");
  EXPECT_THAT(log_->take(), ElementsAre(LoggedLine{-1, function_, 55, "No such file or directory", "a failure"}));
}

TEST_F(LoggerTraitsTest, MessagesOfASizeAreCutAndStandAlone) {
  const KDXLoggerTraits logger(3);
  EXPECT_EQ(logger.getDefaultBufferSize(), 4096u);
  for (const std::size_t size : {0U, 1U, 4U, 6U, 7U, 4096U}) {
    logger.messageOfSize(size, 0, function_, "abc%d", 123);
    const std::string fits = std::string("abc123").substr(0, size > 0 ? size - 1 : 0);
    EXPECT_THAT(log_->take(), ElementsAre(LoggedLine{std::nullopt, "", 3, "", fits}));
  }
  logger.messageOfSize(3, 0, function_, "%lc", static_cast<std::wint_t>(0x20AC));  // not to be had in the C locale
  EXPECT_THAT(log_->takeTexts(0), ElementsAre("%l"));
  logger.messageOfSize(16, 3, function_, "dropped");
  EXPECT_THAT(log_->take(), IsEmpty());
}

TEST_F(LoggerTraitsTest, SaysWhenAMessageOfASizeCannotBeHeld) {
  KDXLoggerTraits(3).messageOfSize(SIZE_MAX, 0, function_, "lost");
  EXPECT_THAT(log_->take(), ElementsAre(LoggedLine{0, "KDXLoggerTraits::messageOfSize()", 3, "",
                                                   "Failed to allocate BufferOnHeap!"}));
}

TEST_F(LoggerTraitsTest, FunctionLoggersKeepTheSameRules) {
  setJobIDForCurrentThread(9);
  const FunctionLogger log("platformClustered()");
  log(3, "dropped");
  log(2, "text %d", 1);
  log(-1, 0x56000003, "text");
  EXPECT_THAT(log_->take(), ElementsAre(LoggedLine{2, "platformClustered()", 9, "", "text 1"},
                                        LoggedLine{-1, "platformClustered()", 9, "Insufficient memory", "text"}));
}

constexpr int kThreads = 8;
constexpr int kLines = 500;

template <typename Work>
void onEightThreads(Work work) {
  std::vector<std::thread> threads;
  for (int thread = 1; thread <= kThreads; ++thread) threads.emplace_back(work, thread);
  for (std::thread& thread : threads) thread.join();
}

TEST(LoggerConcurrency, EightThreadsThatChangeJobsLoseAndMixNoLine) {
  const ScopedLog log(2);
  const testing::TemporaryDirectory directory;
  const std::string path = directory.path("agent.log");
  EmbeddedSite::current().setLineSink(std::make_shared<FileLineSink>(path.c_str()));
  onEightThreads([](int thread) {
    const KDXLoggerTraits logger;
    for (int line = 0; line < kLines; ++line) {
      setJobIDForCurrentThread(thread * 1000 + line);
      logger.message(0, "work", "%d/%d", thread, line);
      if (line % 50 == 0) resetJobIDForCurrentThread();
    }
  });
  std::istringstream lines(directory.read("agent.log"));
  std::map<int, int> next;
  std::map<int, std::set<std::int64_t>> threadIds;
  std::string time, level, function, text;
  std::int64_t threadId = 0;
  std::int64_t jobId = 0;
  int count = 0;
  while (lines >> time >> threadId >> jobId >> level >> function >> text) {
    const int thread = std::stoi(text);
    const int line = next[thread]++;
    ASSERT_EQ(text, std::to_string(thread) + "/" + std::to_string(line));
    ASSERT_EQ(jobId, thread * 1000 + line);
    threadIds[thread].insert(threadId);
    ++count;
  }
  EXPECT_EQ(count, kThreads * kLines);
  for (const auto& [thread, ids] : threadIds) EXPECT_EQ(ids.size(), 1U) << thread;
}

// Holds up every thread that comes with the text "wait" until it is let go.
class HeldUpSink : public testing::RecordingLineSink {
 public:
  void write(const LogRecord& record) override {
    if (record.text == "wait") {
      std::unique_lock lock(mutex_);
      ++waiting_;
      changed_.notify_all();
      changed_.wait(lock, [this] { return open_; });
    }
    RecordingLineSink::write(record);
  }
  void awaitOne() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return waiting_ > 0; });
  }
  void letGo() {
    const std::lock_guard lock(mutex_);
    open_ = true;
    changed_.notify_all();
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  int waiting_ = 0;
  bool open_ = false;
};

TEST(LoggerConcurrency, ASlowSinkHoldsUpNoOtherThread) {
  const ScopedLog log(2);
  const auto sink = std::make_shared<HeldUpSink>();
  EmbeddedSite::current().setLineSink(sink);
  std::thread slow([] { KDXLoggerTraits(1).message(0, "slow", "wait"); });
  sink->awaitOne();
  onEightThreads([](int thread) {
    for (int line = 0; line < kLines; ++line) {
      setJobIDForCurrentThread(thread);
      KDXLoggerTraits().message(0, "work", "%d", line);
    }
  });
  EXPECT_EQ(sink->take().size(), static_cast<std::size_t>(kThreads * kLines));
  sink->letGo();
  slow.join();
  EXPECT_THAT(sink->take(), ElementsAre(LoggedLine{0, "slow", 1, "", "wait"}));
}

}  // namespace
}  // namespace kdx
