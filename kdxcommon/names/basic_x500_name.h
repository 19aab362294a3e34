// CBasicX500Name is a hierarchical name: a path of texts, the relative distinguished names (RDNs), root first, held as
// one text, the distinguished name (DN).
//
//   kdx::CBasicX500Name agent;
//   agent.setDN("Software;Job Manager");
//   agent.addRDN("node;1");                 // Software;Job Manager;node\;1
//   agent.depth();                          // 3
//
//   kdx::CBasicX500Name parent;
//   bool isRootName = false;
//   agent.getParent(parent, isRootName);    // Software;Job Manager
//   agent.isParent(parent);                 // true: the question runs upward
//
// The RDNs are joined by ';'. A ';' separates unless the character directly before it is a backslash, be that one
// escaped or not. `addRDN` escapes each ';' and each backslash of its text with a backslash; `setDN` takes a DN that is
// escaped already; nothing takes escapes out, so all that a name gives back holds them. RDNs may be empty ("a;;b" has
// three) unless the name was told to refuse that. The empty DN has no RDN. No DN of more than 65 535 RDNs has a depth
// of its own: it is held and scanned as any other, and its depth is told as 65 535.
//
// Thread safety: several threads may call one name, which locks itself for each call that reads or changes its text; a
// text that it returns is one that it held as a whole. A depth that has been counted is read without the lock. Not
// locked, and so the caller's care, are copying, assignment from or to a name, being the `parent` of `getParent` or the
// `name` of `createBasicX500NameFromDN`, and the flag for empty RDNs. `getRoot` and `getSubname` set their target while
// this name is locked, so two threads mustn't do that with two names in opposite directions.
//
// Failure rule: bool results, nothing is logged, and only an allocation or an override of `setDN` throws. A text that
// isn't UTF-8 counts as an empty one, and a DN that isn't UTF-16 reads as empty in UTF-8.

#ifndef KDXCOMMON_NAMES_BASIC_X500_NAME_H_
#define KDXCOMMON_NAMES_BASIC_X500_NAME_H_

#include <atomic>
#include <cstddef>
#include <cstdint>

#include "kdxcommon/base/export.h"
#include "kdxcommon/base/string_types.h"
#include "kdxcommon/base/thread_annotations.h"
#include "kdxcommon/inhouse/zqbasiclib/critical_section.h"

namespace kdx {

/// One name, with its own lock.
class KDX_EXPORT CBasicX500Name {
 public:
  /// An empty name that takes empty RDNs.
  CBasicX500Name();
  /// A name with what `other` holds, its flag included, and a lock of its own. Neither is locked.
  CBasicX500Name(const CBasicX500Name& other);
  /// Takes over what `other` holds, its flag included. Neither is locked, and no override of `setDN` runs.
  CBasicX500Name& operator=(const CBasicX500Name& other);
  /// Not virtual: a name isn't deleted through its base.
  ~CBasicX500Name();

  // A derived class may refuse DNs by its own `setDN`. What then passes it by: construction, copying, assignment,
  // `addRDN`, `getParent` and `createBasicX500NameFromDN`.

  /// Reads `dn` as UTF-8 and makes the virtual call of the `wstring` form.
  virtual bool setDN(const string& dn);
  /// Replaces the whole DN. False, with the name as it was, where `dn` is empty, or has an empty RDN and the name
  /// refuses these. For that check the raw text counts: a ';' at either end or next to another one, escaped or not.
  virtual bool setDN(const wstring& dn);

  /// Appends one RDN at the leaf end, `rdn` with its ';' and backslashes escaped. False, with the name as it was, where
  /// `rdn` is empty and the name refuses that. An empty RDN leaves an empty name empty.
  bool addRDN(const wstring& rdn);
  /// The same, with `rdn` read as UTF-8.
  bool addRDN(const string& rdn);

  /// Makes `name` what a new name that was set to `dn` is: the flag is that of a new name too. False, with `name` as it
  /// was, where `dn` is empty. `name` isn't locked, and no override of its `setDN` runs.
  static bool createBasicX500NameFromDN(CBasicX500Name& name, wstring dn);
  /// The same, with `dn` read as UTF-8.
  static bool createBasicX500NameFromDN(CBasicX500Name& name, string dn);

  /// Sets `out` to the DN.
  void getDN(wstring& out) const;
  /// Sets `out` to the DN in UTF-8, up to its first NUL; empty where the DN isn't UTF-16.
  void getDN(string& out) const;
  wstring wDN() const;  ///< the DN
  string aDN() const;   ///< the DN as `getDN(string&)` gives it

  /// The number of RDNs; 65 535 where there are more. Counted once for each DN; later calls return the stored number
  /// without taking the lock.
  unsigned short depth() const;
  bool isEmpty() const;  ///< whether there is no RDN
  bool isRoot() const;   ///< whether there is exactly one RDN

  /// Whether the DNs are equal, unit by unit: no folding of case, escapes as they are written, flags aside.
  bool isEqual(const CBasicX500Name& other) const;
  /// Whether `other` is the name directly above this one. False where either is empty.
  bool isParent(const CBasicX500Name& other) const;

  /// Makes `parent` a new name of all RDNs but the last; its flag is that of a new name, it isn't locked, and no
  /// override of its `setDN` runs. It is empty where nothing stands before the last separator, as in ";a". True, with
  /// `isRootName` true and `parent` as it was, for a name of one RDN. False, with `isRootName` false and `parent` as it
  /// was, for an empty name.
  bool getParent(CBasicX500Name& parent, bool& isRootName) const;

  /// Sets `root` to the first RDN by its `setDN`, whose result it gives: false for an empty RDN, as in ";a". False,
  /// with `root` as it was, for an empty name.
  bool getRoot(CBasicX500Name& root) const;

  /// Sets `sub` by its `setDN` to all RDNs from `index` on, the root being number 0. An empty first RDN of the whole
  /// name goes with its separator: 0 on ";a" gives "a". False, with `sub` as it was, where `index` isn't below
  /// `depth()`; else true, even if that `setDN` refused the text (as it does an empty one).
  bool getSubname(CBasicX500Name& sub, unsigned short index) const;

  /// Writes "DN [", the DN in UTF-8, "], depth [", the depth, "]" to `out` and gives `out`: no line end.
  ostrstream& traceTo(ostrstream& out) const;

  // Whether later calls take empty RDNs. The DN that is held stays as it is.
  void enableEmptyRDN();
  void disableEmptyRDN();
  bool isEmptyRDNEnabled() const;

 protected:
  /// An empty name, then `setDN(dn)` of this class; what that returns shows in `isEmpty()`.
  explicit CBasicX500Name(const wstring& dn);
  /// The same, with `dn` read as UTF-8.
  explicit CBasicX500Name(const string& dn);

 private:
  static bool validateDN(const wstring& dn, bool emptyRDNEnabled);
  static void bsEncode(const wstring& in, wstring& out);
  void becomeNew(wstring&& dn);
  void becomeNew(const wstring& dn, std::size_t length);
  void setFlags(bool on, std::uint32_t mask);
  bool isFlags(std::uint32_t mask) const;

  wstring dnValue KDX_GUARDED_BY(dnLock);
  // The depth of `dnValue`; 0 if that is empty, or was not counted since it changed. Written under the lock.
  mutable std::atomic<std::uint16_t> depthValue = 0;
  mutable ZqCriticalSection dnLock;
  std::uint32_t nameFlags;
};

}  // namespace kdx

#endif  // KDXCOMMON_NAMES_BASIC_X500_NAME_H_
