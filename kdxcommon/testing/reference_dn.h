// The slow, obviously right twin of CBasicX500Name: splits a DN one character at a time. For tests and fuzz targets.

#ifndef KDXCOMMON_TESTING_REFERENCE_DN_H_
#define KDXCOMMON_TESTING_REFERENCE_DN_H_

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

/// The question that a name set to `dn` answers differently from the twin; empty where there is none. Of tails from all
/// RDNs on, which cost the square of the length.
inline string findDisagreement(const wstring& dn) {
  const std::vector<wstring> rdns = splitDN(dn);
  CBasicX500Name name, root, parent;
  if (name.setDN(dn) == dn.empty() || name.wDN() != dn) return "setDN";
  if (name.depth() != rdns.size()) return "depth";
  if (name.isEmpty() != dn.empty() || name.isRoot() != (rdns.size() == 1)) return "isEmpty, isRoot";

  const wstring rootDN = dn.empty() ? dn : rdns.front();
  if (name.getRoot(root) == rootDN.empty() || root.wDN() != rootDN) return "getRoot";

  bool isRootName = !name.isRoot();
  if (name.getParent(parent, isRootName) == dn.empty() || isRootName != name.isRoot()) return "getParent";
  const wstring parentDN = rdns.size() > 1 ? dn.substr(0, dn.size() - rdns.back().size() - 1) : wstring();
  if (parent.wDN() != parentDN) return "parent";
  if (name.isParent(parent) == parentDN.empty() || parent.isParent(name)) return "isParent";

  wstring tail = dn;
  for (std::size_t index = 0; index != rdns.size(); tail.erase(0, rdns[index++].size() + 1)) {
    CBasicX500Name sub;
    if (!name.getSubname(sub, static_cast<unsigned short>(index))) return "getSubname";
    const bool dropsFirst = index == 0 && tail.front() == wchar{';'};
    if (sub.wDN() != (dropsFirst ? tail.substr(1) : tail)) return "tail";
  }
  return name.getSubname(root, name.depth()) ? "getSubname below the leaf" : "";
}

}  // namespace kdx::testing

#endif  // KDXCOMMON_TESTING_REFERENCE_DN_H_
