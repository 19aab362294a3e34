// A log of limited size on a disk in memory, which fills up, doesn't rename, and whose files others move and remove,
// while time passes and the process restarts: no line may be lost that the disk took, none mixed with another, and the
// files must keep their order, number and size. The first two bytes of the input are the number of logs less one.

#include <algorithm>
#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "choices.h"
#include "kdxcommon/os/operating_system_wrapper.h"
#include "kdxcommon/sinks/rotating_file_sink.h"

namespace {

using kdx::testing::Choices;
using kdx::testing::require;

constexpr kdx::Rotation kRotation = {.maxBytes = 100, .olderFiles = 2};
constexpr int kNotFound = 2;

class Disk : public kdx::os::OperatingSystemWrapper {
 public:
  using File = std::shared_ptr<std::string>;
  std::map<std::string, File> names;
  std::vector<File> others;  // removed or moved by somebody
  std::uint64_t second = 0;
  std::size_t space = 0;
  bool renames = true;

  int _open(const char* path, int, int) override {
    File& file = names[path];
    if (!file) file = std::make_shared<std::string>();
    open_.push_back(file);
    return static_cast<int>(open_.size());
  }
  int _close(int) override { return 0; }
  std::int64_t _write(int file, const void* data, std::size_t count) override {
    count = std::min({count, space, std::size_t{20}});  // a line takes several writes
    if (count == 0) return -1;
    fileOf(file)->append(static_cast<const char*>(data), count);
    space -= count;
    return static_cast<std::int64_t>(count);
  }
  std::int64_t pread(int file, void* data, std::size_t count, std::uint64_t offset) override {
    return static_cast<std::int64_t>(fileOf(file)->copy(static_cast<char*>(data), count, offset));
  }
  int fileStatus(int file, kdx::os::FileStatus& status) override {
    return status = {1, reinterpret_cast<std::uintptr_t>(fileOf(file).get()), fileOf(file)->size()}, 0;
  }
  int fileStatus(const char* path, kdx::os::FileStatus& status) override {
    const File& file = find(path);
    if (file) status = {1, reinterpret_cast<std::uintptr_t>(file.get()), file->size()};
    return file ? 0 : -1;
  }
  int _stat64(const char* path, kdx::os::FileTimes&) override { return find(path) ? 0 : -1; }
  int remove(const char* path) override {
    if (!find(path)) return -1;
    others.push_back(names.extract(path).mapped());
    return 0;
  }
  int rename(const char* from, const char* to) override {
    require(!names.contains(to), "a file is lost by renaming another");
    if (!renames || !find(from)) return -1;
    names[to] = names.extract(from).mapped();
    return 0;
  }
  bool LockFile(int) override { return true; }
  bool TryLockFile(int) override { return true; }
  void UnlockFile(int) override {}
  std::uint64_t GetSystemTimeAsFileTime() override { return second * 10'000'000; }
  std::uint32_t GetCurrentThreadId() override { return 7; }

 private:
  const File& fileOf(int descriptor) const { return open_[static_cast<std::size_t>(descriptor - 1)]; }
  const File& find(const char* path) {
    static const File none;
    const auto found = names.find(path);
    if (found == names.end()) WSASetLastError(kNotFound);
    return found == names.end() ? none : found->second;
  }

  std::vector<File> open_;
};

class Log {
 public:
  explicit Log(Choices& choices) : choices_(choices) {}

  void check() {
    restart();
    for (std::size_t steps = choices_.below(60); steps > 0; --steps) step();
    sink_.reset();
    const std::map<int, int> found = checkFiles();
    for (int line = 1; line <= lines_; ++line) {
      const int times = found.contains(line) ? found.at(line) : 0;
      require(times == 1 || (times == 0 && lost_.contains(line)), "a line is lost, or stands twice");
    }
  }

 private:
  void restart() {
    use_ = choices_.below(2) ? kdx::LogFileUse::kOneProcess : kdx::LogFileUse::kSeveralProcesses;
    sink_.reset();
    sink_ = std::make_unique<kdx::RotatingFileLineSink>("log", kRotation, use_);
  }

  void step() {
    switch (choices_.below(16)) {
      case 0:
        return restart();
      case 1:
        disk_.renames = false, everRefused_ = true;
        return;
      case 2:
        disk_.renames = true, ++disk_.second;
        return;
      case 3:
        ++disk_.second;
        return;
      case 4:
        require(sink_->reopen(), "the file is opened anew");
        return;
      case 5:
        disk_.remove("log");
        return;
      case 6:
        disk_.remove("log.1");
        return;  // as a process leaves it that is killed
      default:
        break;
    }
    writeLine();
  }

  void writeLine() {
    constexpr std::size_t kSpace[] = {0, 10, 35, 50};
    const bool takesAll = choices_.below(4) != 0;
    disk_.space = takesAll ? 1000 : choices_.among(kSpace);
    const std::string text = std::to_string(++lines_) + std::string(choices_.below(90), 'x') + '.';
    sink_->write({2, "f", 1, {}, text});
    const bool follows = use_ == kdx::LogFileUse::kSeveralProcesses || followed_ != disk_.second;
    followed_ = disk_.second;
    if (!takesAll) {
      lost_.insert(lines_);
    } else if (follows) {
      require(disk_.names.contains("log") && disk_.names["log"]->ends_with(' ' + text + '\n'), "a name isn't followed");
    }
  }

  // Returns how often each line stands as a whole.
  std::map<int, int> checkFiles() const {
    std::map<int, int> found;
    int newest = 0;
    for (const char* name : {"log.2", "log.1", "log"}) {
      if (!disk_.names.contains(name)) continue;
      const std::string& file = *disk_.names.at(name);
      const int lines = count(file, newest, found);
      require(file.size() <= kRotation.maxBytes || lines <= 1 || everRefused_, "a file is too large");
    }
    for (const auto& [name, file] : disk_.names) require(name.starts_with("log") && name < "log.3", "a file too many");
    for (const Disk::File& file : disk_.others) {
      int none = 0;
      count(*file, none, found);
    }
    return found;
  }

  // Adds the lines of a file to `found`, which must be newer than `newest`.
  static int count(const std::string& file, int& newest, std::map<int, int>& found) {
    std::istringstream lines(file);
    int count = 0;
    for (std::string line; std::getline(lines, line); ++count) {
      const std::size_t text = line.find(" 1 2 f: ");
      require(line.find('Z') == line.rfind('Z') && (text == 26 || text == std::string::npos), "lines are mixed");
      if (lines.eof() || !line.ends_with('.')) continue;  // cut
      const int number = std::stoi(line.substr(text + 8));
      require(number > newest, "the lines keep their order");
      ++found[newest = number];
    }
    return count;
  }

  Choices& choices_;
  Disk disk_;
  const kdx::os::ScopedOperatingSystem scope_{disk_};
  std::unique_ptr<kdx::RotatingFileLineSink> sink_;
  kdx::LogFileUse use_ = {};
  std::uint64_t followed_ = ~std::uint64_t{0};  // the second of the latest line
  int lines_ = 0;
  std::set<int> lost_;  // the lines that the disk may not have taken
  bool everRefused_ = false;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  kdx::testing::repeat(data, size, [](Choices& choices) { Log(choices).check(); });
  return 0;
}
