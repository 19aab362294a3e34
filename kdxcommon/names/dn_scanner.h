// Internal: finds the separators of a distinguished name. All functions that depend on a name's structure use these
// scanners.
//
//   const std::size_t depth = countSeparators(dn) + 1;
//   const kdx::wstring_view root = dn.substr(0, findSeparator(dn, 1));
//
// A ';' is a separator unless the unit directly before it is a backslash, whether or not that backslash is escaped
// itself. Thread safety: pure functions, thread-safe; they never throw.

#ifndef KDXCOMMON_NAMES_DN_SCANNER_H_
#define KDXCOMMON_NAMES_DN_SCANNER_H_

#include <cstddef>

#include "kdxcommon/base/string_types.h"

namespace kdx {

constexpr wchar kDnSeparator{';'};
constexpr wchar kDnEscape{'\\'};

/// Returns the number of separators in `dn`.
std::size_t countSeparators(wstring_view dn);

/// Returns the position of the `number`-th separator of `dn`, the first being number 1, or wstring_view::npos if there
/// are fewer.
std::size_t findSeparator(wstring_view dn, std::size_t number);

/// Returns the position of the last separator of `dn`, or wstring_view::npos if there is none.
std::size_t findLastSeparator(wstring_view dn);

}  // namespace kdx

#endif  // KDXCOMMON_NAMES_DN_SCANNER_H_
