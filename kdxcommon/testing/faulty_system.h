// An operating system one of whose operations fails, and a loop that makes each operation of a scenario fail in turn.

#ifndef KDXCOMMON_TESTING_FAULTY_SYSTEM_H_
#define KDXCOMMON_TESTING_FAULTY_SYSTEM_H_

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "kdxcommon/testing/dump_site.h"

namespace kdx::testing {

inline constexpr int kNothing = 0;       // a write that writes no byte, and doesn't fail
inline constexpr int kPart = 1'000'000;  // a read or write of one byte

/// The faults of each operation: the last errors that it can leave, or one of the above.
inline const std::map<std::string_view, std::vector<int>> kFaults = {
    {"FormatMessageA", {8, 317}},
    {"GetTimeZoneInformation", {2, 5, 87}},
    {"_get_tzname", {22, 34}},
    {"_mktime64", {22, 75}},
    {"_gmtime64", {22}},
    {"_localtime64", {22}},
    {"_open", {2, 4, 5, 6, 12, 13, 17, 20, 23, 24, 28, 30, 36, 40}},
    {"_write", {kNothing, kPart, 5, 9, 11, 27, 28, 122}},
    {"writeWithoutSignal", {kNothing, kPart, 5, 9, 11, 28, 32, 104}},
    {"GetFileType", {5, 9}},
    {"LockFile", {6, 33, 37}},
    {"TryLockFile", {11, 13, 33, 37}},
    {"fileStatus", {2, 5, 6, 13}},
    {"pread", {kNothing, 5}},
    {"openSystemLog", {12, 24, 97}},
    {"report", {2, 11, 90, 105}},
    {"_close", {4, 5, 28, 122}},
    {"_stat64", {5, 13, 20, 40, 75}},
    {"_stat64i32", {2, 5, 13, 75}},
    {"_waccess", {2, 5, 13, 30}},
    {"fopen", {2, 5, 13, 23, 24, 28, 30}},
    {"fread", {kPart, 5, 21}},
    {"fwrite", {kPart, 5, 27, 28}},
    {"remove", {1, 2, 5, 13, 16, 26, 30}},
    {"rename", {1, 2, 5, 13, 16, 17, 18, 28, 30}},
    {"opendir", {2, 5, 12, 13, 20, 23, 24}},
    {"readdir", {5, 9, 12, 75}},
    {"GetVersionExA", {5, 38, 122}},
    {"GetVersionExW", {5, 38, 122}},
    {"GlobalMemoryStatusEx", {5, 14}},
    {"GetComputerNameA", {5, 111, 234}},
    {"uname", {14, 38}},
    {"readOsRelease", {2, 5, 13}},
    {"processorName", {2, 5}},
    {"WSAStartup", {10067, 10091, 10092}},
    {"gethostname", {14, 36, 10050}},
    {"gethostbyname", {-2, -3, -4, 12, 11001}},
    {"getaddrinfo", {-2, -3, -4, -10, 11001}},
    {"getnameinfo", {-2, -3, -4, -12, 11001}},
};

/// The present system with a fixed clock, one of whose calls fails, or all from this call on. Counts what is open.
class FaultySystem : public FixedClock {
 public:
  /// The call number `failing` fails, counted from 1, by fault number `kind` of its operation. If `dies`, the process
  /// ends there instead.
  FaultySystem(int failing, std::size_t kind, bool forEver, bool dies = false)
      : failing_(failing), kind_(kind), forEver_(forEver), dies_(dies) {}

  /// The operation whose call has a fault; empty if the call was not reached. And the same if that fault is a failure.
  std::string_view reached() const { return reached_; }
  std::string_view failed() const { return isPart_ ? "" : reached_; }
  int faults() const { return faults_; }
  /// The error that the latest fault left, and 0 before.
  int error() const { return error_; }
  int open() const { return open_; }  ///< descriptors, streams, texts and locks that were not released

  static constexpr int kDeath = 42;  ///< the status of a process that ended at its call

  std::uint32_t FormatMessageA(std::uint32_t flags, const void* source, std::uint32_t id, std::uint32_t language,
                               char** buffer, std::uint32_t size) override {
    if (fails("FormatMessageA")) return 0;
    return opened(Base::FormatMessageA(flags, source, id, language, buffer, size), 0U);
  }
  void LocalFree(void* memory) override { open_ -= memory != nullptr, Base::LocalFree(memory); }
  std::uint32_t GetTimeZoneInformation(os::TIME_ZONE_INFORMATION& zone) override {
    return fails("GetTimeZoneInformation") ? os::kTimeZoneIdInvalid : Base::GetTimeZoneInformation(zone);
  }
  int _get_tzname(char* buffer, std::size_t size, int index) override {
    const auto fault = fails("_get_tzname");
    return fault ? *fault : Base::_get_tzname(buffer, size, index);
  }
  std::int64_t _mktime64(const os::BrokenDownTime& t) override { return fails("_mktime64") ? -1 : Base::_mktime64(t); }
  bool _gmtime64(std::int64_t s, os::BrokenDownTime& t) override {
    return !fails("_gmtime64") && Base::_gmtime64(s, t);
  }
  bool _localtime64(std::int64_t s, os::BrokenDownTime& t) override {
    return !fails("_localtime64") && Base::_localtime64(s, t);
  }
  int _open(const char* path, int flags, int mode) override {
    return fails("_open") ? -1 : opened(Base::_open(path, flags, mode), -1);
  }
  std::int64_t _write(int file, const void* data, std::size_t count) override {
    const auto fault = fails("_write");
    return isFailure(fault) ? -1 : Base::_write(file, data, part(fault, count));
  }
  std::int64_t writeWithoutSignal(int file, const void* data, std::size_t count) override {
    const auto fault = fails("writeWithoutSignal");
    return isFailure(fault) ? -1 : Base::writeWithoutSignal(file, data, part(fault, count));
  }
  std::uint32_t GetFileType(int file) override {
    return fails("GetFileType") ? os::kFileTypeUnknown : Base::GetFileType(file);
  }
  bool LockFile(int file) override { return !fails("LockFile") && opened(Base::LockFile(file), false); }
  void UnlockFile(int file) override { --open_, Base::UnlockFile(file); }
  bool TryLockFile(int file) override { return !fails("TryLockFile") && Base::TryLockFile(file); }
  int fileStatus(int file, os::FileStatus& status) override {
    return fails("fileStatus") ? -1 : Base::fileStatus(file, status);
  }
  int fileStatus(const char* path, os::FileStatus& status) override {
    return fails("fileStatus") ? -1 : Base::fileStatus(path, status);
  }
  std::int64_t pread(int file, void* data, std::size_t count, std::uint64_t offset) override {
    const auto fault = fails("pread");
    return isFailure(fault) ? -1 : Base::pread(file, data, part(fault, count), offset);
  }
  int _close(int file) override {  // also if it fails, the file is closed
    const bool failing = fails("_close").has_value();
    --open_;
    const int closed = Base::_close(file);
    return failing ? -1 : closed;
  }
  int _stat64(const char* path, os::FileTimes& t) override { return fails("_stat64") ? -1 : Base::_stat64(path, t); }
  int _stat64i32(const char* path, std::int32_t& size) override {
    return fails("_stat64i32") ? -1 : Base::_stat64i32(path, size);
  }
  int _waccess(const wchar* path, int mode) override { return fails("_waccess") ? -1 : Base::_waccess(path, mode); }
  std::unique_ptr<os::FileStream> fopen(const char* path, const char* mode) override {
    return fails("fopen") ? nullptr : wrapped<File>(Base::fopen(path, mode));
  }
  int remove(const char* path) override { return fails("remove") ? -1 : Base::remove(path); }
  int rename(const char* from, const char* to) override { return fails("rename") ? -1 : Base::rename(from, to); }
  std::unique_ptr<os::DirectoryStream> opendir(const char* path) override {
    return fails("opendir") ? nullptr : wrapped<Directory>(Base::opendir(path));
  }
  std::unique_ptr<os::SystemLog> openSystemLog(const char* source, const char* address) override {
    return fails("openSystemLog") ? nullptr : wrapped<Log>(Base::openSystemLog(source, address));
  }
  bool GetVersionExA(os::OSVERSIONINFOEXA& v) override { return !fails("GetVersionExA") && Base::GetVersionExA(v); }
  bool GetVersionExW(os::OSVERSIONINFOW& v) override { return !fails("GetVersionExW") && Base::GetVersionExW(v); }
  bool GlobalMemoryStatusEx(os::MEMORYSTATUSEX& status) override {
    return !fails("GlobalMemoryStatusEx") && Base::GlobalMemoryStatusEx(status);
  }
  bool GetComputerNameA(char* buffer, std::uint32_t& size) override {
    return !fails("GetComputerNameA") && Base::GetComputerNameA(buffer, size);
  }
  int uname(os::utsname& names) override { return fails("uname") ? -1 : Base::uname(names); }
  bool readOsRelease(string& text) override { return !fails("readOsRelease") && Base::readOsRelease(text); }
  bool processorName(string& name) override { return !fails("processorName") && Base::processorName(name); }
  int WSAStartup(std::uint16_t version) override {
    const auto fault = fails("WSAStartup");
    return fault ? *fault : Base::WSAStartup(version);
  }
  int gethostname(char* name, int size) override { return fails("gethostname") ? -1 : Base::gethostname(name, size); }
  const os::hostent* gethostbyname(const char* name) override {
    return fails("gethostbyname") ? nullptr : Base::gethostbyname(name);
  }
  int getaddrinfo(const char* node, const char* service, const os::addrinfo& hints,
                  std::vector<os::addrinfo>& found) override {
    const auto fault = fails("getaddrinfo");
    return fault ? *fault : Base::getaddrinfo(node, service, hints, found);
  }
  int getnameinfo(const void* address, std::size_t length, char* host, std::uint32_t hostSize, char* service,
                  std::uint32_t serviceSize, int flags) override {
    const auto fault = fails("getnameinfo");
    return fault ? *fault : Base::getnameinfo(address, length, host, hostSize, service, serviceSize, flags);
  }

 private:
  using Base = FixedClock;

  template <typename Stream>
  struct Wrapped : Stream {
    Wrapped(FaultySystem& owner, std::unique_ptr<Stream> target) : system(owner), stream(std::move(target)) {}
    ~Wrapped() override { --system.open_; }
    FaultySystem& system;
    std::unique_ptr<Stream> stream;
  };
  struct Directory : Wrapped<os::DirectoryStream> {
    using Wrapped::Wrapped;
    int readdir(os::DirectoryEntry& entry) override { return system.fails("readdir") ? -1 : stream->readdir(entry); }
  };
  struct Log : Wrapped<os::SystemLog> {
    using Wrapped::Wrapped;
    int report(int severity, const string& text) override {
      return system.fails("report") ? -1 : stream->report(severity, text);
    }
  };
  struct File : Wrapped<os::FileStream> {
    using Wrapped::Wrapped;
    std::size_t fread(void* data, std::size_t count) override { return stream->fread(data, limit("fread", count)); }
    std::size_t fwrite(const void* data, std::size_t count) override {
      return stream->fwrite(data, limit("fwrite", count));
    }
    int feof() override { return stream->feof(); }
    int ferror() override { return failed ? 1 : stream->ferror(); }
    // A stream that fails has done a part.
    std::size_t limit(const char* operation, std::size_t count) {
      const auto fault = system.fails(operation);
      failed = failed || isFailure(fault);
      return fault ? std::min(count, std::size_t{1}) : count;
    }
    bool failed = false;
  };

  std::optional<int> fails(std::string_view operation) {
    ++calls_;
    if (calls_ != failing_ && (calls_ < failing_ || !forEver_)) return {};
    if (dies_) std::_Exit(kDeath);
    const std::vector<int>& faults = kFaults.at(operation);
    const int fault = faults[kind_ % faults.size()];
    if (reached_.empty()) reached_ = operation;
    isPart_ = isPart_ && fault == kPart;
    error_ = fault;
    ++faults_;
    WSASetLastError(fault);
    return fault;
  }
  static bool isFailure(std::optional<int> fault) { return fault && *fault != kNothing && *fault != kPart; }
  static std::size_t part(std::optional<int> fault, std::size_t count) {
    return fault ? std::min(count, static_cast<std::size_t>(*fault == kPart)) : count;
  }
  template <typename Result>
  Result opened(Result result, Result none) {
    open_ += result != none;
    return result;
  }
  template <typename Wrapper, typename Stream>
  std::unique_ptr<Stream> wrapped(std::unique_ptr<Stream> stream) {
    if (!stream) return nullptr;
    ++open_;
    return std::make_unique<Wrapper>(*this, std::move(stream));
  }

  const int failing_;
  const std::size_t kind_;
  const bool forEver_, dies_;
  int calls_ = 0, faults_ = 0, error_ = 0, open_ = 0;
  bool isPart_ = true;
  std::string_view reached_;
};

/// Fails the first, second, ... call of `scenario` in every way, each call alone and with all calls after it, until the
/// scenario passes untouched. Returns the number of failed runs.
template <typename Scenario>
int failEachCall(const char* name, const Scenario& scenario) {
  int runs = 0;
  for (int call = 1;; ++call) {
    std::size_t kinds = 1;
    for (std::size_t kind = 0; kind < kinds; ++kind) {
      for (const bool forEver : {false, true}) {
        FaultySystem system(call, kind, forEver);
        {
          const os::ScopedOperatingSystem scope(system);
          SCOPED_TRACE(std::string(name) + ", call " + std::to_string(call) + ", fault " + std::to_string(kind));
          scenario(system);
          EXPECT_EQ(system.open(), 0) << system.reached();
          if (system.reached().empty()) return runs;
        }
        kinds = kFaults.at(system.reached()).size();
        ++runs;
      }
    }
  }
}

}  // namespace kdx::testing

#endif  // KDXCOMMON_TESTING_FAULTY_SYSTEM_H_
