#include "kdxcommon/os/windows_operating_system.h"

#include <windows.h>

#include "kdxcommon/os/native_operating_system.h"

namespace kdx::os {

OperatingSystem& nativeOperatingSystem() {
  static WindowsOperatingSystem& system = *new WindowsOperatingSystem;
  return system;
}

const char* pathSeparator() {
  return "\\";
}

bool appendsWhole() {
  return false;
}

std::uint32_t WindowsOperatingSystem::GetLastError() {
  return ::GetLastError();
}

std::uint32_t WindowsOperatingSystem::FormatMessageA(std::uint32_t flags, const void* source, std::uint32_t messageId,
                                                     std::uint32_t languageId, char** buffer, std::uint32_t size) {
  if (flags != kFormatMessageAllocateIgnoreInsertsFromSystem || !buffer) {
    ::SetLastError(ERROR_INVALID_PARAMETER);
    return 0;
  }
  // With the flag to allocate, the system expects the address of a pointer as the buffer.
  return ::FormatMessageA(flags, source, messageId, languageId, reinterpret_cast<char*>(buffer), size, nullptr);
}

void WindowsOperatingSystem::LocalFree(void* memory) {
  ::LocalFree(memory);
}

std::uint32_t WindowsOperatingSystem::GetCurrentThreadId() {
  return ::GetCurrentThreadId();
}

}  // namespace kdx::os
