// Two processes that dump, prune and mark in one directory and are killed at random moments, each replaced by another.
// `scripts/hammer` builds and runs it: hammer_dumps DIRECTORY SECONDS. Prints the counts; status 1 if a dump that a job
// was told of is lost or incomplete before a rule may delete it, if a file that belongs to nobody's series is touched,
// or if the next job doesn't put the directory in order.

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
#include <iterator>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <string>

#include "kdxcommon/dumpfile/dump_directory.h"
#include "kdxcommon/dumpfile/dump_file.h"
#include "kdxcommon/inhouse/embedded_site.h"
#include "kdxcommon/sinks/line_sink.h"

namespace {

namespace fs = std::filesystem;

constexpr std::uint32_t kType = 602, kSubclient = 7;
constexpr int kProcesses = 2, kIterations = 3;
constexpr std::uint32_t kLimit = 20;  // so many that no rule deletes the dumps of the jobs that run

// What a process has done of its job, in memory that all share.
struct Progress {
  std::atomic<std::int64_t> job = 0;
  std::atomic<int> dumps = 0;  // of the job, finished
  std::atomic<bool> marks = false;
};
struct Shared {
  std::array<Progress, kProcesses> processes;
  std::atomic<std::int64_t> jobs = 0;
  std::atomic<long> dumps = 0, marks = 0, wrong = 0;
};

std::u16string textOf(std::int64_t job, int iteration) {
  const std::size_t length = static_cast<std::size_t>((job * 7919 + iteration * 104729) % 40'000);
  const std::string head = "<dump job=\"" + std::to_string(job) + "\" iteration=\"" + std::to_string(iteration) + "\">";
  return std::u16string(head.begin(), head.end()) + std::u16string(length, u'x') + u"</dump>";
}

std::string contentOf(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

bool isWhole(const fs::path& path, std::int64_t job, int iteration) {
  const std::u16string text = textOf(job, iteration);
  return contentOf(path) == std::string(text.begin(), text.end());
}

fs::path pathOf(const fs::path& directory, std::int64_t job, int iteration) {
  return directory / ("KDXSQLDump_SC_7_JOB_" + std::to_string(job) + "_ITR_" + std::to_string(iteration) + ".txt");
}

bool dump(std::int64_t job, int iteration) {
  const std::u16string text = textOf(job, iteration);
  return kdx::CDumpFile(kdx::ITERATION_JOB, kType, kSubclient, job, iteration)
      .dumpXMLBlob(kdx::wstring(text.begin(), text.end()));
}

// Waits while another job is so far behind that its dumps would be the oldest ones.
void waitForOthers(const Shared& shared, std::int64_t job) {
  for (const Progress& other : shared.processes) {
    while (job - other.job > 3) ::usleep(50);
  }
}

// One job after another, until the process is killed.
[[noreturn]] void work(const fs::path& directory, Shared& shared, Progress& progress) {
  std::mt19937 random(std::random_device{}());
  while (true) {
    progress.dumps = 0;
    progress.marks = false;
    const std::int64_t job = progress.job = ++shared.jobs;
    waitForOthers(shared, job);
    const int iterations = 1 + static_cast<int>(random() % kIterations);
    for (int iteration = 0; iteration < iterations; ++iteration) {
      if (!dump(job, iteration)) ++shared.wrong;
      ++progress.dumps;
      ++shared.dumps;
      for (int earlier = 0; earlier <= iteration; ++earlier) {
        if (!isWhole(pathOf(directory, job, earlier), job, earlier)) ++shared.wrong;
      }
    }
    if (random() % 4 != 0) continue;
    progress.marks = true;
    if (!kdx::CDumpFile(kdx::ITERATION_JOB, kType, kSubclient, job, 0).markAsFailed()) ++shared.wrong;
    ++shared.marks;
  }
}

// Returns how many dumps that a killed process has finished are lost or incomplete. Those that it was marking may be
// deleted by the mark of another job.
int countLost(const fs::path& directory, const Progress& progress) {
  int lost = 0;
  for (int iteration = 0; iteration < progress.dumps && !progress.marks; ++iteration) {
    lost += !isWhole(pathOf(directory, progress.job, iteration), progress.job, iteration);
  }
  return lost;
}

class Hammer {
 public:
  explicit Hammer(const fs::path& directory) : directory_(directory) {
    fs::remove_all(directory_);
    fs::create_directories(directory_);
    for (const auto& [name, content] : kForeign) std::ofstream(directory_ / name) << content;
    kdx::EmbeddedSite& site = kdx::EmbeddedSite::current();
    site.setLineSink(std::make_shared<kdx::DescriptorLineSink>(-1));
    site.addApplication({kType, kSubclient}, {.type = kType});
    site.addSubclient({kType, kSubclient}, {.id = kSubclient, .directory = directory_.string()});
    site.setNumber("KDX", "nDUMPFILELIMIT", kLimit);
  }

  bool run(int seconds) {
    std::mt19937 random(std::random_device{}());
    for (std::size_t process = 0; process < kProcesses; ++process) start(process);
    for (const time_t end = ::time(nullptr) + seconds; ::time(nullptr) < end;) {
      ::usleep(random() % 20'000);
      const std::size_t process = random() % kProcesses;
      kill(process);
      start(process);
    }
    for (std::size_t process = 0; process < kProcesses; ++process) kill(process);
    return putInOrder();
  }

 private:
  static inline const std::map<std::string, std::string> kForeign = {
      {"notes", "kept"}, {"KDXSQLDump_SC_7_JOB_1_ITR_0.txt.bak", "kept"}, {"KDXSQLDump_SC_8_JOB_1_ITR_0.txt", "kept"}};

  void start(std::size_t process) {
    children_[process] = ::fork();
    if (children_[process] == 0) work(directory_, shared_, shared_.processes[process]);
  }

  void kill(std::size_t process) {
    ::kill(children_[process], SIGKILL);
    ::waitpid(children_[process], nullptr, 0);
    ++kills_;
    lost_ += countLost(directory_, shared_.processes[process]);
  }

  // A last job dumps and marks; then only its dumps have the names of failed ones, and no rule has more to delete.
  bool putInOrder() {
    const std::int64_t job = ++shared_.jobs;
    const bool sound = dump(job, 0) && kdx::CDumpFile(kdx::ITERATION_JOB, kType, kSubclient, job, 0).markAsFailed();
    int truncated = 0, misplaced = 0;
    std::uint32_t dumps = 0;
    for (const auto& entry : fs::directory_iterator(directory_)) {
      const std::string name = entry.path().filename().string();
      const std::optional<kdx::DumpName> parts = kdx::parseDumpName(name);
      if (kForeign.contains(name)) continue;
      if (!parts || parts->failed != (parts->jobId == job)) {
        ++misplaced;
      } else {
        ++dumps;
        truncated += !isWhole(entry.path(), parts->jobId, static_cast<int>(parts->itrId));
      }
    }
    int touched = 0;
    for (const auto& [name, content] : kForeign) touched += contentOf(directory_ / name) != content;
    std::printf(
        "dumps      %8ld dumps, %ld marks, %d kills: %d lost, %ld wrong, %d truncated, %d misplaced, %d touched\n",
        shared_.dumps.load(), shared_.marks.load(), kills_, lost_, shared_.wrong.load(), truncated, misplaced, touched);
    return sound && shared_.dumps > 0 && lost_ == 0 && shared_.wrong == 0 && misplaced == 0 && touched == 0 &&
           dumps <= kLimit + 1 && truncated <= kills_;
  }

  const fs::path directory_;
  Shared& shared_ =
      *new (::mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0)) Shared;
  std::array<pid_t, kProcesses> children_{};
  int kills_ = 0, lost_ = 0;
};

}  // namespace

int main(int count, char** arguments) {
  return count == 3 && Hammer(arguments[1]).run(std::atoi(arguments[2])) ? 0 : 1;
}
