#include "kdxcommon/os/posix_operating_system.h"

#include <dirent.h>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <netdb.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <functional>
#include <new>
#include <set>
#include <thread>
#include <tuple>

#include "kdxcommon/os/fork_handlers.h"
#include "kdxcommon/testing/posix_faults.h"
#include "kdxcommon/testing/temporary_directory.h"

namespace kdx::os {
namespace {

using testing::fault;
using testing::Fault;
using ::testing::Pair;

constexpr int kDumpFlags = kOpenReadWrite | kOpenCreate | kOpenTruncate;

struct PosixOperatingSystemTest : ::testing::Test {
  ~PosixOperatingSystemTest() override { fault = {}; }

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
  MEMORYSTATUSEX memory{.dwLength = 8};
  FileStatus status;
  std::uint32_t size = 9;
  std::int32_t length = 0;
  char* text = nullptr;
  char unit[1];
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
      {[&] { return system.gethostname(nullptr, 9) == 0 || system.gethostname(unit, -1) == 0; }, EINVAL},
      {[&] { return system.gethostbyname(nullptr) || system.GetComputerNameA(nullptr, size); }, EINVAL},
      {[&] { return system._open(nullptr, kOpenReadOnly, 0) != -1 || system.opendir(nullptr); }, EINVAL},
      {[&] { return system._stat64i32(nullptr, length) == 0 || system._waccess(nullptr, 0) == 0; }, EINVAL},
      {[&] { return system.fopen(nullptr, "r") || system.fopen(file.c_str(), nullptr); }, EINVAL},
      {[&] { return system.fopen(file.c_str(), "") || system.fopen(file.c_str(), "q"); }, EINVAL},
      {[&] { return system.GlobalMemoryStatusEx(memory); }, EINVAL},
      {[&] { return system.openSystemLog(nullptr, "log") || system.openSystemLog("source", nullptr); }, EINVAL},
      {[&] { return system.fileStatus(nullptr, status) == 0 || system.pread(0, nullptr, 1, 0) != -1; }, EINVAL},
      {[&] { return system.fileStatus(folder.c_str(), status) == 0; }, ENXIO},
      {[&] { return system.opendir(file.c_str()) != nullptr; }, ENOTDIR},
      {[&] { return system._stat64(nullptr, times) == 0 || system.remove(nullptr) == 0; }, EINVAL},
      {[&] { return system.FormatMessageA(0x1300, nullptr, 2, 0, nullptr, 0) != 0; }, EINVAL},
      {[&] { return system.FormatMessageA(0x1200, nullptr, 2, 0, &text, 0) != 0; }, EINVAL},
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

TEST_F(PosixOperatingSystemTest, RepeatsWhatASignalInterrupts) {
  for (const string_view call : {"open", "ftruncate", "write", "stat", "faccessat", "rename", "unlink"}) {
    fault = {call, EINTR, 2};
    const string path = directory.path("file"), other = directory.path("other");
    FileTimes times;
    std::int32_t size = 0;
    EXPECT_EQ(write(path, kDumpFlags, kModeWrite, "text"), 0);
    EXPECT_TRUE(system._waccess(std::u16string(path.begin(), path.end()).c_str(), R_OK) == 0);
    EXPECT_TRUE(system._stat64(path.c_str(), times) == 0 && system._stat64i32(path.c_str(), size) == 0 && size == 4);
    EXPECT_TRUE(system.rename(path.c_str(), other.c_str()) == 0 && system.remove(other.c_str()) == 0);
    EXPECT_EQ(fault.times, 0) << call;
  }
  fault = {"open", EWOULDBLOCK, 1};  // another process has a lease on the file
  EXPECT_EQ(write(directory.path("leased"), kDumpFlags, kModeWrite, "new"), 0);
}

TEST_F(PosixOperatingSystemTest, PassesOnWhatTheCLibraryReports) {
  const string path = directory.write("file", "kept");
  const auto dump = [&] { return write(path, kDumpFlags, kModeWrite, "") == 0; };
  const auto listed = [&] {
    DirectoryEntry entry;
    const auto stream = system.opendir(directory.path().c_str());
    return stream && stream->readdir(entry) == 1;
  };
  FileStatus status;
  BrokenDownTime local;
  TIME_ZONE_INFORMATION zone;
  utsname names;
  string text;
  MEMORYSTATUSEX memory{.dwLength = kMemoryStatusLength};
  std::uint32_t size = 0;
  char* message = nullptr;
  char bytes[1];
  const std::pair<Fault, std::function<bool()>> rows[] = {
      {{"fstat", EIO, 1}, dump},
      {{"ftruncate", EIO, 1}, dump},
      {{"fstat", EIO, 1}, [&] { return system.GetFileType(STDOUT_FILENO) != kFileTypeUnknown; }},
      {{"fstat", EIO, 1}, [&] { return system.fileStatus(STDOUT_FILENO, status) == 0; }},
      {{"socket", EMFILE, 1}, [&] { return system.openSystemLog("source", "log") != nullptr; }},
      {{"fdopen", ENOMEM, 1}, [&] { return system.fopen(path.c_str(), "r") != nullptr; }},
      {{"fdopendir", ENOMEM, 1}, listed},
      {{"readdir", EIO, 1}, listed},
      {{.call = "fstatat", .error = EIO, .times = 1, .withoutTypes = true}, listed},
      {{"open", EACCES, 2}, [&] { return system.readOsRelease(text); }},
      {{"strdup", ENOMEM, 1}, [&] { return system.FormatMessageA(0x1300, nullptr, 2, 0, &message, 0) != 0; }},
      {{"uname", EFAULT, 1}, [&] { return system.uname(names) == 0; }},
      {{"uname", EFAULT, 1}, [&] { return system.GetComputerNameA(bytes, size); }},
      {{"sysinfo", EFAULT, 1}, [&] { return system.GlobalMemoryStatusEx(memory); }},
      {{"localtime_r", EOVERFLOW, 9}, [&] { return system._localtime64(0, local); }},
      {{"localtime_r", EOVERFLOW, 9}, [&] { return system.GetTimeZoneInformation(zone) != kTimeZoneIdInvalid; }},
      {{"localtime_r", EOVERFLOW, 9}, [&] { return system._mktime64({.tm_mday = 1, .tm_year = 80}) != -1; }},
  };
  const int nextDescriptor = ::dup(STDOUT_FILENO);
  ::close(nextDescriptor);
  for (const auto& [reason, succeeds] : rows) {
    // In a thread of its own, whose zone isn't known yet.
    std::jthread([&, error = reason.error, &reason = reason, &succeeds = succeeds] {
      fault = reason;
      EXPECT_FALSE(succeeds()) << reason.call;
      EXPECT_EQ(system.GetLastError(), static_cast<std::uint32_t>(error)) << reason.call;
    });
  }
  EXPECT_EQ(::dup(STDOUT_FILENO), nextDescriptor);  // none is left open
  ::close(nextDescriptor);
  EXPECT_EQ(directory.read("file"), "kept");
}

TEST_F(PosixOperatingSystemTest, TellsRegularFilesFromTheRestWhateverTheirNames) {
  std::filesystem::create_symlink(directory.write("\xFF"), directory.path("link"));
  ASSERT_EQ(::mkfifo(directory.path("pipe").c_str(), 0600), 0);
  std::filesystem::create_directory(directory.path("folder"));
  const auto gone = system.opendir(directory.path("folder").c_str());
  DirectoryEntry entry;
  for (const bool withoutTypes : {false, true}) {
    fault = {.withoutTypes = withoutTypes};
    std::multiset<std::pair<string, bool>> found;
    const auto stream = system.opendir(directory.path().c_str());
    while (stream->readdir(entry) == 1) found.emplace(entry.name, entry.regularFile);
    EXPECT_EQ(errno, 0);
    EXPECT_THAT(found, ::testing::ElementsAre(Pair(".", false), Pair("..", false), Pair("folder", false),
                                              Pair("link", false), Pair("pipe", false), Pair("\xFF", true)));
  }
  std::filesystem::remove(directory.path("folder"));
  EXPECT_EQ(gone->readdir(entry), 0);
  fault = {.call = "fstatat", .error = ENOENT, .times = 9, .withoutTypes = true};  // removed meanwhile
  EXPECT_TRUE(system.opendir(directory.path().c_str())->readdir(entry) == 1 && !entry.regularFile);
}

TEST_F(PosixOperatingSystemTest, TellsWhatADescriptorIsOf) {
  const std::pair<int, std::uint32_t> rows[] = {{::open("/dev/null", O_RDONLY), kFileTypeCharacter},
                                                {::open(directory.path().c_str(), O_RDONLY), kFileTypeUnknown},
                                                {::open(directory.write("file").c_str(), O_RDONLY), kFileTypeDisk},
                                                {::socket(AF_UNIX, SOCK_STREAM, 0), kFileTypePipe}};
  for (const auto& [descriptor, type] : rows) {
    EXPECT_EQ(system.GetFileType(descriptor), type);
    ::close(descriptor);
  }
}

TEST_F(PosixOperatingSystemTest, TranslatesTheResolversCodes) {
  const int codes[][3] = {{HOST_NOT_FOUND, 0, EAI_NONAME},  {TRY_AGAIN, EAGAIN, EAI_AGAIN},
                          {NO_DATA, 0, EAI_NODATA},         {NO_RECOVERY, EBADF, EAI_FAIL},
                          {NETDB_INTERNAL, EMFILE, EMFILE}, {NETDB_INTERNAL, 0, EAI_FAIL}};
  for (const auto& [hostError, systemError, code] : codes) {
    fault = {"gethostbyname_r", systemError, 1, hostError};
    EXPECT_EQ(system.gethostbyname("host"), nullptr);
    EXPECT_EQ(errno, code);
  }
  std::vector<addrinfo> found;
  for (const auto& [code, error, result] :
       {std::tuple(EAI_AGAIN, EIO, EAI_AGAIN), {EAI_SYSTEM, EMFILE, EMFILE}, {EAI_SYSTEM, 0, EAI_SYSTEM}}) {
    for (const string_view call : {"getaddrinfo", "getnameinfo"}) {
      fault = {call, error, 1, code};
      EXPECT_EQ(call == "getaddrinfo" ? system.getaddrinfo("host", nullptr, {}, found)
                                      : system.getnameinfo(nullptr, 0, nullptr, 0, nullptr, 0, 0),
                result);
    }
  }
  // A host's names and addresses may need more memory than a thread has for them; a thread has at most a MiB.
  constexpr std::size_t kMiB = 1 << 20;
  for (const auto& [memory, calls, error] :
       {std::tuple(std::size_t{1024}, 1, 0), {std::size_t{1025}, 2, 0}, {kMiB, 11, 0}, {kMiB + 1, 11, ERANGE}}) {
    std::jthread([this, memory = memory, calls = calls, error = error] {
      fault = {"gethostbyname_r", 0, 100, 0, memory};
      EXPECT_EQ(system.gethostbyname("host") == nullptr, error != 0) << memory;
      EXPECT_EQ(100 - fault.times, calls) << memory;
      EXPECT_EQ(errno, error) << memory;
    });
  }
}

TEST_F(PosixOperatingSystemTest, DecodesTheSignaturesOfProcessors) {
  static CpuidRegisters signature;
  constexpr auto kRead = [](std::uint32_t leaf, CpuidRegisters& registers) {
    registers = signature;
    return leaf == 1;
  };
  const std::array<std::uint32_t, 3> rows[] = {{0x00050657, 6, 0x5507},     // family 6, with an extended model
                                               {0x00A20F12, 25, 0x2102},    // 15, with both extensions
                                               {0x0FF3052C, 5, 0x020C},     // whose extensions don't count
                                               {0x0FFF0FFF, 270, 0xFF0F}};  // all bits that count
  for (const auto& [eax, level, revision] : rows) {
    SYSTEM_INFO information;
    signature = {eax};
    readSignature(kRead, information);
    EXPECT_TRUE(information.wProcessorLevel == level && information.wProcessorRevision == revision) << eax;
  }
  SYSTEM_INFO unknown{.wProcessorLevel = 7};
  readSignature([](std::uint32_t, CpuidRegisters&) { return false; }, unknown);
  EXPECT_EQ(unknown.wProcessorLevel, 7);
}

TEST_F(PosixOperatingSystemTest, AnswersInTheSystemsOwnTerms) {
  char* text = nullptr;
  EXPECT_EQ(system.FormatMessageA(0x1300, nullptr, ENOSPC, 0, &text, 0), 23U);
  EXPECT_STREQ(text, "No space left on device");
  system.LocalFree(text);
  utsname names;
  ASSERT_EQ(system.uname(names), 0);
  const string& name = names.nodename;
  string buffer(name.size() + 1, 'x');
  auto size = static_cast<std::uint32_t>(name.size());
  EXPECT_FALSE(system.GetComputerNameA(buffer.data(), size));
  EXPECT_TRUE(size == buffer.size() && buffer == string(size, 'x'));
  EXPECT_TRUE(system.GetComputerNameA(buffer.data(), size));
  EXPECT_TRUE(size == name.size() && buffer == name + '\0');
  fault = {.call = "pthread_atfork", .times = 1, .code = ENOMEM};
  EXPECT_THROW(onFork(nullptr, nullptr, nullptr), std::bad_alloc);
  std::int64_t seconds = 0;
  EXPECT_EQ(system._time64(&seconds), seconds);
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

TEST_F(PosixOperatingSystemTest, TakesTheProcessorsNameFromTheProcessorOrTheFile) {
  static string brand;
  constexpr auto kRead = [](std::uint32_t leaf, CpuidRegisters& registers) {
    const std::size_t start = sizeof registers * (leaf - 0x80000002);
    return start < brand.size() && brand.copy(reinterpret_cast<char*>(registers.data()), sizeof registers, start) == 16;
  };
  const string full = "A processor of three leaves with forty-eight un.", inFile = "model name\t: in the file\n";
  for (const auto& [leaves, content, expected] : {std::tuple(full, inFile, full.c_str()),
                                                  {"  Short " + string(40, '\0'), inFile, "Short"},
                                                  {full.substr(0, 32), inFile, "in the file"},
                                                  {string(48, ' '), inFile, "in the file"},
                                                  {"", "model name: no\n", "before"},
                                                  {"", string(), "before"}}) {
    string name = "before";
    brand = leaves;
    if (!content.empty()) directory.write("cpuinfo", content);
    const string path = directory.path(content.empty() ? "none" : "cpuinfo");
    const bool found = readProcessorName(kRead, path.c_str(), name);
    EXPECT_EQ(found, name != "before");
    EXPECT_EQ(name, expected);
  }
}

TEST_F(PosixOperatingSystemTest, LeavesTheStandardDescriptorsToThoseThatTheyAreFor) {
  const int kept = ::dup(STDERR_FILENO);
  ::close(STDERR_FILENO);
  const int file = system._open(directory.path("dump").c_str(), kDumpFlags, kModeWrite);
  auto stream = system.fopen(directory.path("text").c_str(), "w");
  fault = {"fcntl", EMFILE, 1};
  EXPECT_TRUE(system._open(directory.path("text").c_str(), kOpenReadOnly, 0) == -1 && errno == EMFILE);
  EXPECT_EQ(::fcntl(STDERR_FILENO, F_GETFD), -1);
  EXPECT_EQ(stream->fwrite("x", 1), 1U);
  stream.reset();
  ::dup2(kept, STDERR_FILENO);
  ::close(kept);
  EXPECT_EQ(directory.read("text"), "x");
  for (const char* mode : {"a", "r+", "w+"})
    EXPECT_EQ(system.fopen(directory.path("text").c_str(), mode)->fwrite("yz", 2), 2U);
  EXPECT_EQ(directory.read("text"), "yz");
  EXPECT_GT(file, STDERR_FILENO);
  EXPECT_TRUE(::fcntl(file, F_GETFD) & FD_CLOEXEC);
  EXPECT_EQ(system._close(file), 0);
}

}  // namespace
}  // namespace kdx::os
