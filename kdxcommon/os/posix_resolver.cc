// The socket layer's names and the resolver. The resolver's codes are negative numbers, and so can share `errno` with
// the system's own; the older codes of `gethostbyname`, which can't, are translated to them.

#include <netdb.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <vector>

#include "kdxcommon/os/posix_operating_system.h"
#include "kdxcommon/os/resolved_addresses.h"

namespace kdx::os {
namespace {

// EAI_BADFLAGS is not included: the library sets the flags itself, and that number means a failure without one
// elsewhere.
constexpr int kResolverCodes[] = {EAI_NONAME,  EAI_AGAIN,      EAI_FAIL,   EAI_NODATA, EAI_FAMILY,  EAI_SOCKTYPE,
                                  EAI_SERVICE, EAI_ADDRFAMILY, EAI_MEMORY, EAI_SYSTEM, EAI_OVERFLOW};

int resolverResult(int code) {
  return code == EAI_SYSTEM && errno != 0 ? errno : code;
}

// Returns the resolver's code for `hostError`, the `h_errno` of `gethostbyname_r`, or `systemError`, the result of
// that function, if that is the cause.
int resolverCodeOf(int hostError, int systemError) {
  switch (hostError) {
    case HOST_NOT_FOUND:
      return EAI_NONAME;
    case TRY_AGAIN:
      return EAI_AGAIN;
    case NO_DATA:
      return EAI_NODATA;
    case NETDB_INTERNAL:
      if (systemError != 0) return systemError;
      [[fallthrough]];
    default:
      return EAI_FAIL;
  }
}

// A thread's last host, with the memory that its strings are in.
struct HostRecord {
  std::vector<char> memory = std::vector<char>(1024);
  hostent host;
};

}  // namespace

const char* resolverErrorText(int code) {
  const bool known = std::find(std::begin(kResolverCodes), std::end(kResolverCodes), code) != std::end(kResolverCodes);
  return known ? ::gai_strerror(code) : nullptr;
}

int PosixOperatingSystem::WSAStartup(std::uint16_t /*version*/) {
  return 0;
}

void PosixOperatingSystem::WSASetLastError(int error) {
  errno = error;
}

int PosixOperatingSystem::gethostname(char* name, int size) {
  if (!name || size < 0) {
    errno = EINVAL;
    return -1;
  }
  return ::gethostname(name, static_cast<std::size_t>(size));
}

const hostent* PosixOperatingSystem::gethostbyname(const char* name) {
  constexpr std::size_t kMostMemory = std::size_t{1} << 20;
  if (!name) {
    errno = EINVAL;
    return nullptr;
  }
  thread_local HostRecord record;
  ::hostent host{};
  ::hostent* found = nullptr;
  int hostError = 0;
  const auto ask = [&] {
    return ::gethostbyname_r(name, &host, record.memory.data(), record.memory.size(), &found, &hostError);
  };
  int result = ask();
  while (result == ERANGE && record.memory.size() < kMostMemory) {
    record.memory.resize(record.memory.size() * 2);
    result = ask();
  }
  if (!found) {
    errno = resolverCodeOf(hostError, result);
    return nullptr;
  }
  record.host = {.h_name = host.h_name,
                 .h_aliases = host.h_aliases,
                 .h_addrtype = static_cast<std::int16_t>(host.h_addrtype),
                 .h_length = static_cast<std::int16_t>(host.h_length),
                 .h_addr_list = host.h_addr_list};
  return &record.host;
}

int PosixOperatingSystem::getaddrinfo(const char* node, const char* service, const addrinfo& hints,
                                      std::vector<addrinfo>& addresses) {
  ::addrinfo request{};
  request.ai_family = hints.ai_family;
  ::addrinfo* found = nullptr;
  errno = 0;
  const int code = ::getaddrinfo(node, service, &request, &found);
  if (code != 0) return resolverResult(code);
  addresses = takeAddresses(found, ::freeaddrinfo);
  return 0;
}

int PosixOperatingSystem::getnameinfo(const void* address, std::size_t addressLength, char* host,
                                      std::uint32_t hostSize, char* service, std::uint32_t serviceSize, int flags) {
  errno = 0;
  return resolverResult(::getnameinfo(static_cast<const sockaddr*>(address), static_cast<socklen_t>(addressLength),
                                      host, hostSize, service, serviceSize,
                                      (flags & kNameInfoNumericHost) ? NI_NUMERICHOST : 0));
}

}  // namespace kdx::os
