// Internal to the library: parsers for the os-release file of a Linux distribution and for the numbers in a version
// text. Pure functions of a text.

#ifndef KDXCOMMON_PLATFORM_OS_RELEASE_H_
#define KDXCOMMON_PLATFORM_OS_RELEASE_H_

#include <cstdint>

#include "kdxcommon/base/string_types.h"

namespace kdx {

/// The values of an os-release file that the library uses; a missing value is empty.
struct OsRelease {
  string name;             ///< "Debian GNU/Linux"
  string prettyName;       ///< "Debian GNU/Linux 12 (bookworm)"
  string vendorName;       ///< "Fedora Project"
  string versionId;        ///< "12"
  string versionCodename;  ///< "bookworm"
  string buildId;          ///< "rolling"

  bool operator==(const OsRelease&) const = default;
};

/// Parses the assignments in `text` as a shell without expansions would: one per line, with single or double quotes,
/// backslashes before special characters, and comments. The last assignment to a name takes effect. A line that isn't
/// an assignment, has an unclosed quote or contains a NUL is ignored.
OsRelease parseOsRelease(string_view text);

/// The numbers at the start of a version such as "6.1.0-18-amd64".
struct VersionNumbers {
  std::uint32_t major = 0, minor = 0, patch = 0;  ///< 6, 1, 0; 0 if absent or too large for 32 bits
  string_view rest;                               ///< the text after them, "-18-amd64"; a view into the parsed text
};

/// Parses up to three decimal numbers separated by dots.
VersionNumbers parseVersion(string_view text);

/// Returns the decimal number that `text` consists of, or 0 if `text` isn't a number or is too large for 32 bits.
std::uint32_t wholeNumber(string_view text);

}  // namespace kdx

#endif  // KDXCOMMON_PLATFORM_OS_RELEASE_H_
