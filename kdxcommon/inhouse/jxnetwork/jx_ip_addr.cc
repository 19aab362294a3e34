#include "kdxcommon/inhouse/jxnetwork/jx_ip_addr.h"

#include <cstdint>
#include <memory>
#include <utility>

#include "kdxcommon/inhouse/jxutils/system_error.h"

namespace kdx {
namespace {

CJxError errorOf(int code) {
  return CJxError(static_cast<std::uint32_t>(code));
}

}  // namespace

CJxError CJxIPAddr::GetAllByName(const char* name, std::vector<CJxIPAddr>& addresses, IP_FAMILY family) {
  if (!name) return CJxError(CJxError::kNoSystemCode);
  os::OperatingSystem& system = os::OperatingSystem::current();
  if (system.WSAStartup(os::kSocketLayerVersion) != 0) return lastSystemError();
  os::addrinfo* first = nullptr;
  const int code = system.getaddrinfo(name, nullptr, {.ai_family = family}, first);
  if (code != 0) return errorOf(code);
  const auto release = [&system](os::addrinfo* chain) { system.freeaddrinfo(chain); };
  const std::unique_ptr<os::addrinfo, decltype(release)> chain(first, release);
  std::vector<CJxIPAddr> found;
  for (const os::addrinfo* entry = first; entry; entry = entry->ai_next) {
    const auto* bytes = static_cast<const unsigned char*>(entry->ai_addr);
    found.emplace_back().socketAddress_.assign(bytes, bytes + entry->ai_addrlen);
  }
  addresses = std::move(found);
  return {};
}

CJxError CJxIPAddr::GetAddressString(CJxString& text) const {
  constexpr std::uint32_t kSize = 256;
  if (socketAddress_.empty()) return CJxError(CJxError::kNoSystemCode);
  char host[kSize + 1] = {};
  const int code = os::OperatingSystem::current().getnameinfo(socketAddress_.data(), socketAddress_.size(), host, kSize,
                                                              nullptr, 0, os::kNameInfoNumericHost);
  if (code != 0) return errorOf(code);
  text = host;
  return {};
}

}  // namespace kdx
