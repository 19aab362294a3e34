// Facts about the machine on Windows: version, processors, memory, name.

#include <windows.h>

#include <bit>

#include "kdxcommon/os/windows_operating_system.h"

namespace kdx::os {
namespace {

bool notOfThisSystem() {
  ::SetLastError(ERROR_CALL_NOT_IMPLEMENTED);
  return false;
}

}  // namespace

bool WindowsOperatingSystem::GetVersionExA(OSVERSIONINFOEXA& version) {
  auto answer = std::bit_cast<::OSVERSIONINFOEXA>(version);
  if (!::GetVersionExA(reinterpret_cast<::OSVERSIONINFOA*>(&answer))) return false;
  version = std::bit_cast<OSVERSIONINFOEXA>(answer);
  return true;
}

bool WindowsOperatingSystem::GetVersionExW(OSVERSIONINFOW& version) {
  auto answer = std::bit_cast<::OSVERSIONINFOW>(version);
  if (!::GetVersionExW(&answer)) return false;
  version = std::bit_cast<OSVERSIONINFOW>(answer);
  return true;
}

int WindowsOperatingSystem::GetSystemMetrics(int index) {
  return ::GetSystemMetrics(index);
}

void WindowsOperatingSystem::GetSystemInfo(SYSTEM_INFO& information) {
  ::SYSTEM_INFO answer;
  ::GetSystemInfo(&answer);
  information = {.wProcessorArchitecture = answer.wProcessorArchitecture,
                 .dwNumberOfProcessors = answer.dwNumberOfProcessors,
                 .dwProcessorType = answer.dwProcessorType,
                 .wProcessorLevel = answer.wProcessorLevel,
                 .wProcessorRevision = answer.wProcessorRevision};
}

bool WindowsOperatingSystem::GlobalMemoryStatusEx(MEMORYSTATUSEX& status) {
  ::MEMORYSTATUSEX answer{};
  static_assert(sizeof answer == kMemoryStatusLength);
  if (status.dwLength != kMemoryStatusLength) {  // not all versions of the system check it
    ::SetLastError(ERROR_INVALID_PARAMETER);
    return false;
  }
  answer.dwLength = status.dwLength;
  if (!::GlobalMemoryStatusEx(&answer)) return false;
  status.ullTotalPhys = answer.ullTotalPhys;
  return true;
}

bool WindowsOperatingSystem::GetComputerNameA(char* buffer, std::uint32_t& size) {
  DWORD units = size;
  const bool succeeded = ::GetComputerNameA(buffer, &units) != FALSE;
  size = units;
  return succeeded;
}

int WindowsOperatingSystem::uname(utsname& /*names*/) {
  return notOfThisSystem() ? 0 : -1;
}

bool WindowsOperatingSystem::readOsRelease(string& /*text*/) {
  return notOfThisSystem();
}

bool WindowsOperatingSystem::processorName(string& /*name*/) {
  return notOfThisSystem();
}

}  // namespace kdx::os
