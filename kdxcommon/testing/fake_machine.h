// An operating system whose machine, host and resolver answer as a test says. It is a fixture: it stands while the test
// runs.

#ifndef KDXCOMMON_TESTING_FAKE_MACHINE_H_
#define KDXCOMMON_TESTING_FAKE_MACHINE_H_

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include "kdxcommon/inhouse/zqlib/last_error.h"
#include "kdxcommon/os/operating_system_wrapper.h"

namespace kdx::testing {

struct FakeMachine : ::testing::Test, os::OperatingSystemWrapper {
  std::map<string, int> failing;  // operations, a version's with its record's size, and the error that each leaves
  int systemError = 0;
  os::OSVERSIONINFOEXA version{
      .dwBuildNumber = 2600, .szCSDVersion = "Service Pack 2", .wServicePackMajor = 2, .wServicePackMinor = 3};
  wstring wideServicePack;
  os::utsname kernel;
  string osRelease, processorBrand;
  os::SYSTEM_INFO processor;
  std::uint64_t memory = 0;
  int secondRelease = 0, releaseAsked = 0;
  string ownName;  // written without a NUL where it fills the buffer
  const char* addresses[2] = {"\x0A\x01\x02\x03", nullptr};
  os::hostent host{.h_addrtype = -2, .h_length = 4, .h_addr_list = addresses};
  std::vector<string> names;  // of the resolved addresses; the lookup of an empty one fails
  string lookedUp;
  int nameFlags = -1;

  // What the calls under test report their failures through.
  int error = 7;
  ZQLastError lastError;

  bool answers(const string& operation) {
    const bool fails = failing.contains(operation);
    if (fails) systemError = failing[operation];
    return !fails;
  }
  bool answers(const string& operation, const string& text, char* buffer, std::size_t size) {
    const bool known = answers(operation);
    if (known) std::copy_n(text.c_str(), std::min(size, text.size() + 1), buffer);
    return known;
  }

  std::uint32_t GetLastError() override { return static_cast<std::uint32_t>(systemError); }
  void WSASetLastError(int number) override { systemError = number; }
  bool GetVersionExA(os::OSVERSIONINFOEXA& answer) override {
    const bool known = answers("GetVersionExA" + std::to_string(answer.dwOSVersionInfoSize));
    if (known) answer = version;  // all of it, so that it shows who takes more of it than was asked
    return known;
  }
  bool GetVersionExW(os::OSVERSIONINFOW& answer) override {
    const std::uint32_t size = answer.dwOSVersionInfoSize;
    answer = {size, version.dwMajorVersion, version.dwMinorVersion, version.dwBuildNumber, version.dwPlatformId, {}};
    std::copy(wideServicePack.begin(), wideServicePack.end(), answer.szCSDVersion);
    return answers("GetVersionExW" + std::to_string(size));
  }
  int GetSystemMetrics(int index) override {
    ++releaseAsked;
    return index == 89 ? secondRelease : 0;
  }
  void GetSystemInfo(os::SYSTEM_INFO& answer) override { answer = processor; }
  bool GlobalMemoryStatusEx(os::MEMORYSTATUSEX& answer) override {
    answer.ullTotalPhys = memory;
    return answers("GlobalMemoryStatusEx" + std::to_string(answer.dwLength));
  }
  bool GetComputerNameA(char* buffer, std::uint32_t& size) override {
    return answers("GetComputerNameA", ownName, buffer, size);
  }
  int uname(os::utsname& answer) override {
    answer = kernel;
    return answers("uname") ? 0 : -1;
  }
  bool readOsRelease(string& answer) override {
    if (answers("os-release")) answer = osRelease;
    return answer == osRelease;
  }
  bool processorName(string& answer) override {
    answer = processorBrand;
    return !processorBrand.empty();
  }
  int WSAStartup(std::uint16_t wanted) override { return answers("WSAStartup") && wanted == 0x0202 ? 0 : 10092; }
  int gethostname(char* buffer, int size) override {
    return answers("gethostname", ownName, buffer, static_cast<std::size_t>(size)) ? 0 : -1;
  }
  const os::hostent* gethostbyname(const char* name) override {
    lookedUp = name;
    return answers("gethostbyname") ? &host : nullptr;
  }
  int getaddrinfo(const char* node, const char*, const os::addrinfo& hints, std::vector<os::addrinfo>& found) override {
    lookedUp = node + (" of family " + std::to_string(hints.ai_family));
    if (!answers("getaddrinfo")) return failing["getaddrinfo"];
    for (const string& name : names) found.push_back({.ai_addr = {name.c_str(), name.c_str() + name.size() + 1}});
    return 0;
  }
  int getnameinfo(const void* address, std::size_t, char* buffer, std::uint32_t size, char*, std::uint32_t serviceSize,
                  int flags) override {
    nameFlags = serviceSize == 0 ? flags : -1;
    const string name = static_cast<const char*>(address);
    return !name.empty() && answers("getnameinfo", name, buffer, size) ? 0 : 2;  // ENOENT
  }

 private:
  const os::ScopedOperatingSystem scope_{*this};
};

}  // namespace kdx::testing

#endif  // KDXCOMMON_TESTING_FAKE_MACHINE_H_
