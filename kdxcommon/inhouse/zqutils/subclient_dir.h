// Where a subclient's files live, as the embedded site knows it. Any thread may ask; a failure is a number that is not
// 0, with the buffer untouched.
//
//   char directory[kdx::kSubclientDirSize] = {};
//   kdx::GetSubclientDir(appIdPart1, appIdPart2, directory);

#ifndef KDXCOMMON_INHOUSE_ZQUTILS_SUBCLIENT_DIR_H_
#define KDXCOMMON_INHOUSE_ZQUTILS_SUBCLIENT_DIR_H_

#include <cstddef>
#include <cstdint>

#include "kdxcommon/base/export.h"

namespace kdx {

/// The bytes that the buffer of `GetSubclientDir` needs: 1024 for the directory, one for the zero behind it.
inline constexpr std::size_t kSubclientDirSize = 1025;

/// Writes the subclient's directory (UTF-8, ending in a zero byte) into `buffer`, as the embedded site knows it. Gives
/// 0; non-zero with `buffer` untouched when the subclient is unknown or its directory too long. Any thread may call.
KDX_EXPORT int GetSubclientDir(std::uint32_t appIdPart1, std::uint32_t appIdPart2, char* buffer);

}  // namespace kdx

#endif  // KDXCOMMON_INHOUSE_ZQUTILS_SUBCLIENT_DIR_H_
