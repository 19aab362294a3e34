#include "kdxcommon/inhouse/jxnetwork/jx_ip_addr.h"

#include <cstddef>
#include <cstdint>
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
  std::vector<os::addrinfo> entries;
  const int code = system.getaddrinfo(name, nullptr, {.ai_family = family}, entries);
  if (code != 0) return errorOf(code);
  std::vector<CJxIPAddr> found(entries.size());
  for (std::size_t i = 0; i < found.size(); ++i) found[i].socketAddress_ = std::move(entries[i].ai_addr);
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
