// Internal: finds the separators of a distinguished name. Every question about a name's structure is answered by one of
// the two scanners here, the first from the root on, the second from the leaf back.
//
//   const std::size_t depth = scanSeparators(dn).count + 1;
//   const kdx::wstring_view root = dn.substr(0, scanSeparators(dn, 1).position);
//
// A ';' is a separator unless the unit directly before it is a backslash; whether that backslash is escaped itself
// makes no difference. Pure functions, callable from any thread at once; nothing throws.

#ifndef KDXCOMMON_NAMES_DN_SCANNER_H_
#define KDXCOMMON_NAMES_DN_SCANNER_H_

#include <cstddef>

#include "kdxcommon/base/string_types.h"

namespace kdx {

constexpr wchar kDnSeparator{';'};
constexpr wchar kDnEscape{'\\'};

/// What a scan from the root has seen.
struct SeparatorScan {
  std::size_t count;     ///< the separators passed, the one at `position` among them
  std::size_t position;  ///< where the scan stopped; wstring_view::npos where the text ended first
};

/// Scans `dn` from its start and stops at its `limit`-th separator, which is 1 or more. Without a limit all are
/// counted.
SeparatorScan scanSeparators(wstring_view dn, std::size_t limit = wstring_view::npos);

/// Scans `dn` back from its end: the position of the last separator, wstring_view::npos where there is none.
std::size_t findLastSeparator(wstring_view dn);

}  // namespace kdx

#endif  // KDXCOMMON_NAMES_DN_SCANNER_H_
