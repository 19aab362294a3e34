// An implementation of the operating-system interface that forwards every call to another one. Derive from it to
// replace a few operations and keep the rest, for example in a test that needs a full disk or a clock of its own:
//
//   struct Noon : kdx::os::OperatingSystemWrapper {
//     std::int64_t _time64(std::int64_t*) override { return 1281009600; }
//   };
//
// Thread safety, failures and exceptions are those of the target.

#ifndef KDXCOMMON_OS_OPERATING_SYSTEM_WRAPPER_H_
#define KDXCOMMON_OS_OPERATING_SYSTEM_WRAPPER_H_

#include "kdxcommon/os/operating_system.h"

namespace kdx::os {

/// Forwards every operation to its target.
class OperatingSystemWrapper : public OperatingSystem {
 public:
  /// Forwards to `target`, by default the object that is current now. `target` must outlive the wrapper.
  explicit OperatingSystemWrapper(OperatingSystem& target = OperatingSystem::current()) : target_(target) {}

  std::uint32_t GetLastError() override { return target_.GetLastError(); }
  std::uint32_t FormatMessageA(std::uint32_t flags, const void* source, std::uint32_t messageId,
                               std::uint32_t languageId, char** buffer, std::uint32_t size) override {
    return target_.FormatMessageA(flags, source, messageId, languageId, buffer, size);
  }
  void LocalFree(void* memory) override { target_.LocalFree(memory); }
  std::uint32_t GetCurrentThreadId() override { return target_.GetCurrentThreadId(); }
  std::int64_t _time64(std::int64_t* seconds) override { return target_._time64(seconds); }
  std::uint64_t GetSystemTimeAsFileTime() override { return target_.GetSystemTimeAsFileTime(); }
  std::uint32_t GetTimeZoneInformation(TIME_ZONE_INFORMATION& zone) override {
    return target_.GetTimeZoneInformation(zone);
  }
  void _tzset() override { target_._tzset(); }
  int _get_tzname(char* buffer, std::size_t size, int index) override {
    return target_._get_tzname(buffer, size, index);
  }
  std::int64_t _mktime64(const BrokenDownTime& local) override { return target_._mktime64(local); }
  bool _gmtime64(std::int64_t seconds, BrokenDownTime& utc) override { return target_._gmtime64(seconds, utc); }
  bool _localtime64(std::int64_t seconds, BrokenDownTime& local) override {
    return target_._localtime64(seconds, local);
  }
  int _open(const char* path, int flags, int mode) override { return target_._open(path, flags, mode); }
  std::int64_t _write(int descriptor, const void* data, std::size_t count) override {
    return target_._write(descriptor, data, count);
  }
  std::int64_t writeWithoutSignal(int descriptor, const void* data, std::size_t count) override {
    return target_.writeWithoutSignal(descriptor, data, count);
  }
  std::uint32_t GetFileType(int descriptor) override { return target_.GetFileType(descriptor); }
  int terminalWidth(int descriptor) override { return target_.terminalWidth(descriptor); }
  bool LockFile(int descriptor) override { return target_.LockFile(descriptor); }
  void UnlockFile(int descriptor) override { target_.UnlockFile(descriptor); }
  bool TryLockFile(int descriptor) override { return target_.TryLockFile(descriptor); }
  int fileStatus(int descriptor, FileStatus& status) override { return target_.fileStatus(descriptor, status); }
  int fileStatus(const char* path, FileStatus& status) override { return target_.fileStatus(path, status); }
  std::int64_t pread(int descriptor, void* data, std::size_t count, std::uint64_t offset) override {
    return target_.pread(descriptor, data, count, offset);
  }
  std::unique_ptr<SystemLog> openSystemLog(const char* source, const char* address) override {
    return target_.openSystemLog(source, address);
  }
  int _close(int descriptor) override { return target_._close(descriptor); }
  int _stat64(const char* path, FileTimes& times) override { return target_._stat64(path, times); }
  int _stat64i32(const char* path, std::int32_t& size) override { return target_._stat64i32(path, size); }
  int _waccess(const wchar* path, int mode) override { return target_._waccess(path, mode); }
  std::unique_ptr<FileStream> fopen(const char* path, const char* mode) override { return target_.fopen(path, mode); }
  int remove(const char* path) override { return target_.remove(path); }
  int rename(const char* from, const char* to) override { return target_.rename(from, to); }
  std::unique_ptr<DirectoryStream> opendir(const char* path) override { return target_.opendir(path); }
  bool GetVersionExA(OSVERSIONINFOEXA& version) override { return target_.GetVersionExA(version); }
  bool GetVersionExW(OSVERSIONINFOW& version) override { return target_.GetVersionExW(version); }
  int GetSystemMetrics(int index) override { return target_.GetSystemMetrics(index); }
  void GetSystemInfo(SYSTEM_INFO& information) override { target_.GetSystemInfo(information); }
  bool GlobalMemoryStatusEx(MEMORYSTATUSEX& status) override { return target_.GlobalMemoryStatusEx(status); }
  bool GetComputerNameA(char* buffer, std::uint32_t& size) override { return target_.GetComputerNameA(buffer, size); }
  int uname(utsname& names) override { return target_.uname(names); }
  bool readOsRelease(string& text) override { return target_.readOsRelease(text); }
  bool processorName(string& name) override { return target_.processorName(name); }
  int WSAStartup(std::uint16_t version) override { return target_.WSAStartup(version); }
  void WSASetLastError(int error) override { target_.WSASetLastError(error); }
  int gethostname(char* name, int size) override { return target_.gethostname(name, size); }
  const hostent* gethostbyname(const char* name) override { return target_.gethostbyname(name); }
  int getaddrinfo(const char* node, const char* service, const addrinfo& hints,
                  std::vector<addrinfo>& addresses) override {
    return target_.getaddrinfo(node, service, hints, addresses);
  }
  int getnameinfo(const void* address, std::size_t addressLength, char* host, std::uint32_t hostSize, char* service,
                  std::uint32_t serviceSize, int flags) override {
    return target_.getnameinfo(address, addressLength, host, hostSize, service, serviceSize, flags);
  }

 private:
  OperatingSystem& target_;
};

}  // namespace kdx::os

#endif  // KDXCOMMON_OS_OPERATING_SYSTEM_WRAPPER_H_
