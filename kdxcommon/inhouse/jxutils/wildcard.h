// Wildcard: tests names against a pattern in which `*` is any run of bytes and every other byte is itself. The whole
// name must match, case and all, on every system.
//
//   kdx::Wildcard pattern("KDXSQLDump_SC_7_JOB_*_*.txt");
//   pattern.matches("KDXSQLDump_SC_7_JOB_3456_ITR_2.txt");   // true
//
// Thread rule: as std::string; any number of threads may match with one object. Failure rule: making one may throw what
// an allocation throws, matching neither fails nor allocates.

#ifndef KDXCOMMON_INHOUSE_JXUTILS_WILDCARD_H_
#define KDXCOMMON_INHOUSE_JXUTILS_WILDCARD_H_

#include <vector>

#include "kdxcommon/base/export.h"
#include "kdxcommon/base/string_types.h"

namespace kdx {

/// A pattern, taken apart once. A value; nothing throws but an allocation.
class KDX_EXPORT Wildcard {
 public:
  /// Matches the empty name alone.
  Wildcard() = default;

  /// Takes `pattern` apart once, for all names to come. Several stars in a row are one. Every pattern is sound: there
  /// is no way to write a star that stands for itself.
  explicit Wildcard(string_view pattern);

  /// Whether the whole of `name` matches. It looks for the pieces between stars from left to right and never goes back,
  /// so more stars don't multiply the work. A name that differs in its beginning or end costs next to nothing.
  bool matches(string_view name) const;

 private:
  string head_;                 // before the first star: how a name begins
  std::vector<string> middle_;  // between stars, in order, none of them empty
  string tail_;                 // behind the last star: how a name ends
  bool hasStar_ = false;
};

}  // namespace kdx

#endif  // KDXCOMMON_INHOUSE_JXUTILS_WILDCARD_H_
