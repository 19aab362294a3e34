#include "kdxcommon/testing/posix_faults.h"

#include <dirent.h>
#include <fcntl.h>
#include <netdb.h>
#include <pthread.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/sysinfo.h>
#include <sys/utsname.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace {

using kdx::testing::fault;

bool fails(std::string_view call) {
  if (call != fault.call || fault.times == 0) return false;
  --fault.times;
  errno = fault.error;
  return true;
}

}  // namespace

extern "C" {
#define REPLACE(Result, failure, name, parameters, arguments)  \
  Result __real_##name parameters;                             \
  Result __wrap_##name parameters {                            \
    return fails(#name) ? (failure) : __real_##name arguments; \
  }
REPLACE(int, -1, open, (const char* path, int flags, mode_t mode), (path, flags, mode))
REPLACE(int, -1, fcntl, (int file, int command, long argument), (file, command, argument))
REPLACE(ssize_t, -1, write, (int file, const void* data, std::size_t count), (file, data, count))
REPLACE(int, -1, ftruncate, (int file, off_t size), (file, size))
REPLACE(int, -1, fstat, (int file, struct stat* status), (file, status))
REPLACE(int, -1, fstatat, (int at, const char* name, struct stat* status, int flags), (at, name, status, flags))
REPLACE(int, -1, stat, (const char* path, struct stat* status), (path, status))
REPLACE(int, -1, faccessat, (int at, const char* name, int mode, int flags), (at, name, mode, flags))
REPLACE(int, -1, unlink, (const char* path), (path))
REPLACE(int, -1, rename, (const char* from, const char* to), (from, to))
REPLACE(int, -1, socket, (int family, int type, int protocol), (family, type, protocol))
REPLACE(std::FILE*, nullptr, fdopen, (int file, const char* mode), (file, mode))
REPLACE(DIR*, nullptr, fdopendir, (int file), (file))
REPLACE(char*, nullptr, strdup, (const char* text), (text))
REPLACE(int, -1, uname, (struct utsname * names), (names))
REPLACE(int, -1, sysinfo, (struct sysinfo * facts), (facts))
REPLACE(tm*, nullptr, localtime_r, (const time_t* second, tm* local), (second, local))
REPLACE(int, fault.code, pthread_atfork, (void (*before)(), void (*parent)(), void (*child)()), (before, parent, child))
REPLACE(int, fault.code, getaddrinfo, (const char* node, const char* service, const addrinfo* hints, addrinfo** found),
        (node, service, hints, found))
REPLACE(int, fault.code, getnameinfo,
        (const sockaddr* address, socklen_t length, char* host, socklen_t hostSize, char* service,
         socklen_t serviceSize, int flags),
        (address, length, host, hostSize, service, serviceSize, flags))

dirent* __real_readdir(DIR* directory);
dirent* __wrap_readdir(DIR* directory) {
  if (fails("readdir")) return nullptr;
  dirent* entry = __real_readdir(directory);
  if (entry && fault.withoutTypes) entry->d_type = DT_UNKNOWN;
  return entry;
}

int __real_gethostbyname_r(const char* name, hostent* host, char* memory, std::size_t size, hostent** found, int* code);
int __wrap_gethostbyname_r(const char* name, hostent* host, char* memory, std::size_t size, hostent** found,
                           int* code) {
  if (!fails("gethostbyname_r")) return __real_gethostbyname_r(name, host, memory, size, found, code);
  *found = fault.code == 0 && size >= fault.memory ? host : nullptr;
  *code = *found ? 0 : fault.code == 0 ? NETDB_INTERNAL : fault.code;
  return *found ? 0 : fault.code == 0 ? ERANGE : fault.error;
}
}  // extern "C"
