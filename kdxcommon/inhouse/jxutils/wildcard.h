// Wildcard tests names against a pattern in which `*` matches any run of bytes and every other byte matches itself. The
// whole name must match. Case counts, on every system.
//
//   kdx::Wildcard pattern("KDXSQLDump_SC_7_JOB_*_*.txt");
//   pattern.matches("KDXSQLDump_SC_7_JOB_3456_ITR_2.txt");   // true
//
// Thread safety: that of std::string; any number of threads may match against one object. The constructor may throw
// std::bad_alloc; matching neither throws nor allocates.

#ifndef KDXCOMMON_INHOUSE_JXUTILS_WILDCARD_H_
#define KDXCOMMON_INHOUSE_JXUTILS_WILDCARD_H_

#include <vector>

#include "kdxcommon/base/export.h"
#include "kdxcommon/base/string_types.h"

namespace kdx {

/// A compiled pattern. A value type.
class KDX_EXPORT Wildcard {
 public:
  /// Matches only the empty name.
  Wildcard() = default;

  /// Compiles `pattern`. Several stars in a row count as one. Every pattern is valid; there is no escape for a literal
  /// star.
  explicit Wildcard(string_view pattern);

  /// Returns whether all of `name` matches. The pieces between stars are searched from left to right without
  /// backtracking, so the cost doesn't multiply with the number of stars. A name with another beginning or end is
  /// rejected first.
  bool matches(string_view name) const;

 private:
  string head_;                 // before the first star
  std::vector<string> middle_;  // between stars, in order, none empty
  string tail_;                 // after the last star
  bool hasStar_ = false;
};

}  // namespace kdx

#endif  // KDXCOMMON_INHOUSE_JXUTILS_WILDCARD_H_
