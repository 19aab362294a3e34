// Appending to files that other processes also write.

#include "kdxcommon/os/windows_appending.h"

#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <cstdint>

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

// Reopens the file with the right to write at its end only. The system requires the right to read for locking; a
// process that lacks it appends without a lock.
HANDLE openedForAppending(HANDLE file) {
  constexpr DWORD kAppend = FILE_GENERIC_WRITE & ~FILE_WRITE_DATA;
  constexpr DWORD kShared = FILE_SHARE_READ | FILE_SHARE_WRITE;
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

void WindowsOperatingSystem::UnlockFile(int descriptor) {
  OVERLAPPED place = lockedByte();
  ::UnlockFileEx(handleOf(descriptor), 0, 1, 0, &place);
  ::ReleaseSRWLockExclusive(&fileLockOfProcess);
}

}  // namespace kdx::os
