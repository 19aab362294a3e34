// Windows' files and directories. Paths arrive as UTF-8 and reach the system as UTF-16, except those of `fopen` and
// `_stat64i32`, which are passed to the C runtime unchanged.

#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>
#include <wchar.h>
#include <windows.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <limits>
#include <type_traits>
#include <utility>

#include "kdxcommon/base/transcoder.h"
#include "kdxcommon/os/open_flags.h"
#include "kdxcommon/os/stdio_file_stream.h"
#include "kdxcommon/os/windows_appending.h"
#include "kdxcommon/os/windows_file_kind.h"
#include "kdxcommon/os/windows_operating_system.h"

namespace kdx::os {
namespace {

static_assert(kAttributeDirectory == FILE_ATTRIBUTE_DIRECTORY && kAttributeDevice == FILE_ATTRIBUTE_DEVICE &&
              kAttributeReparsePoint == FILE_ATTRIBUTE_REPARSE_POINT && IsReparseTagNameSurrogate(kTagNameSurrogate) &&
              !IsReparseTagNameSurrogate(~kTagNameSurrogate));

int failure(DWORD reason) {
  ::SetLastError(reason);
  return -1;
}

int badArgument() {
  return failure(ERROR_INVALID_PARAMETER);
}

// Returns the Win32 number for a failure that the C runtime detects itself, without a system call.
DWORD win32Error(int number) {
  switch (number) {
    case EACCES:
      return ERROR_ACCESS_DENIED;
    case EBADF:
      return ERROR_INVALID_HANDLE;
    case EINVAL:
      return ERROR_INVALID_PARAMETER;
    case EMFILE:
      return ERROR_TOO_MANY_OPEN_FILES;
    case ENOENT:
      return ERROR_FILE_NOT_FOUND;
    case ENOMEM:
      return ERROR_NOT_ENOUGH_MEMORY;
    case ENOSPC:
      return ERROR_DISK_FULL;
  }
  return ERROR_GEN_FAILURE;
}

// Calls a function of the C runtime that returns -1 or null on failure, and makes sure that the last error then holds
// the reason: for a failure that the runtime detects itself, it sets only errno and leaves an earlier call's last
// error.
template <typename Call>
auto withReason(Call call) {
  const DWORD before = ::GetLastError();
  ::SetLastError(ERROR_SUCCESS);
  auto result = call();
  bool failed = false;
  if constexpr (std::is_pointer_v<decltype(result)>) {
    failed = result == nullptr;
  } else {
    failed = result == -1;
  }
  if (!failed) {
    ::SetLastError(before);
  } else if (::GetLastError() == ERROR_SUCCESS) {
    ::SetLastError(win32Error(errno));
  }
  return result;
}

// A path as the system takes it. If `ok` is false, the last error holds the reason.
struct SystemPath {
  explicit SystemPath(const char* path) {
    if (!path) {
      badArgument();
    } else if (!utf8ToUtf16(path, text)) {
      failure(ERROR_NO_UNICODE_TRANSLATION);
    } else {
      ok = true;
    }
  }

  wstring text;
  bool ok = false;
};

struct CloseFile {
  void operator()(HANDLE file) const { ::CloseHandle(file); }
};
using OpenFile = std::unique_ptr<void, CloseFile>;

OpenFile createFile(const wstring& path, DWORD access, DWORD disposition, DWORD attributesAndFlags) {
  const HANDLE file = ::CreateFileW(path.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, disposition,
                                    attributesAndFlags, nullptr);
  return OpenFile(file == INVALID_HANDLE_VALUE ? nullptr : file);
}

// Opens and empties a regular file, never through a link of its name. Returns null with the last error set on failure.
// Anything else is left unchanged.
OpenFile openEmptied(const wstring& path, int flags, int permissions) {
  const DWORD access = GENERIC_WRITE | ((flags & kOpenReadWrite) ? GENERIC_READ : 0);
  const DWORD create = (flags & kOpenExclusive) ? CREATE_NEW : OPEN_ALWAYS;
  const DWORD attributes = (permissions & _S_IWRITE) ? FILE_ATTRIBUTE_NORMAL : FILE_ATTRIBUTE_READONLY;
  OpenFile file = createFile(path, access, (flags & kOpenCreate) ? create : OPEN_EXISTING,
                             attributes | FILE_FLAG_OPEN_REPARSE_POINT);
  if (!file) return nullptr;
  FILE_ATTRIBUTE_TAG_INFO kind{};
  if (::GetFileType(file.get()) != FILE_TYPE_DISK ||
      !::GetFileInformationByHandleEx(file.get(), FileAttributeTagInfo, &kind, sizeof kind) ||
      !isRegularFile(kind.FileAttributes, kind.ReparseTag)) {
    file.reset();
    failure(ERROR_CANT_ACCESS_FILE);
    return nullptr;
  }
  if (kind.FileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) {  // its driver must see the file opened and emptied
    file.reset();
    return createFile(path, access, TRUNCATE_EXISTING, FILE_ATTRIBUTE_NORMAL);
  }
  return ::SetEndOfFile(file.get()) ? std::move(file) : nullptr;
}

// Returns the C runtime's descriptor for a file, and closes the file if there is none.
int descriptorOf(OpenFile file, int flags) {
  if (!file) return -1;
  const int descriptor = ::_open_osfhandle(reinterpret_cast<std::intptr_t>(file.get()), flags);
  if (descriptor != -1) file.release();
  return descriptor;
}

struct CloseSearch {
  void operator()(HANDLE search) const { ::FindClose(search); }
};
using OpenSearch = std::unique_ptr<void, CloseSearch>;

// Opening the search returns its first entry. Without a search the directory has no entries.
class WindowsDirectoryStream : public DirectoryStream {
 public:
  WindowsDirectoryStream(OpenSearch search, const WIN32_FIND_DATAW& first)
      : search_(std::move(search)), found_(first) {}

  int readdir(DirectoryEntry& entry) override {
    if (!search_) return 0;
    if (!unread_ && !::FindNextFileW(search_.get(), &found_)) {
      return ::GetLastError() == ERROR_NO_MORE_FILES ? 0 : -1;
    }
    unread_ = false;
    utf16ToUtf8Replacing(found_.cFileName, name_);
    entry = {name_.c_str(), isRegularFile(found_.dwFileAttributes, found_.dwReserved0)};  // the tag
    return 1;
  }

 private:
  OpenSearch search_;
  WIN32_FIND_DATAW found_;
  bool unread_ = true;
  string name_;
};

}  // namespace

int WindowsOperatingSystem::_open(const char* path, int flags, int mode) {
  if (!areOpenFlags(flags)) return badArgument();
  const SystemPath name(path);
  if (!name.ok) return -1;
  const int permissions = (mode & kModeWrite) ? _S_IREAD | _S_IWRITE : _S_IREAD;
  const int runtimeFlags = flags | _O_BINARY | _O_NOINHERIT;
  return withReason([&] {
    const int opened = (flags & kOpenTruncate) ? descriptorOf(openEmptied(name.text, flags, permissions), runtimeFlags)
                                               : ::_wopen(name.text.c_str(), runtimeFlags, permissions);
    return (flags & kOpenAppend) ? appendedToBySystem(opened) : opened;
  });
}

std::int64_t WindowsOperatingSystem::_write(int descriptor, const void* data, std::size_t count) {
  if (!data && count > 0) return badArgument();
  constexpr std::size_t kMost = std::numeric_limits<int>::max();
  const auto length = static_cast<unsigned>(std::min(count, kMost));
  return withReason([&] { return std::int64_t{::_write(descriptor, data, length)}; });
}

int WindowsOperatingSystem::_close(int descriptor) {
  return withReason([&] { return ::_close(descriptor); });
}

int WindowsOperatingSystem::_stat64(const char* path, FileTimes& times) {
  const SystemPath name(path);
  if (!name.ok) return -1;
  struct _stat64 status;
  if (withReason([&] { return ::_wstat64(name.text.c_str(), &status); }) != 0) return -1;
  times = {
      .modified = status.st_mtime, .accessed = status.st_atime, .attributes = status.st_ctime, .size = status.st_size};
  return 0;
}

// Calls the 64-bit function, since the system's own C runtime silently truncates a larger size.
int WindowsOperatingSystem::_stat64i32(const char* path, std::int32_t& size) {
  if (!path) return badArgument();
  struct _stat64 status;
  if (withReason([&] { return ::_stat64(path, &status); }) != 0) return -1;
  if (status.st_size > std::numeric_limits<std::int32_t>::max()) return failure(ERROR_FILE_TOO_LARGE);
  size = static_cast<std::int32_t>(status.st_size);
  return 0;
}

int WindowsOperatingSystem::_waccess(const wchar* path, int mode) {
  if (!path) return badArgument();
  return withReason([&] { return ::_waccess(path, mode); });
}

std::unique_ptr<FileStream> WindowsOperatingSystem::fopen(const char* path, const char* mode) {
  if (!path || !mode) {
    badArgument();
    return nullptr;
  }
  const string closedInChildren = string(mode) + 'N';  // the runtime's flag: child processes don't inherit the file
  return stdioFileStream(withReason([&] { return std::fopen(path, closedInChildren.c_str()); }), mode);
}

int WindowsOperatingSystem::remove(const char* path) {
  const SystemPath name(path);
  if (!name.ok) return -1;
  return withReason([&] { return ::_wremove(name.text.c_str()); });
}

int WindowsOperatingSystem::rename(const char* from, const char* to) {
  const SystemPath oldName(from), newName(to);
  if (!oldName.ok || !newName.ok) return -1;
  return withReason([&] { return ::_wrename(oldName.text.c_str(), newName.text.c_str()); });
}

std::unique_ptr<DirectoryStream> WindowsOperatingSystem::opendir(const char* path) {
  const SystemPath name(path);
  if (!name.ok) return nullptr;
  if (name.text.empty()) {  // with a separator appended, it would be the root
    failure(ERROR_PATH_NOT_FOUND);
    return nullptr;
  }
  WIN32_FIND_DATAW first{};
  HANDLE search = ::FindFirstFileW((name.text + L"\\*").c_str(), &first);
  if (search == INVALID_HANDLE_VALUE) {
    if (::GetLastError() != ERROR_FILE_NOT_FOUND) return nullptr;
    search = nullptr;  // the root of a drive, which has no entry for itself and may have no other
  }
  return std::make_unique<WindowsDirectoryStream>(OpenSearch(search), first);
}

}  // namespace kdx::os
