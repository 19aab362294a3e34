#include "kdxcommon/platform/hardware.h"

#include "kdxcommon/os/operating_system.h"
#include "kdxcommon/platform/failure.h"
#include "kdxcommon/platform/linux_facts.h"
#include "kdxcommon/platform/processor_text.h"

namespace kdx {
namespace {

using enum ProcessorDetail;

// `platformUname` has its own table, with other texts and without x64.
constexpr ProcessorRow kProcessors[] = {
    {.architecture = 0, .leastMajor = 4, .text = " x86 Family", .detail = kLevelModelStepping, .counted = true},
    {.architecture = 0, .type = 586, .text = " x86 Family"},
    {.architecture = 0, .text = " "},
    {.architecture = 1, .text = "MIPS"},
    {.architecture = 2, .text = "Alpha", .detail = kLevel, .counted = true},
    {.architecture = 3, .text = "PPC"},
    {.architecture = 6, .text = "Itanium Family", .detail = kLevel, .counted = true},
    {.architecture = 9, .leastMajor = 4, .text = "x64 Family", .detail = kLevel, .counted = true},
    {.architecture = 9, .text = "x64 Family", .detail = kLevel},
    {.text = "??? ???"},
};

}  // namespace

bool platformTypeOfCPU(string& type, int& error) {
  type.clear();
  os::OperatingSystem& system = os::OperatingSystem::current();
  os::OSVERSIONINFOEXA version;
  os::SYSTEM_INFO processor;
  if (readWindowsVersion(os::kVersionInfoSizeA, version)) {
    system.GetSystemInfo(processor);
    type = processorText(kProcessors, version.dwMajorVersion, processor);
    return true;
  }
  os::utsname kernel;
  if (!isOtherThanWindows() || system.uname(kernel) != 0) return failWithSystemError(error);
  string name;
  system.processorName(name);
  system.GetSystemInfo(processor);
  type = linuxProcessorText(name, kernel.machine, processor);
  return true;
}

bool platformNumberOfCPUs(std::uint32_t& count, int& /*error*/) {
  os::SYSTEM_INFO processor;
  os::OperatingSystem::current().GetSystemInfo(processor);
  count = processor.dwNumberOfProcessors;
  return true;
}

bool platformSystemRAM(std::uint64_t& bytes, int& error) {
  constexpr std::uint64_t kMebibyte = 1048576;
  os::MEMORYSTATUSEX status{.dwLength = os::kMemoryStatusLength};
  if (!os::OperatingSystem::current().GlobalMemoryStatusEx(status)) {
    bytes = 0;
    return failWithSystemError(error);
  }
  bytes = (status.ullTotalPhys / kMebibyte + 1) * kMebibyte;
  return true;
}

bool platformComputerName(string& name, int& error) {
  constexpr std::uint32_t kSize = 1024;
  char buffer[kSize + 1] = {};
  std::uint32_t size = kSize;
  if (!os::OperatingSystem::current().GetComputerNameA(buffer, size)) return failWithSystemError(error);
  name = buffer;
  return true;
}

}  // namespace kdx
