#include "kdxcommon/logging/logger_traits.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <cwchar>
#include <functional>
#include <future>
#include <map>
#include <sstream>
#include <thread>

#include "kdxcommon/logging/function_logger.h"
#include "kdxcommon/logging/job_identity.h"
#include "kdxcommon/os/operating_system.h"
#include "kdxcommon/testing/recording_line_sink.h"
#include "kdxcommon/testing/temporary_directory.h"

// The sanitizers' allocators end the program if memory is short, unless they are configured to return null.
extern "C" [[gnu::visibility("default")]] const char* __asan_default_options() {
  return "allocator_may_return_null=1";
}
extern "C" [[gnu::visibility("default")]] const char* __tsan_default_options() {
  return "allocator_may_return_null=1";
}

namespace kdx {
namespace {

using ::testing::ElementsAre;
using testing::LoggedLine;

// The lines of a process whose logger state was never reset, logged before any test begins.
const std::vector<LoggedLine> firstLines = [] {
  const auto sink = std::make_shared<testing::RecordingLineSink>();
  EmbeddedSite::current().setLineSink(sink);
  EmbeddedSite::current().setDebugLevel(2);
  const bool unread = KDXLoggerTraits::level0();
  KDXLoggerTraits().message(2, "f", "%d", unread);
  EmbeddedSite::current().setLineSink(nullptr);
  EmbeddedSite::current().setDebugLevel(0);
  forgetLoggerState();
  return sink->take();
}();

TEST(LoggerTraits, BeginWithoutALevelAndWithoutAJob) {
  EXPECT_THAT(firstLines, ElementsAre(LoggedLine{2, "f", UNDEFINED_JOB_ID, "", "1"}));
}

TEST(LoggerTraits, PassesTheLevelsUpToTheOneReadFirst) {
  const testing::ScopedLog log(2);
  EXPECT_TRUE(KDXLoggerTraits::level0());
  for (int level = -1; level <= 4; ++level) {
    KDXLoggerTraits().message(level, "f", "%d", level);
    KDXLoggerTraits().messageOfSize(16, level, "f", "of size %d", level);
    EmbeddedSite::current().setDebugLevel(4);
  }
  EXPECT_THAT(log->takeTexts(4), ElementsAre("-1", "of size -1", "0", "of size 0", "1", "of size 1", "2", "of size 2"));
  EXPECT_TRUE(!KDXLoggerTraits::level0() && !KDXLoggerTraits::level1() && KDXLoggerTraits::level2());
}

TEST(LoggerTraits, LogsUnderTheFirstJobThatIsKnown) {
  const testing::ScopedLog log(2);
  const KDXJobIDForCurrentThreadMonitor resetsAtEnd;
  KDXLoggerTraits logger(7);
  const auto job = [&] {
    logger.message(0, "f", "x");
    return log->take().at(0).jobId;
  };
  setJobIDForCurrentThread(9);
  EXPECT_EQ(job(), 7);
  logger.setLocalJobID(-5);
  EXPECT_EQ(job(), 9);
  setJobIDForCurrentThread(0);
  EXPECT_EQ(job(), 0);
  resetJobIDForCurrentThread();
  EXPECT_EQ(job(), UNDEFINED_JOB_ID);
  KDXLoggerTraits::setJobID(55);
  KDXLoggerTraits::setJobID(0);
  EXPECT_THAT(log->take(),
              ElementsAre(LoggedLine{0, "KDXLoggerTraits::setJobID", 55, "", "Using jobId [55] for logging ..."},
                          LoggedLine{0, "KDXLoggerTraits::setJobID", 55, "", "Undefined jobId"}));
  logger.message(-1, "f", 0x56000003, "a %s", "failure");
  EXPECT_THAT(log->take(), ElementsAre(LoggedLine{-1, "f", 55, "Insufficient memory", "a failure"}));
  const testing::ScopedLog quiet(-1);  // the id is set even if its notice is dropped
  KDXLoggerTraits::setJobID(56);
  logger.message(-1, "f", "x");
  EXPECT_THAT(quiet->take(), ElementsAre(LoggedLine{-1, "f", 56, "", "x"}));
}

TEST(LoggerTraits, MessagesOfASizeAreCutAndStandAlone) {
  const testing::ScopedLog log(2);
  const KDXLoggerTraits logger(3);
  for (const std::size_t size : {0U, 1U, 6U, 7U}) {
    logger.messageOfSize(size, 0, "f", "abc%d", 123);
    const std::string fits = std::string("abc123").substr(0, size > 0 ? size - 1 : 0);
    EXPECT_THAT(log->take(), ElementsAre(LoggedLine{std::nullopt, "", 3, "", fits}));
  }
  logger.messageOfSize(3, 0, "f", "%lcabc", std::wint_t{0xD800});  // which the C library of POSIX systems can't format
  EXPECT_EQ(log->take().at(0).text.size(), 2U);
  logger.messageOfSize(SIZE_MAX, 0, "f", "lost");
  EXPECT_THAT(log->take(), ElementsAre(LoggedLine{0, "KDXLoggerTraits::messageOfSize()", 3, "",
                                                  "Failed to allocate BufferOnHeap!"}));
}

TEST(LoggerTraits, KeepTheLastErrorOfTheirCaller) {
  struct Fails : LineSink {
    void write(const LogRecord&) override {
      os::OperatingSystem::current().WSASetLastError(5);
      errno = 22;
      throw 1;
    }
  };
  const testing::ScopedLog log(2);
  const KDXLoggerTraits logger;
  const FunctionLogger functionLogger("f");
  const std::function<void()> messages[] = {
      [&] { logger.message(0, "f", "text"); },
      [&] { logger.message(0, "f", 0x12345, "text"); },  // the system has no text for it: an error of its own
      [&] { functionLogger(0, "text"); },
      [&] { logger.messageOfSize(SIZE_MAX, 0, "f", "text"); },
      [&] { EvDebug().DebugLvl("f", 0, "text"); },
  };
  for (const std::shared_ptr<LineSink>& sink :
       {EmbeddedSite::current().lineSink(), std::shared_ptr<LineSink>(new Fails)}) {
    EmbeddedSite::current().setLineSink(sink);
    for (const auto& message : messages) {
      os::OperatingSystem::current().WSASetLastError(14);
      errno = 13;
      const std::uint32_t lastError = os::OperatingSystem::current().GetLastError();  // on POSIX it is errno
      message();
      EXPECT_EQ(errno, 13) << &message - messages;
      EXPECT_EQ(os::OperatingSystem::current().GetLastError(), lastError) << &message - messages;
    }
  }
}

TEST(LoggerConcurrency, EightThreadsThatChangeJobsLoseAndMixNoLine) {
  const testing::ScopedLog log(2);
  const testing::TemporaryDirectory directory;
  EmbeddedSite::current().setLineSink(std::make_shared<FileLineSink>(directory.path("agent.log").c_str()));
  const auto work = [](int firstJob) {
    for (int job = firstJob; job < firstJob + 500; ++job) {
      setJobIDForCurrentThread(job);
      KDXLoggerTraits().message(0, "work", "%d", job);
      if (job % 50 == 0) resetJobIDForCurrentThread();
    }
  };
  {
    std::vector<std::jthread> threads;
    for (int thread = 1; thread <= 8; ++thread) threads.emplace_back(work, thread * 1000);
  }
  std::istringstream lines(directory.read("agent.log"));
  std::map<int, int> counts;
  std::string time, threadId, level, function;
  for (int job = 0, text = 0; lines >> time >> threadId >> job >> level >> function >> text;) {
    ASSERT_EQ(text, job);
    ASSERT_EQ(job % 1000, counts[job / 1000]++);
  }
  for (int thread = 1; thread <= 8; ++thread) EXPECT_EQ(counts[thread], 500);
}

TEST(LoggerConcurrency, ASlowSinkHoldsUpNoOtherThread) {
  struct SlowForOne : LineSink {
    void write(const LogRecord& record) override {
      if (record.text == "slow") {
        reached.set_value();
        open.get_future().wait();
      }
      written.emplace_back(record.text);
    }
    std::promise<void> reached, open;
    std::vector<std::string> written;
  };
  const testing::ScopedLog log(2);
  const auto sink = std::make_shared<SlowForOne>();
  EmbeddedSite::current().setLineSink(sink);
  std::jthread slow([] { KDXLoggerTraits(1).message(0, "f", "slow"); });
  sink->reached.get_future().wait();
  KDXLoggerTraits(2).message(0, "f", "quick");
  sink->open.set_value();
  slow.join();
  EXPECT_THAT(sink->written, ElementsAre("quick", "slow"));
}

}  // namespace
}  // namespace kdx
