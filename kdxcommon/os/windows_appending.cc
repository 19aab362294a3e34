// Appending to files that other processes also write.

#include "kdxcommon/os/windows_appending.h"

#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <algorithm>
#include <cstdint>
#include <limits>

#include "kdxcommon/base/transcoder.h"
#include "kdxcommon/os/windows_operating_system.h"

namespace kdx::os {
namespace {

// One thread at a time: while the system waits for a lock on a file, it lets no other thread use the handle, so a
// second waiting thread would keep the first one from writing.
SRWLOCK fileLockOfProcess = SRWLOCK_INIT;

// Returns the position of the byte whose lock locks the file.
OVERLAPPED lockedByte() {
  OVERLAPPED place{};
  place.OffsetHigh = 0x7FFFFFFF;
  return place;
}

HANDLE handleOf(int descriptor) {
  return reinterpret_cast<HANDLE>(::_get_osfhandle(descriptor));
}

constexpr DWORD kShared = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;  // may be renamed while it is open

int copyStatus(HANDLE file, FileStatus& status) {
  BY_HANDLE_FILE_INFORMATION found;
  if (::GetFileType(file) != FILE_TYPE_DISK) {
    ::SetLastError(ERROR_CANT_ACCESS_FILE);
    return -1;
  }
  if (!::GetFileInformationByHandle(file, &found)) return -1;
  const auto joined = [](DWORD high, DWORD low) { return std::uint64_t{high} << 32 | low; };
  status = {.volume = found.dwVolumeSerialNumber,
            .file = joined(found.nFileIndexHigh, found.nFileIndexLow),
            .size = joined(found.nFileSizeHigh, found.nFileSizeLow)};
  return 0;
}

// Reopens the file with the right to write at its end only. The system requires the right to read for locking; a
// process that lacks it appends without a lock.
HANDLE openedForAppending(HANDLE file) {
  constexpr DWORD kAppend = FILE_GENERIC_WRITE & ~FILE_WRITE_DATA;
  const HANDLE readable = ::ReOpenFile(file, kAppend | FILE_GENERIC_READ, kShared, 0);
  return readable != INVALID_HANDLE_VALUE ? readable : ::ReOpenFile(file, kAppend, kShared, 0);
}

}  // namespace

int appendedToBySystem(int descriptor) {
  if (descriptor == -1 || ::GetFileType(handleOf(descriptor)) != FILE_TYPE_DISK) return descriptor;
  const HANDLE appending = openedForAppending(handleOf(descriptor));
  if (appending == INVALID_HANDLE_VALUE) return descriptor;
  const int replacement = ::_open_osfhandle(reinterpret_cast<std::intptr_t>(appending), _O_BINARY | _O_NOINHERIT);
  if (replacement == -1) {
    ::CloseHandle(appending);
    return descriptor;
  }
  ::_close(descriptor);
  return replacement;
}

std::int64_t WindowsOperatingSystem::writeWithoutSignal(int descriptor, const void* data, std::size_t count) {
  return _write(descriptor, data, count);
}

std::uint32_t WindowsOperatingSystem::GetFileType(int descriptor) {
  return ::GetFileType(handleOf(descriptor));
}

int WindowsOperatingSystem::terminalWidth(int descriptor) {
  CONSOLE_SCREEN_BUFFER_INFO console;
  if (!::GetConsoleScreenBufferInfo(handleOf(descriptor), &console)) return 0;
  return console.srWindow.Right - console.srWindow.Left + 1;
}

bool WindowsOperatingSystem::LockFile(int descriptor) {
  ::AcquireSRWLockExclusive(&fileLockOfProcess);
  OVERLAPPED place = lockedByte();
  const bool locked = ::LockFileEx(handleOf(descriptor), LOCKFILE_EXCLUSIVE_LOCK, 0, 1, 0, &place) != 0;
  if (!locked) ::ReleaseSRWLockExclusive(&fileLockOfProcess);
  return locked;
}

bool WindowsOperatingSystem::TryLockFile(int descriptor) {
  OVERLAPPED place = lockedByte();
  constexpr DWORD kWithoutWaiting = LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY;
  return ::LockFileEx(handleOf(descriptor), kWithoutWaiting, 0, 1, 0, &place) != 0;
}

int WindowsOperatingSystem::fileStatus(int descriptor, FileStatus& status) {
  return copyStatus(handleOf(descriptor), status);
}

int WindowsOperatingSystem::fileStatus(const char* path, FileStatus& status) {
  wstring name;
  if (!path || !utf8ToUtf16(path, name)) {
    ::SetLastError(ERROR_INVALID_PARAMETER);
    return -1;
  }
  const HANDLE file = ::CreateFileW(name.c_str(), 0, kShared, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return -1;
  const int result = copyStatus(file, status);
  const DWORD reason = ::GetLastError();
  ::CloseHandle(file);
  ::SetLastError(reason);
  return result;
}

std::int64_t WindowsOperatingSystem::pread(int descriptor, void* data, std::size_t count, std::uint64_t offset) {
  OVERLAPPED place{};
  place.Offset = static_cast<DWORD>(offset);
  place.OffsetHigh = static_cast<DWORD>(offset >> 32);
  DWORD read = 0;
  const auto most = static_cast<DWORD>(std::min<std::size_t>(count, std::numeric_limits<DWORD>::max()));
  if (::ReadFile(handleOf(descriptor), data, most, &read, &place)) return read;
  return ::GetLastError() == ERROR_HANDLE_EOF ? 0 : -1;
}

void WindowsOperatingSystem::UnlockFile(int descriptor) {
  OVERLAPPED place = lockedByte();
  ::UnlockFileEx(handleOf(descriptor), 0, 1, 0, &place);
  ::ReleaseSRWLockExclusive(&fileLockOfProcess);
}

}  // namespace kdx::os
