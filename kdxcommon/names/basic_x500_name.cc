#include "kdxcommon/names/basic_x500_name.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "kdxcommon/base/unit_search.h"
#include "kdxcommon/names/dn_scanner.h"
#include "kdxcommon/strings/wide_string.h"

namespace kdx {
namespace {

constexpr std::uint32_t kEmptyRdnEnabled = 1;
// Sufficient for a depth that is written under the lock and read without it: no other read depends on it.
constexpr auto kRelaxed = std::memory_order_relaxed;
// Counting the RDNs of a DN this short costs less than the lock that `depth()` would count them under.
constexpr std::size_t kCountedAtOnce = 64;
constexpr std::size_t kMaximumDepth = std::numeric_limits<std::uint16_t>::max();

std::uint16_t depthOf(wstring_view dn) {
  if (dn.empty()) return 0;
  return static_cast<std::uint16_t>(std::min(countSeparators(dn) + 1, kMaximumDepth));
}

}  // namespace

CBasicX500Name::CBasicX500Name() : nameFlags(kEmptyRdnEnabled) {}

CBasicX500Name::CBasicX500Name(const wstring& dn) : CBasicX500Name() {
  CBasicX500Name::setDN(dn);
}

CBasicX500Name::CBasicX500Name(const string& dn) : CBasicX500Name(CWideString(dn).wString()) {}

CBasicX500Name::CBasicX500Name(const CBasicX500Name& other) : CBasicX500Name() {
  *this = other;
}

CBasicX500Name& CBasicX500Name::operator=(const CBasicX500Name& other) KDX_NO_THREAD_SAFETY_ANALYSIS {
  dnValue = other.dnValue;
  depthValue.store(other.depthValue.load(kRelaxed), kRelaxed);
  nameFlags = other.nameFlags;
  return *this;
}

CBasicX500Name::~CBasicX500Name() = default;

// Both have the effect of assignment from a new name set to `dn`, or to its first `length` units, without the copies.

void CBasicX500Name::becomeNew(wstring&& dn) KDX_NO_THREAD_SAFETY_ANALYSIS {
  dnValue = std::move(dn);
  depthValue.store(0, kRelaxed);
  nameFlags = kEmptyRdnEnabled;
}

void CBasicX500Name::becomeNew(const wstring& dn, std::size_t length) KDX_NO_THREAD_SAFETY_ANALYSIS {
  if (&dn == &dnValue) {  // a walk upward in one name
    dnValue.resize(length);
  } else {
    dnValue.assign(dn, 0, length);
  }
  depthValue.store(0, kRelaxed);
  nameFlags = kEmptyRdnEnabled;
}

bool CBasicX500Name::validateDN(const wstring& dn, bool emptyRDNEnabled) {
  if (dn.empty()) return false;
  if (emptyRDNEnabled) return true;
  const auto bothSeparators = [](wchar left, wchar right) { return left == kDnSeparator && right == kDnSeparator; };
  return dn.front() != kDnSeparator && dn.back() != kDnSeparator &&
         std::adjacent_find(dn.begin(), dn.end(), bothSeparators) == dn.end();
}

bool CBasicX500Name::setDN(const string& dn) {
  return setDN(CWideString(dn).wString());
}

bool CBasicX500Name::setDN(const wstring& dn) {
  if (!validateDN(dn, isEmptyRDNEnabled())) return false;
  const std::uint16_t depth = dn.size() <= kCountedAtOnce ? depthOf(dn) : 0;
  const ZqCriticalSectionLock lock(&dnLock);
  dnValue = dn;
  depthValue.store(depth, kRelaxed);
  return true;
}

void CBasicX500Name::bsEncode(const wstring& in, wstring& out) {
  out.clear();
  out.reserve(in.size());
  for (const wchar unit : in) {
    if (unit == kDnSeparator || unit == kDnEscape) out += kDnEscape;
    out += unit;
  }
}

bool CBasicX500Name::addRDN(const wstring& rdn) {
  if (rdn.empty() && !isEmptyRDNEnabled()) return false;
  wstring addition;
  bsEncode(rdn, addition);
  const ZqCriticalSectionLock lock(&dnLock);
  if (!dnValue.empty()) addition.insert(addition.begin(), kDnSeparator);
  dnValue += addition;
  depthValue.store(0, kRelaxed);
  return true;
}

bool CBasicX500Name::addRDN(const string& rdn) {
  return addRDN(CWideString(rdn).wString());
}

bool CBasicX500Name::createBasicX500NameFromDN(CBasicX500Name& name, wstring dn) {
  if (!validateDN(dn, true)) return false;
  name.becomeNew(std::move(dn));
  return true;
}

bool CBasicX500Name::createBasicX500NameFromDN(CBasicX500Name& name, string dn) {
  return createBasicX500NameFromDN(name, CWideString(std::move(dn)).wString());
}

void CBasicX500Name::getDN(wstring& out) const {
  const ZqCriticalSectionLock lock(&dnLock);
  out = dnValue;
}

void CBasicX500Name::getDN(string& out) const {
  const ZqCriticalSectionLock lock(&dnLock);
  out = CWideString(dnValue).aString();
}

wstring CBasicX500Name::wDN() const {
  wstring dn;
  getDN(dn);
  return dn;
}

string CBasicX500Name::aDN() const {
  string dn;
  getDN(dn);
  return dn;
}

unsigned short CBasicX500Name::depth() const {
  std::uint16_t depth = depthValue.load(kRelaxed);
  if (depth != 0) return depth;
  const ZqCriticalSectionLock lock(&dnLock);
  depth = depthOf(dnValue);
  depthValue.store(depth, kRelaxed);
  return depth;
}

bool CBasicX500Name::isEmpty() const {
  return depth() == 0;
}

bool CBasicX500Name::isRoot() const {
  return depth() == 1;
}

// The other name's DN is copied, so that the two are never locked at once.
bool CBasicX500Name::isEqual(const CBasicX500Name& other) const {
  const wstring otherDN = other.wDN();
  const ZqCriticalSectionLock lock(&dnLock);
  return equalUnits(dnValue, otherDN);
}

bool CBasicX500Name::isParent(const CBasicX500Name& other) const {
  const wstring otherDN = other.wDN();
  if (otherDN.empty()) return false;
  const ZqCriticalSectionLock lock(&dnLock);
  const std::size_t end = findLastSeparator(dnValue);
  return end != wstring_view::npos && equalUnits(wstring_view(dnValue).substr(0, end), otherDN);
}

bool CBasicX500Name::getParent(CBasicX500Name& parent, bool& isRootName) const {
  isRootName = false;
  const ZqCriticalSectionLock lock(&dnLock);
  if (dnValue.empty()) return false;
  const std::size_t end = findLastSeparator(dnValue);
  isRootName = end == wstring_view::npos;
  if (!isRootName) parent.becomeNew(dnValue, end);
  return true;
}

bool CBasicX500Name::getRoot(CBasicX500Name& root) const {
  const ZqCriticalSectionLock lock(&dnLock);
  if (dnValue.empty()) return false;
  const std::size_t end = findSeparator(dnValue, 1);
  return end == wstring_view::npos ? root.setDN(dnValue) : root.setDN(dnValue.substr(0, end));
}

bool CBasicX500Name::getSubname(CBasicX500Name& sub, unsigned short index) const {
  const ZqCriticalSectionLock lock(&dnLock);
  if (index >= depth()) return false;
  if (index == 0 && dnValue.front() != kDnSeparator) {
    sub.setDN(dnValue);
  } else {
    sub.setDN(dnValue.substr(index == 0 ? 1 : findSeparator(dnValue, index) + 1));
  }
  return true;
}

ostrstream& CBasicX500Name::traceTo(ostrstream& out) const {
  const ZqCriticalSectionLock lock(&dnLock);
  out << "DN [" << aDN() << "], depth [" << std::to_string(depth()) << ']';
  return out;
}

void CBasicX500Name::enableEmptyRDN() {
  setFlags(true, kEmptyRdnEnabled);
}

void CBasicX500Name::disableEmptyRDN() {
  setFlags(false, kEmptyRdnEnabled);
}

bool CBasicX500Name::isEmptyRDNEnabled() const {
  return isFlags(kEmptyRdnEnabled);
}

void CBasicX500Name::setFlags(bool on, std::uint32_t mask) {
  nameFlags = on ? nameFlags | mask : nameFlags & ~mask;
}

bool CBasicX500Name::isFlags(std::uint32_t mask) const {
  return (nameFlags & mask) != 0;
}

}  // namespace kdx
