// GetSubclientDir returns the directory of a subclient's files from the embedded site.
//
//   char directory[kdx::kSubclientDirSize] = {};
//   kdx::GetSubclientDir(appIdPart1, appIdPart2, directory);

#ifndef KDXCOMMON_INHOUSE_ZQUTILS_SUBCLIENT_DIR_H_
#define KDXCOMMON_INHOUSE_ZQUTILS_SUBCLIENT_DIR_H_

#include <cstddef>
#include <cstdint>

#include "kdxcommon/base/export.h"

namespace kdx {

/// The size in bytes of the buffer that `GetSubclientDir` needs: 1024 for the directory, 1 for the terminating NUL.
inline constexpr std::size_t kSubclientDirSize = 1025;

/// Writes the subclient's directory (UTF-8, NUL-terminated) into `buffer` and returns 0. Returns non-zero and leaves
/// `buffer`, which must not be null, unchanged if the subclient is unknown or its directory too long. Thread-safe.
/// Throws only std::bad_alloc.
KDX_EXPORT int GetSubclientDir(std::uint32_t appIdPart1, std::uint32_t appIdPart2, char* buffer);

}  // namespace kdx

#endif  // KDXCOMMON_INHOUSE_ZQUTILS_SUBCLIENT_DIR_H_
