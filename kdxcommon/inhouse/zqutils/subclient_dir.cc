#include "kdxcommon/inhouse/zqutils/subclient_dir.h"

#include <cstring>
#include <optional>

#include "kdxcommon/inhouse/embedded_site.h"

namespace kdx {

int GetSubclientDir(std::uint32_t appIdPart1, std::uint32_t appIdPart2, char* buffer) {
  const std::optional<SubclientRecord> subclient = EmbeddedSite::current().subclient({appIdPart1, appIdPart2});
  if (!subclient || subclient->directory.size() >= kSubclientDirSize) return -1;
  std::memcpy(buffer, subclient->directory.c_str(), subclient->directory.size() + 1);
  return 0;
}

}  // namespace kdx
