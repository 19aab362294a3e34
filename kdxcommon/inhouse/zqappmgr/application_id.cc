#include "kdxcommon/inhouse/zqappmgr/application_id.h"

#include <optional>

#include "kdxcommon/inhouse/embedded_site.h"

namespace kdx {
namespace {

constexpr int kFound = 0;
constexpr int kNotFound = -1;

}  // namespace

Subclient::~Subclient() = default;

int Subclient::getKDXDataCollectionOptions(std::uint32_t& options, void* /*reserved*/) const {
  options = dataCollectionOptions_;
  return kFound;
}

ZQApplicationType::~ZQApplicationType() = default;

int ZQApplicationType::isKDXdataCollectionEnabled(bool& enabled, void* /*reserved*/) const {
  enabled = collectsData_;
  return kFound;
}

ApplicationId::ApplicationId(std::uint32_t appIdPart1, std::uint32_t appIdPart2)
    : appIdPart1_(appIdPart1), appIdPart2_(appIdPart2) {}

ApplicationId::~ApplicationId() = default;

int ApplicationId::getAppType(std::uint32_t& type, void* /*reserved*/) const {
  const std::optional<ApplicationRecord> application = EmbeddedSite::current().application({appIdPart1_, appIdPart2_});
  if (!application) return kNotFound;
  type = application->type;
  return kFound;
}

ZQApplicationType* ApplicationId::getApplicationType(void* /*reserved*/) {
  const std::optional<ApplicationRecord> application = EmbeddedSite::current().application({appIdPart1_, appIdPart2_});
  applicationType_.reset();
  if (application) {
    applicationType_ =
        std::make_unique<ZQApplicationType>(static_cast<int>(application->type), application->collectsData);
  }
  return applicationType_.get();
}

Subclient* ApplicationId::getSubclient(void* /*reserved*/) {
  const std::optional<SubclientRecord> subclient = EmbeddedSite::current().subclient({appIdPart1_, appIdPart2_});
  subclient_.reset();
  if (subclient) subclient_ = std::make_unique<Subclient>(subclient->id, subclient->dataCollectionOptions);
  return subclient_.get();
}

}  // namespace kdx
