#include "kdxcommon/platform/hosts.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>

#include "kdxcommon/inhouse/jxnetwork/jx_ip_addr.h"
#include "kdxcommon/inhouse/zqlib/last_error.h"
#include "kdxcommon/logging/function_logger.h"
#include "kdxcommon/os/operating_system.h"
#include "kdxcommon/platform/failure.h"
#include "kdxcommon/platform/files_and_clock.h"

namespace kdx {
namespace {

// The first octets of an address; a shorter address is padded with zeros.
using AddressArea = std::array<std::uint8_t, 32>;

AddressArea firstAddress(const os::hostent& host) {
  AddressArea octets{};
  const char* address = host.h_addr_list ? host.h_addr_list[0] : nullptr;
  const auto length = static_cast<std::size_t>(std::max<int>(host.h_length, 0));
  if (address) std::memcpy(octets.data(), address, std::min(length, octets.size()));
  return octets;
}

std::uint32_t bigEndian(const AddressArea& octets, int count) {
  std::uint32_t number = 0;
  for (int i = 0; i < count; ++i) number = number << 8 | octets[static_cast<std::size_t>(i)];
  return number;
}

// Sets the thread's last error to a resolver's result and returns the result.
int asLastError(int result) {
  os::OperatingSystem::current().WSASetLastError(result);
  return result;
}

// Returns the name of a resolved address, or `address`, the text that was looked up, if `getnameinfo` fails.
string nameBehind(const os::addrinfo& entry, const string& address) {
  constexpr std::uint32_t kSize = 256;
  const FunctionLogger log("platformGetHostnamesByIPAddr()");
  char host[kSize + 1] = {};
  if (asLastError(os::OperatingSystem::current().getnameinfo(entry.ai_addr.data(), entry.ai_addr.size(), host, kSize,
                                                             nullptr, 0, 0)) != 0) {
    string reason;
    winGetOSErrorMessage(platformGetLastError(), reason);
    log(0, "getnameinfo() failed on address returned for IP address [%s]: [%s]", address.c_str(), reason.c_str());
    return address;
  }
  log(1, "IP address [%s] resolved into fqdn [%s]", address.c_str(), host);
  return host;
}

}  // namespace

bool platformGethostname(string& name, ZQLastError* lastError) {
  constexpr int kSize = 257;
  os::OperatingSystem& system = os::OperatingSystem::current();
  char buffer[kSize + 1] = {};
  if (system.WSAStartup(os::kSocketLayerVersion) != 0 || system.gethostname(buffer, kSize) != 0) {
    return failWithSystemError(lastError);
  }
  name = buffer;
  return true;
}

bool platformHostid(std::uint32_t& hostid, int& error) {
  constexpr int kSize = 1024;
  os::OperatingSystem& system = os::OperatingSystem::current();
  if (system.WSAStartup(os::kSocketLayerVersion) != 0) return failWithSystemError(error);
  hostid = 0;
  char name[kSize + 1] = {};
  if (system.gethostname(name, kSize) != 0) return failWithSystemError(error);
  const os::hostent* host = system.gethostbyname(name);
  if (!host) return failWithSystemError(error);
  const bool isShort = host->h_length >= 1 && host->h_length <= 3;
  hostid = bigEndian(firstAddress(*host), isShort ? host->h_length : 4);
  return true;
}

bool platformGethostbynameV2(const string& hostName, LD_hostent_s& host, ZQLastError* lastError) {
  if (hostName.empty()) return failWith(kErrorInvalidArgument, lastError);
  os::OperatingSystem& system = os::OperatingSystem::current();
  if (system.WSAStartup(os::kSocketLayerVersion) != 0) return failWithSystemError(lastError);
  const os::hostent* found = system.gethostbyname(hostName.c_str());
  if (!found) return failWithSystemError(lastError);
  host.name = found->h_name ? found->h_name : "";
  for (const char* const* alias = found->h_aliases; alias && *alias; ++alias) host.aliases.emplace_back(*alias);
  host.addressType = found->h_addrtype;
  const AddressArea octets = firstAddress(*found);
  char text[sizeof "255.255.255.255"];
  std::snprintf(text, sizeof text, "%u.%u.%u.%u", octets[0], octets[1], octets[2], octets[3]);
  host.addressText = text;
  host.addressNumber = bigEndian(octets, 4);
  return true;
}

bool platformGetIPbyHostname(const string& hostName, string& address, ZQLastError& lastError) {
  if (hostName.empty()) return failWith(kErrorInvalidArgument, &lastError);
  std::vector<CJxIPAddr> addresses;
  const CJxError lookedUp = CJxIPAddr::GetAllByName(hostName.c_str(), addresses, IP_FAMILY_ANY);
  if (lookedUp.IsErrorSet()) return failWith(lookedUp.GetErrorCode(), &lastError);
  if (addresses.empty()) return failWith(kErrorInvalidArgument, &lastError);
  CJxString text;
  const CJxError printed = addresses.front().GetAddressString(text);
  if (printed.IsErrorSet()) return failWith(printed.GetErrorCode(), &lastError);
  address = text.c_str();
  return true;
}

bool platformGetHostnamesByIPAddr(const string& address, std::set<string>& hostNames, ZQLastError& lastError) {
  std::set<string> former;  // may contain `address`, so it must live until the end
  former.swap(hostNames);
  if (address.find_first_of(".:") == string::npos) return failWith(kErrorInvalidArgument, &lastError);
  std::vector<os::addrinfo> entries;
  if (asLastError(os::OperatingSystem::current().getaddrinfo(address.c_str(), nullptr,
                                                             {.ai_family = os::kAddressFamilyIPv4}, entries)) != 0) {
    lastError.setMajor(platformGetLastError());
    return false;
  }
  for (const os::addrinfo& entry : entries) hostNames.insert(nameBehind(entry, address));
  return true;
}

}  // namespace kdx
