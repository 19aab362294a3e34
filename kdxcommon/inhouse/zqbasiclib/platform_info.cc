#include "kdxcommon/inhouse/zqbasiclib/platform_info.h"

#include <optional>

#include "kdxcommon/inhouse/copy_text.h"
#include "kdxcommon/inhouse/embedded_site.h"

namespace kdx {
namespace {

const char* orEmpty(const char* name) {
  return name ? name : "";
}

}  // namespace

int ZQPlatformInfo::getNumber(const char* section, const char* key, std::uint32_t* value) const {
  const std::optional<std::uint32_t> number = EmbeddedSite::current().number(orEmpty(section), orEmpty(key));
  if (!number) return 0;
  *value = *number;
  return 1;
}

int ZQPlatformInfo::getClientHostName(const char* clientName, char* buffer, std::uint32_t size) const {
  return copyText(EmbeddedSite::current().clientHostName(orEmpty(clientName)), buffer, size);
}

ZQPI_Base::ZQPI_Base() = default;
ZQPI_Base::~ZQPI_Base() = default;

}  // namespace kdx
