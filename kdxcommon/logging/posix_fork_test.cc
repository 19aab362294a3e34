// For systems that fork: the library in the child of a process whose other threads were inside the library.

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

// Made before any fork: a sanitizer's heap, which a thread uses during a fork, would be locked for ever in the child.
const string kLongKey = "a key that the heap must hold";

// Uses everything that has a lock and returns whether the results are right.
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
    const KDXJobIDForCurrentThreadMonitor resets;  // a later child may have this thread's id
    while (!done) setJobIDForCurrentThread(std::int64_t{7});
  });
  std::jthread configures([&done] {
    while (!done) EmbeddedSite::current().setNumber("", kLongKey, 7);
  });
  int status = 0;
  for (int child = 0; child < 100 && status == 0; ++child) {
    const pid_t id = ::fork();
    if (id == 0) {
      ::alarm(250);  // ends a child that hangs, and none that waits for a processor
      ::_exit(getJobIDForCurrentThread() == UNDEFINED_JOB_ID && work(child) ? 0 : 1);
    }
    EXPECT_EQ(::waitpid(id, &status, 0), id);
  }
  done = true;
  EXPECT_EQ(status, 0);
  EXPECT_TRUE(work(1));
}

}  // namespace
}  // namespace kdx
