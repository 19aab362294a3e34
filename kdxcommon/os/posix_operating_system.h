// Internal to the library: the implementation for POSIX systems, by calls of the C library and the kernel.

#ifndef KDXCOMMON_OS_POSIX_OPERATING_SYSTEM_H_
#define KDXCOMMON_OS_POSIX_OPERATING_SYSTEM_H_

#include <array>
#include <cstdint>

#include "kdxcommon/os/operating_system.h"

namespace kdx::os {

/// Returns an instant, given as seconds and nanoseconds since 1970-01-01 00:00:00 UTC, in units of 100 ns since
/// 1601-01-01 00:00:00 UTC, rounded down.
std::uint64_t fileTimeOf(std::int64_t seconds, std::int64_t nanoseconds);

/// Returns the text of a resolver's code, or null for any other number.
const char* resolverErrorText(int code);

/// Sets `text` to the complete lines within the first 64 KiB of a file. Returns false with `text` unchanged if the file
/// can't be read.
bool readFirstLines(const char* path, string& text);

/// Returns the first "model name" in the text of /proc/cpuinfo, or an empty string if there is none.
string modelNameIn(string_view cpuInfo);

/// Reads one leaf of the processor's identification: eax, ebx, ecx and edx after CPUID. Returns false with `registers`
/// unchanged if the processor lacks the leaf or the instruction.
using CpuidRegisters = std::array<std::uint32_t, 4>;
using CpuidReader = bool (*)(std::uint32_t leaf, CpuidRegisters& registers);

/// Sets level and revision of the processor from the signature in leaf 1: family and model with stepping. The extended
/// family counts only in family 15, the extended model in 6 and 15. Leaves `information` unchanged without that leaf.
void readSignature(CpuidReader read, SYSTEM_INFO& information);

/// Sets `name` to the processor's own name, in three leaves from 0x80000002, or else to the one in the file that has
/// the form of /proc/cpuinfo, without blanks at its ends. Returns false with `name` unchanged if there is neither.
bool readProcessorName(CpuidReader read, const char* cpuInfoPath, string& name);

/// A bad argument, such as a null path, fails with EINVAL. Calls interrupted by a signal are repeated, except `_close`.
class PosixOperatingSystem : public OperatingSystem {
 public:
  PosixOperatingSystem();

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

#endif  // KDXCOMMON_OS_POSIX_OPERATING_SYSTEM_H_
