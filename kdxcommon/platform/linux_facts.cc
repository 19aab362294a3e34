#include "kdxcommon/platform/linux_facts.h"

#include <cerrno>

#include "kdxcommon/platform/os_identity.h"
#include "kdxcommon/platform/processor_text.h"

namespace kdx {

bool readWindowsVersion(std::uint32_t size, os::OSVERSIONINFOEXA& version) {
  version = {.dwOSVersionInfoSize = size};
  return os::OperatingSystem::current().GetVersionExA(version);
}

bool isOtherThanWindows() {
  return os::OperatingSystem::current().GetLastError() == ENOSYS;
}

OsRelease distributionRelease() {
  string text;
  os::OperatingSystem::current().readOsRelease(text);
  return parseOsRelease(text);
}

void describeLinux(const OsRelease& release, LD_OSInformation_s& information) {
  constexpr std::int32_t kLinux = 2;
  const VersionNumbers version = parseVersion(release.versionId);
  const string& vendor = release.vendorName.empty() ? release.name : release.vendorName;
  if (!vendor.empty()) information.vendor = vendor;
  information.name = release.prettyName.empty() ? "Linux" : release.prettyName;
  information.majorVersion = version.major;
  information.minorVersion = version.minor;
  information.buildNumber = wholeNumber(release.buildId);
  information.servicePack = release.versionCodename;
  information.family = kLinux;
}

string linuxProcessorText(const string& name, const string& machine, const os::SYSTEM_INFO& processor) {
  const string x86 = (name.empty() ? machine : name) + " Family";
  const ProcessorRow rows[] = {
      {.architecture = 0, .text = x86.c_str(), .detail = ProcessorDetail::kLevelModelStepping, .counted = true},
      {.architecture = 9, .text = x86.c_str(), .detail = ProcessorDetail::kLevelModelStepping, .counted = true},
      {.text = machine.c_str(), .counted = true},
  };
  return processorText(rows, 0, processor);
}

}  // namespace kdx
