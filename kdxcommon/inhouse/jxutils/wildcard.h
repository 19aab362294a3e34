// Wildcard: tests names against a pattern in which `*` is any run of bytes and every other byte is itself. The whole
// name must match, case and all, on every system.
//
//   kdx::Wildcard pattern("KDXSQLDump_SC_7_JOB_*_*.txt");
//   pattern.matches("KDXSQLDump_SC_7_JOB_3456_ITR_2.txt");   // true

#ifndef KDXCOMMON_INHOUSE_JXUTILS_WILDCARD_H_
#define KDXCOMMON_INHOUSE_JXUTILS_WILDCARD_H_

#include <vector>

#include "kdxcommon/base/export.h"
#include "kdxcommon/base/string_types.h"

namespace kdx {

class KDX_EXPORT Wildcard {
 public:
  /// Matches the empty name alone.
  Wildcard() = default;
  explicit Wildcard(string_view pattern);

  /// Reads `name` once from left to right: a name that differs early costs next to nothing.
  bool matches(string_view name) const;

 private:
  string head_;                 // before the first star: how a name begins
  std::vector<string> middle_;  // between stars, in order
  string tail_;                 // behind the last star: how a name ends
  bool hasStar_ = false;
};

}  // namespace kdx

#endif  // KDXCOMMON_INHOUSE_JXUTILS_WILDCARD_H_
