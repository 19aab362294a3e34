#include "kdxcommon/inhouse/zqbasiclib/platform_info.h"

#include <optional>

#include "kdxcommon/inhouse/copy_text.h"
#include "kdxcommon/inhouse/embedded_site.h"

namespace kdx {

int ZQPlatformInfo::getNumber(const char* section, const char* key, std::uint32_t* value) const {
  const std::optional<std::uint32_t> number = EmbeddedSite::current().number(section, key);
  if (!number) return 0;
  *value = *number;
  return 1;
}

int ZQPlatformInfo::getClientHostName(const char* clientName, char* buffer, std::uint32_t size) const {
  return copyText(EmbeddedSite::current().clientHostName(clientName), buffer, size);
}

ZQPI_Base::ZQPI_Base() = default;
ZQPI_Base::~ZQPI_Base() = default;

}  // namespace kdx
