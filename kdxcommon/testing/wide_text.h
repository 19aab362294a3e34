// Wide texts for tests: the same literal serves every system.

#ifndef KDXCOMMON_TESTING_WIDE_TEXT_H_
#define KDXCOMMON_TESTING_WIDE_TEXT_H_

#include <string_view>

#include "kdxcommon/base/string_types.h"

namespace kdx::testing {

inline wstring wide(std::u16string_view text) {
  wstring units;
  for (const char16_t unit : text) units += static_cast<wchar>(unit);
  return units;
}

}  // namespace kdx::testing

#endif  // KDXCOMMON_TESTING_WIDE_TEXT_H_
