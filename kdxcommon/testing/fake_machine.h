// An operating system whose machine, host and resolver answer as a test says, with what was asked kept for it to see.

#ifndef KDXCOMMON_TESTING_FAKE_MACHINE_H_
#define KDXCOMMON_TESTING_FAKE_MACHINE_H_

#include <algorithm>
#include <cstring>
#include <deque>
#include <map>
#include <string>
#include <vector>

#include "kdxcommon/os/operating_system_wrapper.h"

namespace kdx::testing {

struct FakeMachine : OperatingSystemWrapper {
  /// The operations that fail, and the last error that each leaves. That of a version has its size behind the name.
  std::map<string, int> failing;
  std::vector<string> asked;
  std::uint32_t lastError = 0;

  OSVERSIONINFOEXA version;
  wstring wideServicePack;
  SYSTEM_INFO processor;
  std::uint64_t memory = 0;
  int secondRelease = 0;
  string computerName, hostName;  // written without a NUL where they fill the buffer
  hostent host;
  std::vector<string> namesOfAddresses;  // one an entry; the lookup of an empty one fails
  std::deque<addrinfo> chain;
  std::string node;
  int released = 0;

  bool fails(const string& operation) {
    asked.push_back(operation);
    const auto found = failing.find(operation);
    if (found == failing.end()) return false;
    lastError = static_cast<std::uint32_t>(found->second);
    return true;
  }

  std::uint32_t GetLastError() override { return lastError; }
  void WSASetLastError(int error) override { lastError = static_cast<std::uint32_t>(error); }
  bool GetVersionExA(OSVERSIONINFOEXA& answer) override {
    const std::uint32_t size = answer.dwOSVersionInfoSize;
    if (fails("GetVersionExA" + std::to_string(size))) return false;
    std::memcpy(&answer, &version, size);
    return true;
  }
  bool GetVersionExW(OSVERSIONINFOW& answer) override {
    if (fails("GetVersionExW" + std::to_string(answer.dwOSVersionInfoSize))) return false;
    answer = {276, version.dwMajorVersion, version.dwMinorVersion, version.dwBuildNumber, version.dwPlatformId, {}};
    std::copy(wideServicePack.begin(), wideServicePack.end(), answer.szCSDVersion);
    return true;
  }
  int GetSystemMetrics(int index) override { return !fails("GetSystemMetrics") && index == 89 ? secondRelease : 0; }
  void GetSystemInfo(SYSTEM_INFO& answer) override { answer = processor; }
  bool GlobalMemoryStatusEx(MEMORYSTATUSEX& answer) override {
    if (fails("GlobalMemoryStatusEx")) return false;
    answer.ullTotalPhys = answer.dwLength == 64 ? memory : 0;
    return true;
  }
  bool GetComputerNameA(char* buffer, std::uint32_t& size) override {
    if (fails("GetComputerNameA")) return false;
    std::memcpy(buffer, computerName.c_str(), std::min<std::size_t>(size, computerName.size() + 1));
    size = 0;
    return true;
  }
  int WSAStartup(std::uint16_t wanted) override { return fails("WSAStartup") || wanted != 0x0202 ? 10092 : 0; }
  int gethostname(char* buffer, int size) override {
    if (fails("gethostname")) return -1;
    std::memcpy(buffer, hostName.c_str(), std::min(static_cast<std::size_t>(size), hostName.size() + 1));
    return 0;
  }
  const hostent* gethostbyname(const char* name) override {
    node = name;
    return fails("gethostbyname") ? nullptr : &host;
  }
  int getaddrinfo(const char* name, const char*, const addrinfo& hints, addrinfo*& first) override {
    node = name + string(hints.ai_family == 2 ? " IPv4" : hints.ai_family == 0 ? " any" : " other");
    if (fails("getaddrinfo")) return failing["getaddrinfo"];
    for (const string& text : namesOfAddresses) {
      chain.push_back({.ai_family = 2, .ai_addr = text.c_str(), .ai_addrlen = text.size() + 1});
      if (chain.size() > 1) chain[chain.size() - 2].ai_next = &chain.back();
    }
    first = chain.empty() ? nullptr : &chain.front();
    return 0;
  }
  int getnameinfo(const void* address, std::size_t, char* buffer, std::uint32_t size, char*, std::uint32_t,
                  int) override {
    const string name = static_cast<const char*>(address);
    if (name.empty() || fails("getnameinfo")) return 2;  // ENOENT
    std::memcpy(buffer, name.c_str(), std::min<std::size_t>(size, name.size() + 1));
    return 0;
  }
  void freeaddrinfo(addrinfo* first) override {
    released += !chain.empty() && first == &chain.front();
    chain.clear();
  }
};

}  // namespace kdx::testing

#endif  // KDXCOMMON_TESTING_FAKE_MACHINE_H_
