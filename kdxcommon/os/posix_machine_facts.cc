// Facts about the machine: processors, memory, names. Operations that only Windows has fail.

#include <sys/sysinfo.h>
#include <sys/utsname.h>
#include <unistd.h>

#if defined(__x86_64__) || defined(__i386__)
#include <cpuid.h>
#endif

#include <algorithm>
#include <array>
#include <bit>
#include <cerrno>
#include <cstring>
#include <utility>

#include "kdxcommon/os/posix_operating_system.h"

namespace kdx::os {
namespace {

// Windows' numbers for the architecture that this library was compiled for.
struct Architecture {
  std::uint16_t architecture;
  std::uint32_t processorType;
};
constexpr Architecture kArchitecture =
#if defined(__x86_64__)
    {9, 8664};
#elif defined(__i386__)
    {0, 586};
#elif defined(__aarch64__)
    {12, 0};
#elif defined(__arm__)
    {5, 0};
#elif defined(__powerpc__)
    {3, 0};
#elif defined(__mips__)
    {1, 0};
#else
    {0xFFFF, 0};
#endif

bool readCpuid(std::uint32_t leaf, CpuidRegisters& registers) {
#if defined(__x86_64__) || defined(__i386__)
  auto& [eax, ebx, ecx, edx] = registers;
  return ::__get_cpuid(leaf, &eax, &ebx, &ecx, &edx) != 0;
#else
  static_cast<void>(leaf), static_cast<void>(registers);
  return false;
#endif
}

string_view withoutBlanksAtEnds(string_view text) {
  const std::size_t first = std::min(text.find_first_not_of(' '), text.size());
  return text.substr(first, text.find_last_not_of(' ') + 1 - first);
}

bool notOfThisSystem() {
  errno = ENOSYS;
  return false;
}

}  // namespace

bool readFirstLines(const char* path, string& text) {
  constexpr std::size_t kMostBytes = 65536;
  const auto stream = PosixOperatingSystem().fopen(path, "r");
  if (!stream) return false;
  string content(kMostBytes, '\0');
  const std::size_t length = stream->fread(content.data(), content.size());
  if (stream->ferror() != 0) return false;
  content.resize(length < kMostBytes ? length : content.rfind('\n') + 1);
  text = std::move(content);
  return true;
}

string modelNameIn(string_view cpuInfo) {
  constexpr string_view kKey = "model name\t:";
  const std::size_t key = cpuInfo.find(kKey);
  if (key == string_view::npos) return {};
  cpuInfo.remove_prefix(key + kKey.size());
  return string(withoutBlanksAtEnds(cpuInfo.substr(0, cpuInfo.find('\n'))));
}

void readSignature(CpuidReader read, SYSTEM_INFO& information) {
  CpuidRegisters registers{};
  if (!read(1, registers)) return;
  const auto bits = [signature = registers[0]](int low, unsigned mask) { return (signature >> low) & mask; };
  const unsigned family = bits(8, 0xF);
  const unsigned extendedModel = family == 6 || family == 15 ? bits(16, 0xF) : 0;
  information.wProcessorLevel = static_cast<std::uint16_t>(family == 15 ? family + bits(20, 0xFF) : family);
  information.wProcessorRevision = static_cast<std::uint16_t>(extendedModel << 12 | bits(4, 0xF) << 8 | bits(0, 0xF));
}

bool readProcessorName(CpuidReader read, const char* cpuInfoPath, string& name) {
  std::array<CpuidRegisters, 3> brand{};
  std::uint32_t leaf = 0x80000002;
  const bool branded =
      std::all_of(brand.begin(), brand.end(), [&](auto& registers) { return read(leaf++, registers); });
  const auto units = std::bit_cast<std::array<char, sizeof brand>>(brand);
  string found;
  if (branded) found = withoutBlanksAtEnds({units.data(), std::find(units.begin(), units.end(), '\0')});
  if (string cpuInfo; found.empty() && readFirstLines(cpuInfoPath, cpuInfo)) found = modelNameIn(cpuInfo);
  if (found.empty()) return false;
  name = std::move(found);
  return true;
}

bool PosixOperatingSystem::GetVersionExA(OSVERSIONINFOEXA& /*version*/) {
  return notOfThisSystem();
}

bool PosixOperatingSystem::GetVersionExW(OSVERSIONINFOW& /*version*/) {
  return notOfThisSystem();
}

int PosixOperatingSystem::GetSystemMetrics(int /*index*/) {
  return 0;
}

void PosixOperatingSystem::GetSystemInfo(SYSTEM_INFO& information) {
  information = {.wProcessorArchitecture = kArchitecture.architecture,
                 .dwNumberOfProcessors = static_cast<std::uint32_t>(std::max(::sysconf(_SC_NPROCESSORS_ONLN), 1L)),
                 .dwProcessorType = kArchitecture.processorType};
  readSignature(readCpuid, information);
}

bool PosixOperatingSystem::GlobalMemoryStatusEx(MEMORYSTATUSEX& status) {
  if (status.dwLength != kMemoryStatusLength) {
    errno = EINVAL;
    return false;
  }
  struct sysinfo memory;
  if (::sysinfo(&memory) != 0) return false;
  status.ullTotalPhys = std::uint64_t{memory.totalram} * memory.mem_unit;
  return true;
}

bool PosixOperatingSystem::GetComputerNameA(char* buffer, std::uint32_t& size) {
  struct ::utsname names;
  if (::uname(&names) != 0) return false;
  const auto length = static_cast<std::uint32_t>(std::strlen(names.nodename));
  const bool fits = buffer && length < size;
  size = fits ? length : length + 1;
  if (fits) {
    std::memcpy(buffer, names.nodename, length + 1);
  } else {
    errno = buffer ? ENAMETOOLONG : EINVAL;
  }
  return fits;
}

int PosixOperatingSystem::uname(utsname& names) {
  struct ::utsname kernel;
  if (::uname(&kernel) != 0) return -1;
  names = {kernel.sysname, kernel.nodename, kernel.release, kernel.version, kernel.machine};
  return 0;
}

bool PosixOperatingSystem::readOsRelease(string& text) {
  return readFirstLines("/etc/os-release", text) || readFirstLines("/usr/lib/os-release", text);
}

bool PosixOperatingSystem::processorName(string& name) {
  return readProcessorName(readCpuid, "/proc/cpuinfo", name);
}

}  // namespace kdx::os
