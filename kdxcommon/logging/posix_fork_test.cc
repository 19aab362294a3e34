// What only a system that forks has: the library in the child of a process whose other threads were inside the library.

#include <gtest/gtest.h>
#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <thread>

#include "kdxcommon/logging/job_identity.h"
#include "kdxcommon/logging/logger_traits.h"
#include "kdxcommon/testing/recording_line_sink.h"

namespace kdx {
namespace {

TEST(Fork, FindsNothingThatIsMadeAtItsFirstUse) {
  const auto inUse = ::mallinfo2().uordblks;  // in a process of its own
  getJobIDForCurrentThread();
  EmbeddedSite::current().lineSink();
  EXPECT_EQ(::mallinfo2().uordblks, inUse);
}

constexpr char kLongKey[] = "a key that the heap must hold";

// Uses all that is locked and returns whether the answers are right.
bool work(std::int64_t job) {
  setJobIDForCurrentThread(job);
  KDXLoggerTraits().message(0, "work", "%s", "a line");
  return getJobIDForCurrentThread() == job && EmbeddedSite::current().number("", kLongKey) == 7U;
}

TEST(ForkConcurrency, LeavesAChildWhereEverythingWorks) {
  const testing::ScopedLog log(0);
  const KDXJobIDForCurrentThreadMonitor resetsAtEnd;
  EmbeddedSite::current().setLineSink(std::make_shared<FileLineSink>("/dev/null"));
  EmbeddedSite::current().setNumber("", kLongKey, 7);
  std::atomic<bool> done = false;
  std::jthread registers([&done] {
    while (!done) setJobIDForCurrentThread(std::int64_t{7});
  });
  std::jthread configures([&done] {
    while (!done) EmbeddedSite::current().setNumber("", kLongKey, 7);
  });
  int failures = 0;
  for (int child = 0; child < 100 && failures == 0; ++child) {
    const pid_t id = ::fork();
    if (id == 0) {
      ::alarm(30);  // ends a child that hangs
      ::_exit(getJobIDForCurrentThread() == UNDEFINED_JOB_ID && work(child) ? 0 : 1);
    }
    int status = -1;
    EXPECT_EQ(::waitpid(id, &status, 0), id);
    failures += status != 0;
  }
  done = true;
  EXPECT_EQ(failures, 0);
  EXPECT_TRUE(work(1));
}

}  // namespace
}  // namespace kdx
