#include "kdxcommon/inhouse/zqutils/subclient_dir.h"

#include <optional>

#include "kdxcommon/inhouse/copy_text.h"
#include "kdxcommon/inhouse/embedded_site.h"

namespace kdx {

int GetSubclientDir(std::uint32_t appIdPart1, std::uint32_t appIdPart2, char* buffer) {
  const std::optional<SubclientRecord> subclient = EmbeddedSite::current().subclient({appIdPart1, appIdPart2});
  return subclient && copyText(subclient->directory, buffer, kSubclientDirSize) ? 0 : -1;
}

}  // namespace kdx
