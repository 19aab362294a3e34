// The slow, obviously right twin of CBasicX500Name: splits a DN one character at a time.

#ifndef FUZZ_REFERENCE_DN_H_
#define FUZZ_REFERENCE_DN_H_

#include <cstddef>
#include <vector>

#include "kdxcommon/names/basic_x500_name.h"
#include "kdxcommon/strings/wide_string.h"

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
  parent.disableEmptyRDN();
  if (name.setDN(dn) == dn.empty() || name.wDN() != dn) return "setDN";
  if (name.depth() != rdns.size()) return "depth";
  if (name.isEmpty() != dn.empty() || name.isRoot() != (rdns.size() == 1)) return "isEmpty, isRoot";

  const wstring rootDN = dn.empty() ? dn : rdns.front();
  if (name.getRoot(root) == rootDN.empty() || root.wDN() != rootDN) return "getRoot";

  bool isRootName = !name.isRoot();
  if (name.getParent(parent, isRootName) == dn.empty() || isRootName != name.isRoot()) return "getParent";
  const wstring parentDN = rdns.size() > 1 ? dn.substr(0, dn.size() - rdns.back().size() - 1) : wstring();
  if (parent.wDN() != parentDN || parent.isEmptyRDNEnabled() != (rdns.size() > 1)) return "parent";
  if (name.isParent(parent) == parentDN.empty() || parent.isParent(name)) return "isParent";

  CBasicX500Name itself(name);
  itself.getParent(itself, isRootName);
  const wstring aboveDN = isRootName ? dn : parentDN;
  if (itself.wDN() != aboveDN || itself.depth() != splitDN(aboveDN).size()) return "getParent of itself";

  wstring tail = dn;
  for (std::size_t index = 0; index != rdns.size(); tail.erase(0, rdns[index++].size() + 1)) {
    CBasicX500Name sub;
    if (!name.getSubname(sub, static_cast<unsigned short>(index))) return "getSubname";
    const bool dropsFirst = index == 0 && tail.front() == wchar{';'};
    if (sub.wDN() != (dropsFirst ? tail.substr(1) : tail)) return "tail";
  }
  return name.getSubname(root, name.depth()) ? "getSubname below the leaf" : "";
}

/// The change that a name does differently from the twin: `rdn` appended to `dn`, or `dn` set where empty RDNs are
/// refused; empty if there is none.
inline string findWrongChange(const wstring& dn, const wstring& rdn) {
  constexpr wchar kSeparator{';'}, kEscape{'\\'};
  wstring longer = dn;
  if (!dn.empty()) longer += kSeparator;
  for (const wchar unit : rdn) {
    if (unit == kSeparator || unit == kEscape) longer += kEscape;
    longer += unit;
  }
  CBasicX500Name name;
  name.setDN(dn);
  if (name.depth() != splitDN(dn).size() || !name.addRDN(rdn) || name.wDN() != longer) return "addRDN";
  if (name.depth() != splitDN(longer).size()) return "depth after addRDN";
  if (name.aDN() != CWideString(longer).aString()) return "aDN";

  bool refused = dn.empty() || dn.front() == kSeparator || dn.back() == kSeparator;
  for (std::size_t i = 1; i < dn.size(); ++i) refused |= dn[i - 1] == kSeparator && dn[i] == kSeparator;
  name.disableEmptyRDN();
  if (name.setDN(dn) == refused || name.wDN() != (refused ? longer : dn)) return "setDN without empty RDNs";
  if (name.depth() != splitDN(name.wDN()).size()) return "depth after setDN";
  return name.addRDN(rdn) == rdn.empty() ? "addRDN without empty RDNs" : "";
}

}  // namespace kdx::testing

#endif  // FUZZ_REFERENCE_DN_H_
