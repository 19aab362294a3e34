// The socket layer's names and the resolver of Windows.

#include <winsock2.h>
#include <ws2tcpip.h>

#include "kdxcommon/os/resolved_addresses.h"
#include "kdxcommon/os/windows_operating_system.h"

namespace kdx::os {
namespace {

static_assert(kAddressFamilyAny == AF_UNSPEC && kAddressFamilyIPv4 == AF_INET &&
              kNameInfoNumericHost == NI_NUMERICHOST);

}  // namespace

int WindowsOperatingSystem::WSAStartup(std::uint16_t version) {
  WSADATA ignored;
  return ::WSAStartup(version, &ignored);
}

void WindowsOperatingSystem::WSASetLastError(int error) {
  ::WSASetLastError(error);
}

int WindowsOperatingSystem::gethostname(char* name, int size) {
  return ::gethostname(name, size);
}

const hostent* WindowsOperatingSystem::gethostbyname(const char* name) {
  if (!name) {  // which the system would take for the host itself
    ::WSASetLastError(WSAEFAULT);
    return nullptr;
  }
  const ::hostent* found = ::gethostbyname(name);
  if (!found) return nullptr;
  thread_local constinit hostent record;  // like what it points to, the thread's own until its next call
  record = {.h_name = found->h_name,
            .h_aliases = found->h_aliases,
            .h_addrtype = found->h_addrtype,
            .h_length = found->h_length,
            .h_addr_list = found->h_addr_list};
  return &record;
}

int WindowsOperatingSystem::getaddrinfo(const char* node, const char* service, const addrinfo& hints,
                                        std::vector<addrinfo>& addresses) {
  ::addrinfo request{};
  request.ai_family = hints.ai_family;
  ::addrinfo* found = nullptr;
  const int code = ::getaddrinfo(node, service, &request, &found);
  if (code != 0) return code;
  addresses = takeAddresses(found, ::freeaddrinfo);
  return 0;
}

int WindowsOperatingSystem::getnameinfo(const void* address, std::size_t addressLength, char* host,
                                        std::uint32_t hostSize, char* service, std::uint32_t serviceSize, int flags) {
  return ::getnameinfo(static_cast<const sockaddr*>(address), static_cast<socklen_t>(addressLength), host, hostSize,
                       service, serviceSize, flags);
}

}  // namespace kdx::os
