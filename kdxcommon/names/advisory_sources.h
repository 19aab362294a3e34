// Names for the sources of advisories: a CBasicX500Name whose first RDN is "Software" for a part of the product's
// software, "Storage" for a piece of storage.
//
//   kdx::SoftwareAdvisorySource source;         // Software
//   source.addRDN(source.jobManagerName());     // Software;Job Manager
//
//   std::vector<kdx::wstring> rdns;
//   kdx::wstring dn;
//   if (!kdx::advFilerTypeRDNs(2, rdns)) return false;
//   kdx::emClientCreateStorageAdvisorySourceW(rdns, dn);   // Storage;NASEMC;Celerras
//
// Only `setDN` checks the root. A name that a source gets by assignment, as a `parent` or from
// `createBasicX500NameFromDN` is not checked.
//
// Thread safety: that of CBasicX500Name; the functions have no state. `setDN` and `advFilerTypeRDNs` return false on
// failure, `formatOrbitClientIdRDN` throws JxException; all may throw std::bad_alloc.

#ifndef KDXCOMMON_NAMES_ADVISORY_SOURCES_H_
#define KDXCOMMON_NAMES_ADVISORY_SOURCES_H_

#include <cstdint>
#include <vector>

#include "kdxcommon/base/export.h"
#include "kdxcommon/base/string_types.h"
#include "kdxcommon/names/basic_x500_name.h"

namespace kdx {

#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"  // a name is never deleted through its base
#endif

/// The template of the two classes below; use them by their names. `Source` is one of them, and its `root()` is the
/// first RDN.
template <typename Source>
class AdvisorySource : public CBasicX500Name {
 public:
  /// Sets the DN as the base does if its first RDN is the root, its case included. Returns false and leaves the name
  /// unchanged for any other.
  bool setDN(const wstring& dn) override;
  /// Converts `dn` from UTF-8 and makes the virtual call of the `wstring` form.
  bool setDN(const string& dn) override;

 protected:
  /// The root alone; accepts empty RDNs.
  AdvisorySource();
};

class SoftwareAdvisorySource;
class StorageAdvisorySource;
extern template class KDX_EXPORT_TEMPLATE AdvisorySource<SoftwareAdvisorySource>;
extern template class KDX_EXPORT_TEMPLATE AdvisorySource<StorageAdvisorySource>;

/// A part of the product's software. A new object is the root alone and accepts empty RDNs. Copies and assignments are
/// those of the base class: they don't check the root.
class KDX_EXPORT SoftwareAdvisorySource : public AdvisorySource<SoftwareAdvisorySource> {
 public:
  /// Returns the first RDN of every such name.
  static const char* root() { return "Software"; }

  /// Returns whether the first RDN of `name` is the root, its case included. An empty name has none.
  static bool isSoftwareAdvisorySource(const CBasicX500Name& name);

  /// Return the RDNs below the root; a caller appends one with `addRDN`.
  static const char* agentManagerName() { return "Agent Manager"; }
  static const char* jobManagerName() { return "Job Manager"; }
  static const char* dataCollectionServerName() { return "Data Collection Server"; }
  static const char* userManagerName() { return "User Manager"; }
  static const char* clientManagerName() { return "Client Manager"; }
  static const char* guiServerName() { return "GUI Server"; }
  static const char* proxyServerName() { return "Proxy Server"; }
  static const char* eventManagerName() { return "Event Manager"; }
  static const char* reportManagerName() { return "Report Manager"; }
  static const char* dataRepositoryManagerName() { return "Data Repository Manager"; }
  static const char* fileSystemAgentName() { return "File System Agent"; }
  static const char* exchangeAgentName() { return "Exchange Agent"; }
  static const char* NASAgentName() { return "NAS Agent"; }
  static const char* SQLAgentName() { return "SQL Agent"; }
};

/// A piece of storage; otherwise the same as SoftwareAdvisorySource.
class KDX_EXPORT StorageAdvisorySource : public AdvisorySource<StorageAdvisorySource> {
 public:
  /// Returns the first RDN of every such name.
  static const char* root() { return "Storage"; }

  /// Returns whether the first RDN of `name` is the root, its case included. An empty name has none.
  static bool isStorageAdvisorySource(const CBasicX500Name& name);
};

#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

/// Returns whether `name` is an advisory source of either kind.
KDX_EXPORT bool isDVMAdvisorySource(const CBasicX500Name& name);

/// Sets `dn` to the DN of "Storage" with `rdns` below it, each escaped as `addRDN` does. If `rdns` is empty, sets `dn`
/// to the empty text, not to the root. Always returns true. An RDN that isn't UTF-8 becomes an empty RDN.
KDX_EXPORT bool emClientCreateStorageAdvisorySourceA(const std::vector<string>& rdns, string& dn);
/// The same in UTF-16.
KDX_EXPORT bool emClientCreateStorageAdvisorySourceW(const std::vector<wstring>& rdns, wstring& dn);

/// Sets `rdns` to the RDNs of a filer type below "Storage" and returns true: "NASNetApp" for 1, "NASEMC" and "Celerras"
/// for 2. For any other type clears `rdns`, logs a line of level 0 and returns false.
KDX_EXPORT bool advFilerTypeRDNs(int filerType, std::vector<wstring>& rdns);

/// Sets `rdn` to the RDN of a client: "orbitId:clientId", the client's id in decimal, not escaped. Throws JxException
/// and leaves `rdn` unchanged if `orbitId` is empty ("Undefined orbitId!"), otherwise if `clientId` is 0 ("Undefined
/// clientId!").
KDX_EXPORT void formatOrbitClientIdRDN(wstring& rdn, wstring orbitId, std::uint32_t clientId);

}  // namespace kdx

#endif  // KDXCOMMON_NAMES_ADVISORY_SOURCES_H_
