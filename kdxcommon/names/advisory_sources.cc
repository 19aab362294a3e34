#include "kdxcommon/names/advisory_sources.h"

#include <algorithm>
#include <string>
#include <utility>

#include "kdxcommon/inhouse/jxutils/jx_exception.h"
#include "kdxcommon/logging/function_logger.h"
#include "kdxcommon/names/dn_scanner.h"
#include "kdxcommon/strings/wide_string.h"

namespace kdx {
namespace {

// Returns whether the first RDN is `root`, which is ASCII.
bool hasRoot(wstring_view dn, string_view root) {
  const wstring_view first = dn.substr(0, findSeparator(dn, 1));
  return std::equal(first.begin(), first.end(), root.begin(), root.end());
}

template <typename Text>
bool storageDN(const std::vector<Text>& rdns, Text& dn) {
  if (rdns.empty()) {
    dn.clear();
    return true;
  }
  StorageAdvisorySource source;
  for (const Text& rdn : rdns) source.addRDN(rdn);
  source.getDN(dn);
  return true;
}

// The RDNs of each filer type, from the root downwards.
constexpr struct {
  int filerType;
  const char* rdn;
} kFilerTypeRDNs[] = {
    {1, "NASNetApp"},
    {2, "NASEMC"},
    {2, "Celerras"},
};

}  // namespace

template <typename Source>
AdvisorySource<Source>::AdvisorySource() : CBasicX500Name(Source::root()) {}

template <typename Source>
bool AdvisorySource<Source>::setDN(const wstring& dn) {
  return hasRoot(dn, Source::root()) && CBasicX500Name::setDN(dn);
}

template <typename Source>
bool AdvisorySource<Source>::setDN(const string& dn) {
  return CBasicX500Name::setDN(dn);
}

template class KDX_DEFINE_TEMPLATE AdvisorySource<SoftwareAdvisorySource>;
template class KDX_DEFINE_TEMPLATE AdvisorySource<StorageAdvisorySource>;

bool SoftwareAdvisorySource::isSoftwareAdvisorySource(const CBasicX500Name& name) {
  return hasRoot(name.wDN(), root());
}

bool StorageAdvisorySource::isStorageAdvisorySource(const CBasicX500Name& name) {
  return hasRoot(name.wDN(), root());
}

bool isDVMAdvisorySource(const CBasicX500Name& name) {
  return StorageAdvisorySource::isStorageAdvisorySource(name) || SoftwareAdvisorySource::isSoftwareAdvisorySource(name);
}

bool emClientCreateStorageAdvisorySourceA(const std::vector<string>& rdns, string& dn) {
  return storageDN(rdns, dn);
}

bool emClientCreateStorageAdvisorySourceW(const std::vector<wstring>& rdns, wstring& dn) {
  return storageDN(rdns, dn);
}

bool advFilerTypeRDNs(int filerType, std::vector<wstring>& rdns) {
  rdns.clear();
  for (const auto& row : kFilerTypeRDNs) {
    if (row.filerType == filerType) rdns.push_back(CWideString(string(row.rdn)).wString());
  }
  if (!rdns.empty()) return true;
  const FunctionLogger log("advFilerTypeRDNs()");
  log(0, "Advisory subsystem does not support filer type [%d]!", filerType);
  return false;
}

void formatOrbitClientIdRDN(wstring& rdn, wstring orbitId, std::uint32_t clientId) {
  constexpr char kWhere[] = "formatOrbitClientIdRDN";
  if (orbitId.empty()) throw JxException("Undefined orbitId!", kWhere);
  if (clientId == 0) throw JxException("Undefined clientId!", kWhere);
  const string number = std::to_string(clientId);
  orbitId += wchar{':'};
  orbitId.append(number.begin(), number.end());
  rdn = std::move(orbitId);
}

}  // namespace kdx
