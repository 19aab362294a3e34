// The slow, obviously right twin of CBasicX500Name: splits a DN one character at a time. For tests and fuzz targets.

#ifndef KDXCOMMON_TESTING_REFERENCE_DN_H_
#define KDXCOMMON_TESTING_REFERENCE_DN_H_

#include <algorithm>
#include <cstddef>
#include <vector>

#include "kdxcommon/names/basic_x500_name.h"

namespace kdx::testing {

inline std::vector<wstring> splitDN(const wstring& dn) {
  std::vector<wstring> rdns(dn.empty() ? 0 : 1);
  wchar previous{0};
  for (const wchar unit : dn) {
    if (unit == wchar{';'} && previous != wchar{'\\'}) {
      rdns.emplace_back();
    } else {
      rdns.back() += unit;
    }
    previous = unit;
  }
  return rdns;
}

inline wstring joinRDNs(const std::vector<wstring>& rdns, std::size_t begin, std::size_t end) {
  wstring dn;
  for (std::size_t i = begin; i < end; ++i) {
    if (i != begin) dn += wchar{';'};
    dn += rdns[i];
  }
  return dn;
}

/// What a name that is set to `dn` answers differently from the twin; empty where nothing.
inline string findDisagreement(const wstring& dn) {
  const std::vector<wstring> rdns = splitDN(dn);
  const CBasicX500Name kept = [] {
    CBasicX500Name name;
    name.setDN("kept");
    return name;
  }();
  CBasicX500Name name;
  if (name.setDN(dn) == dn.empty() || name.wDN() != dn) return "setDN";
  if (name.depth() != std::min<std::size_t>(rdns.size(), 65535)) return "depth";
  if (name.isEmpty() != rdns.empty() || name.isRoot() != (rdns.size() == 1)) return "isEmpty, isRoot";

  CBasicX500Name root(kept);
  const bool hasRoot = !rdns.empty() && !rdns.front().empty();
  if (name.getRoot(root) != hasRoot || root.wDN() != (hasRoot ? rdns.front() : kept.wDN())) return "getRoot";

  CBasicX500Name parent(kept);
  bool isRootName = rdns.size() != 1;
  if (name.getParent(parent, isRootName) == rdns.empty() || isRootName != (rdns.size() == 1)) return "getParent";
  const bool hasParent = rdns.size() > 1;
  if (parent.wDN() != (hasParent ? joinRDNs(rdns, 0, rdns.size() - 1) : kept.wDN())) return "parent";
  if (name.isParent(parent) != (hasParent && !parent.isEmpty()) || parent.isParent(name)) return "isParent";

  for (std::size_t index = 0; index <= rdns.size() && index <= name.depth(); ++index) {
    CBasicX500Name sub(kept);
    wstring tail = joinRDNs(rdns, index, rdns.size());
    if (index == 0 && tail.starts_with(wchar{';'})) tail.erase(0, 1);
    if (name.getSubname(sub, static_cast<unsigned short>(index)) != (index < name.depth())) return "getSubname";
    if (sub.wDN() != (tail.empty() || index == name.depth() ? kept.wDN() : tail)) return "tail";
  }
  return {};
}

}  // namespace kdx::testing

#endif  // KDXCOMMON_TESTING_REFERENCE_DN_H_
