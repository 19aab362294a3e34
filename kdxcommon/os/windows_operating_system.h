// Internal to the library: the implementation for Windows, by the Win32 function or the C runtime's function with the
// operation's name.

#ifndef KDXCOMMON_OS_WINDOWS_OPERATING_SYSTEM_H_
#define KDXCOMMON_OS_WINDOWS_OPERATING_SYSTEM_H_

#include "kdxcommon/os/operating_system.h"

namespace kdx::os {

/// A bad argument, such as a null path, fails with ERROR_INVALID_PARAMETER, and a path that is not UTF-8 with
/// ERROR_NO_UNICODE_TRANSLATION. A path of more than 259 units works if Windows and the program's manifest allow long
/// paths, and otherwise fails with the system's error.
class WindowsOperatingSystem : public OperatingSystem {
 public:
  std::uint32_t GetLastError() override;
  std::uint32_t FormatMessageA(std::uint32_t flags, const void* source, std::uint32_t messageId,
                               std::uint32_t languageId, char** buffer, std::uint32_t size) override;
  void LocalFree(void* memory) override;

  std::uint32_t GetCurrentThreadId() override;
  std::int64_t _time64(std::int64_t* seconds) override;
  std::uint64_t GetSystemTimeAsFileTime() override;

  std::uint32_t GetTimeZoneInformation(TIME_ZONE_INFORMATION& zone) override;
  void _tzset() override;
  int _get_tzname(char* buffer, std::size_t size, int index) override;
  std::int64_t _mktime64(const BrokenDownTime& local) override;
  bool _gmtime64(std::int64_t seconds, BrokenDownTime& utc) override;
  bool _localtime64(std::int64_t seconds, BrokenDownTime& local) override;

  int _open(const char* path, int flags, int mode) override;
  std::int64_t _write(int descriptor, const void* data, std::size_t count) override;
  std::int64_t writeWithoutSignal(int descriptor, const void* data, std::size_t count) override;
  std::uint32_t GetFileType(int descriptor) override;
  int terminalWidth(int descriptor) override;
  bool LockFile(int descriptor) override;
  void UnlockFile(int descriptor) override;
  bool TryLockFile(int descriptor) override;
  int fileStatus(int descriptor, FileStatus& status) override;
  int fileStatus(const char* path, FileStatus& status) override;
  std::int64_t pread(int descriptor, void* data, std::size_t count, std::uint64_t offset) override;
  std::unique_ptr<SystemLog> openSystemLog(const char* source, const char* address) override;
  int _close(int descriptor) override;
  int _stat64(const char* path, FileTimes& times) override;
  int _stat64i32(const char* path, std::int32_t& size) override;
  int _waccess(const wchar* path, int mode) override;
  std::unique_ptr<FileStream> fopen(const char* path, const char* mode) override;
  int remove(const char* path) override;
  int rename(const char* from, const char* to) override;
  std::unique_ptr<DirectoryStream> opendir(const char* path) override;

  bool GetVersionExA(OSVERSIONINFOEXA& version) override;
  bool GetVersionExW(OSVERSIONINFOW& version) override;
  int GetSystemMetrics(int index) override;
  void GetSystemInfo(SYSTEM_INFO& information) override;
  bool GlobalMemoryStatusEx(MEMORYSTATUSEX& status) override;
  bool GetComputerNameA(char* buffer, std::uint32_t& size) override;
  int uname(utsname& names) override;
  bool readOsRelease(string& text) override;
  bool processorName(string& name) override;

  int WSAStartup(std::uint16_t version) override;
  void WSASetLastError(int error) override;
  int gethostname(char* name, int size) override;
  const hostent* gethostbyname(const char* name) override;
  int getaddrinfo(const char* node, const char* service, const addrinfo& hints,
                  std::vector<addrinfo>& addresses) override;
  int getnameinfo(const void* address, std::size_t addressLength, char* host, std::uint32_t hostSize, char* service,
                  std::uint32_t serviceSize, int flags) override;
};

}  // namespace kdx::os

#endif  // KDXCOMMON_OS_WINDOWS_OPERATING_SYSTEM_H_
