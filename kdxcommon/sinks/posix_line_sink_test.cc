// Sinks on pipes, sockets and FIFOs.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <future>
#include <utility>

#include "kdxcommon/base/job_id.h"
#include "kdxcommon/sinks/line_sink.h"
#include "kdxcommon/sinks/rotating_file_sink.h"
#include "kdxcommon/sinks/system_log_sink.h"
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
    sink.write(kRecord);  // SIGPIPE would end the process
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

// A signal while a line waits for space in a pipe: twice it does nothing, then it reads the data that fills the pipe.
int signals = 0;
bool drained = false;
int fullPipe[2];

TEST(PosixLineSinks, WriteOnAfterASignal) {
  signals = 0;  // of an earlier run
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

// A socket that stands for the daemon, and a restart of the daemon.
TEST(PosixLineSinks, ReachTheSystemsLog) {
  const testing::TemporaryDirectory directory;
  sockaddr_un address = {};
  address.sun_family = AF_UNIX;
  directory.path("log").copy(address.sun_path, sizeof address.sun_path - 1);
  SystemLogSink sink("agent", address.sun_path);
  ASSERT_TRUE(sink.opened());
  sink.write({2, "f", 1, {}, "lost"});
  const std::string source = "agent[" + std::to_string(::getpid()) + "]: ";
  const string longText = string(16383, 'x') + "\u20AC";
  const struct {
    LogRecord record;
    std::string expected;
  } rows[] = {
      {{-1, "Agent::run", 3456, "No such file", "a\nb"}, "<11>" + source + "job 3456 Agent::run: a\\nb (No such file)"},
      {{0, "f", UNDEFINED_JOB_ID, {}, "t"}, "<13>" + source + "f: t"},
      {{2, "f", UNDEFINED_JOB_ID, {}, "t"}, "<14>" + source + "f: t"},
      {{3, "f", UNDEFINED_JOB_ID, {}, "t"}, "<15>" + source + "f: t"},
      {{{}, "", UNDEFINED_JOB_ID, {}, longText}, "<14>" + source + longText.substr(0, 16383)},
  };
  for (const auto& [record, expected] : rows) {
    const int daemon = ::socket(AF_UNIX, SOCK_DGRAM, 0);
    ASSERT_EQ(::bind(daemon, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    sink.write(record);
    char message[32768];
    const ssize_t size = ::recv(daemon, message, sizeof message, MSG_DONTWAIT);
    EXPECT_EQ(std::string(message, static_cast<std::size_t>(std::max<ssize_t>(size, 0))), expected);
    ::close(daemon);
    ::unlink(address.sun_path);
  }
  EXPECT_FALSE(SystemLogSink("agent", std::string(200, 'x').c_str()).opened());
}

// Another process is refused; a forked child logs on without rotating the file.
TEST(PosixLineSinks, KnowWhichProcessRotatesAFile) {
  const testing::TemporaryDirectory directory;
  const std::string path = directory.path("log");
  RotatingFileLineSink sink(path.c_str(), {.maxBytes = 1});
  sink.write(kRecord);
  const pid_t child = ::fork();
  if (child == 0) {
    sink.write(kRecord);
    const bool refused = !RotatingFileLineSink(path.c_str()).opened();
    ::_exit(refused ? 0 : 1);
  }
  int status = -1;
  EXPECT_EQ(::waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0);
  EXPECT_FALSE(directory.has("log.1"));
  sink.write(kRecord);
  EXPECT_TRUE(directory.has("log.1"));
}

}  // namespace
}  // namespace kdx
