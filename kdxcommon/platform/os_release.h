// Internal to the library: what a Linux distribution says of itself in its os-release file, and the numbers in the
// texts of a version. Pure functions of a text.

#ifndef KDXCOMMON_PLATFORM_OS_RELEASE_H_
#define KDXCOMMON_PLATFORM_OS_RELEASE_H_

#include <cstdint>

#include "kdxcommon/base/string_types.h"

namespace kdx {

/// The values of an os-release file that the library uses; empty where the file has none.
struct OsRelease {
  string name;             ///< "Debian GNU/Linux"
  string prettyName;       ///< "Debian GNU/Linux 12 (bookworm)"
  string vendorName;       ///< "Fedora Project"
  string versionId;        ///< "12"
  string versionCodename;  ///< "bookworm"
  string buildId;          ///< "rolling"

  bool operator==(const OsRelease&) const = default;
};

/// Reads the assignments of `text` as a shell would that expands nothing: one to a line, with single or double quotes,
/// backslashes in front of special characters, and comments. The last assignment to a name counts. A line that is no
/// assignment, that leaves a quote open, or that holds a NUL is ignored.
OsRelease parseOsRelease(string_view text);

/// The numbers at the start of a version such as "6.1.0-18-amd64".
struct VersionNumbers {
  std::uint32_t major = 0, minor = 0, patch = 0;  ///< 6, 1, 0; 0 if absent, or too large for 32 bits
  string_view rest;                               ///< what follows them, "-18-amd64"; a part of the text that was read
};

/// Reads up to three decimal numbers with points between them.
VersionNumbers parseVersion(string_view text);

/// Returns the number that `text` consists of, 0 if it is anything else or too large for 32 bits.
std::uint32_t wholeNumber(string_view text);

}  // namespace kdx

#endif  // KDXCOMMON_PLATFORM_OS_RELEASE_H_
