// Load on a rotating log, which `scripts/hammer` builds and runs: processes with eight threads each write
// numbered lines; then every line must be in one of the files, once and whole. Prints a row for each step; status 1 if
// a line is lost, split, mixed or repeated.
//
//   hammer_sinks threads DIRECTORY          # four processes, text and JSON, and one process on its own
//   hammer_sinks kill DIRECTORY SECONDS     # processes are killed at random moments, and others take their place
//   hammer_sinks disk DIRECTORY             # a small disk that is filled and emptied again

#include <signal.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "kdxcommon/sinks/rotating_file_sink.h"

namespace {

namespace fs = std::filesystem;
using kdx::LogFileUse;
using kdx::LogFormat;

constexpr int kProcesses = 4, kThreads = 8;
constexpr std::uint64_t kMaxBytes = 65536;

// The number of lines that each thread has written, in memory that the processes share.
using Written = std::array<std::atomic<int>, kProcesses * kThreads>;

std::string textOf(int writer, int number) {
  return '<' + std::to_string(writer) + '.' + std::to_string(number) + '.' +
         std::string(static_cast<std::size_t>(number * 7 % 60), 'z') + '>';
}

// What the files of a log contain.
struct Found {
  std::map<std::string, int> lines;  // by their texts
  int files = 0, bad = 0, tooLarge = 0, emptyOlder = 0;
};

Found readLog(const fs::path& directory) {
  Found found;
  for (const auto& entry : fs::directory_iterator(directory)) {
    if (!entry.path().filename().string().starts_with("log")) continue;
    ++found.files;
    found.tooLarge += entry.file_size() > kMaxBytes;
    found.emptyOlder += entry.file_size() == 0 && entry.path().filename() != "log";
    std::ifstream file(entry.path());
    for (std::string line; std::getline(file, line);) {
      const std::size_t begin = line.find('<'), end = line.find('>');
      const bool whole = begin != std::string::npos && end != std::string::npos && line.rfind('<') == begin &&
                         line.rfind('>') == end && (line[0] == '2' || line[0] == '{');
      if (whole) {
        ++found.lines[line.substr(begin, end - begin + 1)];
      } else {
        ++found.bad;
      }
    }
  }
  return found;
}

// Writes up to `count` lines with each thread, from the number that it has reached.
void write(const fs::path& directory, int process, LogFileUse use, LogFormat format, int count, Written& written) {
  kdx::RotatingFileLineSink sink((directory / "log").c_str(), {.maxBytes = kMaxBytes, .olderFiles = 5000}, use, format);
  if (!sink.opened()) ::_exit(3);
  std::vector<std::jthread> threads;
  for (int writer = process * kThreads; writer < (process + 1) * kThreads; ++writer) {
    threads.emplace_back([&, writer] {
      std::atomic<int>& done = written[static_cast<std::size_t>(writer)];
      for (int number = done; number < count; done = ++number) sink.write({2, "f", 1, {}, textOf(writer, number)});
    });
  }
}

pid_t start(const fs::path& directory, int process, LogFileUse use, LogFormat format, int count, Written& written) {
  const pid_t child = ::fork();
  if (child != 0) return child;
  write(directory, process, use, format, count, written);
  ::_exit(0);
}

// Prints a row and returns whether every line that was written is there once. A killed process may leave a line that it
// hasn't counted, and one that is truncated.
bool report(const char* step, const fs::path& directory, const Written& written, int kills) {
  const Found found = readLog(directory);
  long total = 0, lost = 0, repeated = 0;
  for (int writer = 0; writer < kProcesses * kThreads; ++writer) {
    for (int number = 0; number < written[static_cast<std::size_t>(writer)]; ++number, ++total) {
      const auto line = found.lines.find(textOf(writer, number));
      lost += line == found.lines.end();
      repeated += line != found.lines.end() && line->second > 1 && kills == 0;
    }
  }
  std::printf("%-10s %8ld lines, %5d files, %4d kills: %ld lost, %ld repeated, %d truncated, %d too large, %d empty\n",
              step, total, found.files, kills, lost, repeated, found.bad, found.tooLarge, found.emptyOlder);
  return total > 0 && lost + repeated + found.tooLarge + found.emptyOlder == 0 && found.bad <= kills;
}

fs::path emptied(const fs::path& directory) {
  fs::remove_all(directory);
  fs::create_directories(directory);
  return directory;
}

Written& sharedCounts() {
  void* memory = ::mmap(nullptr, sizeof(Written), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  return *new (memory) Written{};
}

bool hammerThreads(const fs::path& directory) {
  const struct {
    const char* name;
    int processes;
    LogFileUse use;
    LogFormat format;
  } kSteps[] = {{"text", kProcesses, LogFileUse::kSeveralProcesses, LogFormat::kText},
                {"JSON", kProcesses, LogFileUse::kSeveralProcesses, LogFormat::kJson},
                {"alone", 1, LogFileUse::kOneProcess, LogFormat::kText}};
  bool right = true;
  for (const auto& [name, processes, use, format] : kSteps) {
    Written& written = sharedCounts();
    emptied(directory);
    for (int process = 0; process < processes; ++process) start(directory, process, use, format, 2000, written);
    for (int status = 0; ::wait(&status) > 0;) right = right && status == 0;
    right = report(name, directory, written, 0) && right;
  }
  return right;
}

bool killAtRandom(const fs::path& directory, int seconds) {
  Written& written = sharedCounts();
  emptied(directory);
  std::array<pid_t, kProcesses> children;
  const auto startAgain = [&](int process) {
    children[static_cast<std::size_t>(process)] =
        start(directory, process, LogFileUse::kSeveralProcesses, LogFormat::kText, 1 << 30, written);
  };
  const auto stop = [&](int process) {
    ::kill(children[static_cast<std::size_t>(process)], SIGKILL);
    ::waitpid(children[static_cast<std::size_t>(process)], nullptr, 0);
  };
  for (int process = 0; process < kProcesses; ++process) startAgain(process);
  std::mt19937 random(std::random_device{}());
  int kills = 0;
  for (const time_t end = ::time(nullptr) + seconds; ::time(nullptr) < end; ++kills) {
    ::usleep(random() % 20'000);
    const int process = static_cast<int>(random() % kProcesses);
    stop(process);
    startAgain(process);
  }
  for (int process = 0; process < kProcesses; ++process, ++kills) stop(process);
  return report("kill", directory, written, kills);
}

bool fillDisk(const fs::path& directory) {
  const fs::path ballast = directory / "ballast";
  kdx::RotatingFileLineSink sink((directory / "log").c_str(), {.maxBytes = kMaxBytes, .olderFiles = 5000});
  bool right = true;
  for (int round = 0, number = 0; round < 5; ++round) {
    std::ofstream(ballast) << std::string(300'000, 'x');
    for (const int end = number + 10'000; number < end; ++number) sink.write({2, "f", 1, {}, textOf(0, number)});
    fs::remove(ballast);
    const int room = number;  // from here on, no line is lost
    for (const int end = number + 1000; number < end; ++number) sink.write({2, "f", 1, {}, textOf(0, number)});
    const Found found = readLog(directory);
    int lost = 0;
    for (int kept = room; kept < number; ++kept) lost += !found.lines.contains(textOf(0, kept));
    std::printf("disk       round %d, %d files: %d of 1000 lost after there was room, %d truncated, %d empty\n", round,
                found.files, lost, found.bad, found.emptyOlder);
    right = right && lost == 0 && found.bad <= 1 && found.emptyOlder == 0;
    for (const auto& entry : fs::directory_iterator(directory)) {
      if (entry.path().filename() != "log") fs::remove(entry);
    }
  }
  return right;
}

}  // namespace

int main(int count, char** arguments) {
  const std::string step = count > 2 ? arguments[1] : "";
  const fs::path directory = count > 2 ? arguments[2] : "";
  bool right = false;
  if (step == "threads") right = hammerThreads(directory);
  if (step == "kill" && count > 3) right = killAtRandom(directory, std::atoi(arguments[3]));
  if (step == "disk") right = fillDisk(directory);
  return right ? 0 : 1;
}
