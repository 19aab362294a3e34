// Any bytes, as an os-release file and as a quoted value that must be read back unchanged.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "kdxcommon/platform/os_release.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(data, data + size), noSuchValue("\n\0", 2);
  std::string value, doubleQuoted = "NAME=\"", singleQuoted = "NAME='";
  for (const char unit : text) {
    if (noSuchValue.find(unit) != std::string::npos) continue;
    if (std::string("$`\"\\").find(unit) != std::string::npos) doubleQuoted += '\\';
    doubleQuoted += unit;
    if (unit == '\'') singleQuoted += "'\\'";
    singleQuoted += unit;
    value += unit;
  }
  doubleQuoted += "\"\nNAME='open";
  singleQuoted += "' # no more";
  const kdx::OsRelease release = kdx::parseOsRelease(text);
  const bool sound = release.name.find_first_of(noSuchValue) == std::string::npos &&
                     kdx::parseOsRelease(text + '\n' + text) == release &&
                     kdx::parseOsRelease(doubleQuoted).name == value &&
                     kdx::parseOsRelease(singleQuoted).name == value && text.ends_with(kdx::parseVersion(text).rest);
  if (!sound) std::abort();
  return 0;
}
