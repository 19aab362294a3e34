// Sinks on pipes, sockets and FIFOs.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

#include <cerrno>
#include <future>
#include <utility>

#include "kdxcommon/sinks/line_sink.h"
#include "kdxcommon/testing/temporary_directory.h"

namespace kdx {
namespace {

const LogRecord kRecord = {2, "f", 1, {}, "text"};

bool isPipeSignalPending() {
  sigset_t pending;
  return ::sigpending(&pending) == 0 && ::sigismember(&pending, SIGPIPE) == 1;
}

std::string readAll(int descriptor) {
  std::string all;
  char part[4096];
  for (ssize_t size; (size = ::read(descriptor, part, sizeof part)) > 0;)
    all.append(part, static_cast<std::size_t>(size));
  ::close(descriptor);
  return all;
}

TEST(PosixLineSinks, SurviveAReaderThatIsGoneAndLeaveTheHostItsSignals) {
  int pipe[2], socket[2];
  ASSERT_EQ(::pipe(pipe) + ::socketpair(AF_UNIX, SOCK_STREAM, 0, socket), 0);
  ::close(pipe[0]);
  ::close(socket[0]);
  sigset_t pipeSignal, mask;
  ::sigemptyset(&pipeSignal);
  ::sigaddset(&pipeSignal, SIGPIPE);
  for (const int descriptor : {pipe[1], socket[1]}) {
    DescriptorLineSink sink(descriptor);
    sink.write(kRecord);  // the signal would end the process
    ASSERT_EQ(::pthread_sigmask(SIG_BLOCK, &pipeSignal, &mask), 0);
    EXPECT_EQ(::sigismember(&mask, SIGPIPE), 0);
    sink.write(kRecord);
    EXPECT_FALSE(isPipeSignalPending());
    ::raise(SIGPIPE);  // the host's own
    sink.write(kRecord);
    EXPECT_TRUE(isPipeSignalPending());
    int taken = 0;
    ::sigwait(&pipeSignal, &taken);
    ::pthread_sigmask(SIG_SETMASK, &mask, nullptr);
    ::close(descriptor);
  }
}

TEST(PosixLineSinks, NeedAReaderBehindAFifo) {
  const testing::TemporaryDirectory directory;
  const std::string path = directory.path("fifo");
  ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
  FileLineSink unread(path.c_str());
  EXPECT_EQ(errno, ENXIO);
  EXPECT_TRUE(!unread.opened() && unread.drops());

  const int reader = ::open(path.c_str(), O_RDONLY | O_NONBLOCK);
  ::fcntl(reader, F_SETFL, 0);
  auto sink = std::make_unique<FileLineSink>(path.c_str());
  std::future<std::string> all = std::async([reader] { return readAll(reader); });
  const std::string text(1'000'000, 'x');  // more than the FIFO holds, so that its writer must wait
  sink->write({2, "f", 1, {}, text});
  sink.reset();
  EXPECT_TRUE(all.get().ends_with(" f: " + text + '\n'));
}

// What a signal does while a line waits for room in a pipe: nothing twice, and then it reads what fills it.
int signals = 0;
bool drained = false;
int fullPipe[2];

TEST(PosixLineSinks, WriteOnAfterASignal) {
  ASSERT_EQ(::pipe(fullPipe), 0);
  ::fcntl(fullPipe[1], F_SETFL, O_NONBLOCK);
  while (::write(fullPipe[1], "", 1) == 1) {
  }
  ::fcntl(fullPipe[1], F_SETFL, 0);
  struct sigaction action = {}, before;
  action.sa_handler = [](int) {
    static char room[1 << 16];
    if (++signals == 3) drained = ::read(fullPipe[0], room, sizeof room) > 0;
  };
  ::sigaction(SIGALRM, &action, &before);
  const itimerval everyMillisecond = {{0, 1000}, {0, 1000}}, never = {};
  ::setitimer(ITIMER_REAL, &everyMillisecond, nullptr);
  DescriptorLineSink(fullPipe[1]).write(kRecord);
  ::setitimer(ITIMER_REAL, &never, nullptr);
  ::sigaction(SIGALRM, &before, nullptr);
  ::close(fullPipe[1]);
  EXPECT_TRUE(readAll(fullPipe[0]).ends_with(" f: text\n"));
}

}  // namespace
}  // namespace kdx
