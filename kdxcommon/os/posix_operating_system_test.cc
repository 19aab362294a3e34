#include "kdxcommon/os/posix_operating_system.h"

#include <dirent.h>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <netdb.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <functional>
#include <set>

#include "kdxcommon/testing/temporary_directory.h"

namespace kdx::os {
namespace {

using ::testing::Pair;

constexpr int kDumpFlags = kOpenReadWrite | kOpenCreate | kOpenTruncate;

struct PosixOperatingSystemTest : ::testing::Test {
  // Returns 0, or the error of the step that failed.
  int write(const string& path, int flags, int mode, string_view content) {
    const int file = system._open(path.c_str(), flags, mode);
    if (file == -1) return errno;
    const int error = system._write(file, content.data(), content.size()) == std::ssize(content) ? 0 : errno;
    EXPECT_TRUE(::fcntl(file, F_GETFD) & FD_CLOEXEC);
    EXPECT_EQ(system._close(file), 0);
    return error;
  }

  PosixOperatingSystem system;
  testing::TemporaryDirectory directory;
};

TEST_F(PosixOperatingSystemTest, CreatesFilesThatOnlyTheOwnerWritesAndNobodyExecutes) {
  const mode_t cases[][3] = {
      {0, kModeWrite, 0640}, {0, 0777 & ~kModeWrite, 0440}, {027, 0777, 0640}, {077, 0777, 0600}};
  for (const auto& [mask, mode, permissions] : cases) {
    const string path = directory.path(std::to_string(mask + mode));
    const mode_t previous = ::umask(mask);
    EXPECT_EQ(write(path, kDumpFlags, static_cast<int>(mode), "x"), 0);
    ::umask(previous);
    EXPECT_EQ(static_cast<mode_t>(std::filesystem::status(path).permissions()), permissions) << mask << ' ' << mode;
  }
}

TEST_F(PosixOperatingSystemTest, FailuresLeaveTheReasonAndTouchNothing) {
  const string folder = directory.path(), file = directory.write("file", "kept"), missing = directory.path("no/file");
  const string link = directory.path("link"), dangling = directory.path("dangling"), pipe = directory.path("pipe");
  std::filesystem::create_symlink(file, link);
  std::filesystem::create_symlink(directory.path("made"), dangling);
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  const int nextDescriptor = ::dup(STDOUT_FILENO);
  ::close(nextDescriptor);
  FileTimes times{1, 2, 3};
  char* text = nullptr;
  const std::pair<std::function<bool()>, int> cases[] = {
      {[&] { return write(missing, kDumpFlags, kModeWrite, "") == 0; }, ENOENT},
      {[&] { return write(folder, kDumpFlags, kModeWrite, "") == 0; }, EISDIR},
      {[&] { return write(link, kDumpFlags, kModeWrite, "") == 0; }, ELOOP},
      {[&] { return write(dangling, kDumpFlags, kModeWrite, "") == 0; }, ELOOP},
      {[&] { return write(pipe, kDumpFlags, kModeWrite, "") == 0; }, ENXIO},
      {[&] { return write(pipe, kOpenWriteOnly | kOpenTruncate, kModeWrite, "") == 0; }, ENXIO},
      {[&] { return write("/dev/null", kDumpFlags, kModeWrite, "") == 0; }, ENXIO},
      {[&] { return write("/dev/full", kOpenWriteOnly, 0, "text") == 0; }, ENOSPC},
      {[&] { return system._write(STDOUT_FILENO, nullptr, 1) != -1; }, EINVAL},
      {[&] { return system._stat64(missing.c_str(), times) == 0; }, ENOENT},
      {[&] { return system.fopen(file.c_str(), "wx") != nullptr; }, EEXIST},
      {[&] { return system.remove(folder.c_str()) == 0; }, EISDIR},
      {[&] { return system.rename(file.c_str(), nullptr) == 0 || system.rename(nullptr, "x") == 0; }, EINVAL},
      {[&] { return system.gethostname(nullptr, 9) == 0; }, EINVAL},
      {[&] { return system.opendir(file.c_str()) != nullptr; }, ENOTDIR},
      {[&] { return system._stat64(nullptr, times) == 0 || system.remove(nullptr) == 0; }, EINVAL},
      {[&] { return system.FormatMessageA(0x1300, nullptr, 2, 0, nullptr, 0) != 0; }, EINVAL},
      {[&] { return system.FormatMessageA(0x1300, nullptr, 0x80000000, 0, &text, 0) != 0; }, EINVAL},
  };
  for (const auto& [succeeds, error] : cases) {
    errno = 0;
    EXPECT_FALSE(succeeds()) << &succeeds - &cases[0].first;
    EXPECT_EQ(system.GetLastError(), static_cast<std::uint32_t>(error)) << &succeeds - &cases[0].first;
  }
  EXPECT_EQ(times.modified + 10 * times.accessed + 100 * times.attributes, 321);
  EXPECT_TRUE(directory.read("file") == "kept" && !directory.has("made") && !text);
  EXPECT_EQ(::dup(STDOUT_FILENO), nextDescriptor);  // none is left open
  ::close(nextDescriptor);
  EXPECT_EQ(system._write(STDOUT_FILENO, nullptr, 0), 0);
}

TEST_F(PosixOperatingSystemTest, WaitsForTheOneWhoHasALeaseOnTheFile) {
  static int leased;
  leased = ::open(directory.write("leased", "read by another").c_str(), O_RDONLY);
  if (::fcntl(leased, F_SETLEASE, F_RDLCK) != 0) GTEST_SKIP() << "no leases on this file system";
  const auto previous = std::signal(SIGIO, [](int) { ::fcntl(leased, F_SETLEASE, F_UNLCK); });
  EXPECT_EQ(write(directory.path("leased"), kDumpFlags, kModeWrite, "new"), 0);
  std::signal(SIGIO, previous);
  ::close(leased);
  EXPECT_EQ(directory.read("leased"), "new");
}

TEST_F(PosixOperatingSystemTest, TellsRegularFilesFromTheRestWhateverTheirNames) {
  std::filesystem::create_symlink(directory.write("\xFF"), directory.path("link"));
  ASSERT_EQ(::mkfifo(directory.path("pipe").c_str(), 0600), 0);
  std::filesystem::create_directory(directory.path("folder"));
  std::multiset<std::pair<string, bool>> found;
  const auto stream = system.opendir(directory.path().c_str()), gone = system.opendir(directory.path("folder").c_str());
  const int asked = ::open(directory.path().c_str(), O_RDONLY | O_DIRECTORY);
  DirectoryEntry entry;
  bool regular = true;
  while (stream->readdir(entry) == 1) {
    found.emplace(entry.name, entry.regularFile);
    EXPECT_TRUE(findRegularFile(DT_UNKNOWN, asked, entry.name, regular));
    EXPECT_EQ(regular, entry.regularFile) << entry.name;
  }
  EXPECT_EQ(errno, 0);
  EXPECT_TRUE(findRegularFile(DT_UNKNOWN, asked, "gone", regular) && !regular);
  ::close(asked);
  EXPECT_FALSE(findRegularFile(DT_UNKNOWN, asked, "file", regular));
  EXPECT_THAT(found, ::testing::ElementsAre(Pair(".", false), Pair("..", false), Pair("folder", false),
                                            Pair("link", false), Pair("pipe", false), Pair("\xFF", true)));
  std::filesystem::remove(directory.path("folder"));
  EXPECT_EQ(gone->readdir(entry), 0);
}

TEST_F(PosixOperatingSystemTest, AnswersInTheSystemsOwnTerms) {
  char* text = nullptr;
  EXPECT_EQ(system.FormatMessageA(0x1300, nullptr, ENOSPC, 0, &text, 0), 23U);
  EXPECT_STREQ(text, "No space left on device");
  system.LocalFree(text);
  const int codes[][3] = {{HOST_NOT_FOUND, 0, EAI_NONAME},  {TRY_AGAIN, EAGAIN, EAI_AGAIN},
                          {NO_DATA, 0, EAI_NODATA},         {NO_RECOVERY, EBADF, EAI_FAIL},
                          {NETDB_INTERNAL, ERANGE, ERANGE}, {NETDB_INTERNAL, 0, EAI_FAIL}};
  for (const auto& [hostError, systemError, code] : codes) EXPECT_EQ(resolverCodeOf(hostError, systemError), code);
  utsname names;
  ASSERT_EQ(system.uname(names), 0);
  const string& name = names.nodename;
  string buffer(name.size() + 1, 'x');
  auto size = static_cast<std::uint32_t>(name.size());
  EXPECT_FALSE(system.GetComputerNameA(buffer.data(), size));
  EXPECT_TRUE(size == buffer.size() && buffer == string(size, 'x'));
  EXPECT_TRUE(system.GetComputerNameA(buffer.data(), size));
  EXPECT_TRUE(size == name.size() && buffer == name + '\0');
  EXPECT_EQ(fileTimeOf(1'700'000'000, 123'456'789), 133'444'736'001'234'567U);
  ASSERT_EQ(system.GetCurrentThreadId(), static_cast<std::uint32_t>(::gettid()));
  EXPECT_EXIT(::_exit(system.GetCurrentThreadId() == static_cast<std::uint32_t>(::gettid()) ? 0 : 1),
              ::testing::ExitedWithCode(0), "");  // runs in a forked child
}

TEST_F(PosixOperatingSystemTest, ReadsTheFirstLinesOfAFileAndTheProcessorsName) {
  const string full(65535, 'x');
  string text = "before", cpuInfo, name;
  EXPECT_FALSE(readFirstLines(directory.path("none").c_str(), text) || readFirstLines(directory.path().c_str(), text));
  EXPECT_EQ(text, "before");
  for (const auto& [content, read] :
       {std::pair(full, full), {full + "\ny", full + '\n'}, {full + "xy", ""}, {"", ""}}) {
    EXPECT_TRUE(readFirstLines(directory.write("file", content).c_str(), text));
    EXPECT_TRUE(text == read) << text.size();
  }
  EXPECT_EQ(modelNameIn("model\t\t: 85\nmodel name\t:  AMD  EPYC \nmodel name\t: other\n"), "AMD  EPYC");
  EXPECT_EQ(modelNameIn("model name\t: "), "");
  ASSERT_TRUE(readFirstLines("/proc/cpuinfo", cpuInfo));
  EXPECT_EQ(system.processorName(name), !modelNameIn(cpuInfo).empty());
  EXPECT_EQ(name, modelNameIn(cpuInfo));
}

TEST_F(PosixOperatingSystemTest, LeavesTheStandardDescriptorsToThoseThatTheyAreFor) {
  const int kept = ::dup(STDERR_FILENO);
  ::close(STDERR_FILENO);
  const int file = system._open(directory.path("dump").c_str(), kDumpFlags, kModeWrite);
  auto stream = system.fopen(directory.path("text").c_str(), "w");
  EXPECT_EQ(::fcntl(STDERR_FILENO, F_GETFD), -1);
  EXPECT_EQ(stream->fwrite("x", 1), 1U);
  stream.reset();
  ::dup2(kept, STDERR_FILENO);
  ::close(kept);
  EXPECT_EQ(directory.read("text"), "x");
  EXPECT_GT(file, STDERR_FILENO);
  EXPECT_TRUE(::fcntl(file, F_GETFD) & FD_CLOEXEC);
  EXPECT_EQ(system._close(file), 0);
}

}  // namespace
}  // namespace kdx::os
