// CBasicX500Name is a hierarchical name: a path of texts, the relative distinguished names (RDNs), root first, stored
// as one text, the distinguished name (DN).
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
// The RDNs are joined by ';'. A ';' separates unless the character directly before it is a backslash, whether or not
// that backslash is escaped itself. `addRDN` escapes each ';' and each backslash of its text with a backslash; `setDN`
// expects a DN that is already escaped; no function removes escapes, so all results contain them. RDNs may be empty
// ("a;;b" has three) unless the name refuses that (`disableEmptyRDN`). The empty DN has no RDN. A DN is stored and
// scanned whatever the number of its RDNs, but a depth of more than 65 535 is returned as 65 535.
//
// Thread safety: several threads may call one name, which locks itself for each call that reads or changes its text; a
// text that it returns is one that it held as a whole. A depth that has been counted is read without the lock. Not
// locked, and so the caller's responsibility, are copying, assignment from or to a name, use as the `parent` of
// `getParent` or the `name` of `createBasicX500NameFromDN`, and the flag for empty RDNs. `getRoot` and `getSubname` set
// their target while this name is locked, so two threads must not do that with two names in opposite directions.
//
// Failures are reported by bool results; nothing is logged. Throws only std::bad_alloc, and what an override of `setDN`
// throws. A text that isn't UTF-8 is read as an empty one, and a DN that isn't UTF-16 is returned as empty in UTF-8.

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

#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"  // a name is never deleted through its base
#endif

/// One name, with its own lock.
class KDX_EXPORT CBasicX500Name {
 public:
  /// Creates an empty name that accepts empty RDNs.
  CBasicX500Name();
  /// Copies the content of `other`, including its flag; the new name has a lock of its own. Neither name is locked.
  CBasicX500Name(const CBasicX500Name& other);
  /// Copies the content of `other`, including its flag. Neither name is locked, and no override of `setDN` is called.
  CBasicX500Name& operator=(const CBasicX500Name& other);
  /// Not virtual: a name must not be deleted through its base.
  ~CBasicX500Name();

  // A derived class may refuse DNs by its own `setDN`. These bypass it: construction, copying, assignment, `addRDN`,
  // `getParent` and `createBasicX500NameFromDN`.

  /// Reads `dn` as UTF-8 and calls the virtual `wstring` form.
  virtual bool setDN(const string& dn);
  /// Replaces the whole DN. Returns false and leaves the name unchanged if `dn` is empty, or if it has an empty RDN and
  /// the name refuses these. This check uses the raw text: a ';' at either end or next to another one, escaped or not.
  virtual bool setDN(const wstring& dn);

  /// Appends one RDN at the leaf end: `rdn` with its ';' and backslashes escaped. Returns false and leaves the name
  /// unchanged if `rdn` is empty and the name refuses that. An empty RDN leaves an empty name empty.
  bool addRDN(const wstring& rdn);
  /// The same, with `rdn` read as UTF-8.
  bool addRDN(const string& rdn);

  /// Makes `name` equal to a new name set to `dn`; the flag, too, is that of a new name. Returns false and leaves
  /// `name` unchanged if `dn` is empty. `name` isn't locked, and no override of its `setDN` is called.
  static bool createBasicX500NameFromDN(CBasicX500Name& name, wstring dn);
  /// The same, with `dn` read as UTF-8.
  static bool createBasicX500NameFromDN(CBasicX500Name& name, string dn);

  /// Sets `out` to the DN.
  void getDN(wstring& out) const;
  /// Sets `out` to the DN in UTF-8, up to its first NUL; empty if the DN isn't UTF-16.
  void getDN(string& out) const;
  wstring wDN() const;  ///< the DN
  string aDN() const;   ///< the DN as set by `getDN(string&)`

  /// Returns the number of RDNs, or 65 535 if there are more. Counted once for each DN; later calls return the stored
  /// number without taking the lock.
  unsigned short depth() const;
  bool isEmpty() const;  ///< whether there is no RDN
  bool isRoot() const;   ///< whether there is exactly one RDN

  /// Returns whether the DNs are equal, unit by unit: case and escapes count, flags don't.
  bool isEqual(const CBasicX500Name& other) const;
  /// Returns whether `other` is the name directly above this one; false if either is empty.
  bool isParent(const CBasicX500Name& other) const;

  /// Makes `parent` a new name of all RDNs but the last, with the flag of a new name, and returns true with
  /// `isRootName` false. `parent` becomes empty if nothing precedes the last separator, as in ";a"; it isn't locked,
  /// and no override of its `setDN` is called. For a name of one RDN, returns true with `isRootName` true and `parent`
  /// unchanged. For an empty name, returns false with `isRootName` false and `parent` unchanged.
  bool getParent(CBasicX500Name& parent, bool& isRootName) const;

  /// Sets `root` to the first RDN by its `setDN` and returns that call's result: false for an empty RDN, as in ";a".
  /// Returns false with `root` unchanged for an empty name.
  bool getRoot(CBasicX500Name& root) const;

  /// Sets `sub` by its `setDN` to all RDNs from `index` on, the root being number 0. An empty first RDN of the whole
  /// name is dropped with its separator: 0 on ";a" yields "a". Returns false with `sub` unchanged if `index` isn't
  /// below `depth()`; otherwise true, even if that `setDN` refused the text (as it does an empty one).
  bool getSubname(CBasicX500Name& sub, unsigned short index) const;

  /// Writes "DN [", the DN in UTF-8, "], depth [", the depth, "]" to `out`, without a line end. Returns `out`.
  ostrstream& traceTo(ostrstream& out) const;

  /// Set or return whether later calls accept empty RDNs. The current DN is unchanged.
  void enableEmptyRDN();
  void disableEmptyRDN();
  bool isEmptyRDNEnabled() const;

 protected:
  /// Creates an empty name, then calls `setDN(dn)` of this class; `isEmpty()` shows whether that failed.
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

#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

}  // namespace kdx

#endif  // KDXCOMMON_NAMES_BASIC_X500_NAME_H_
