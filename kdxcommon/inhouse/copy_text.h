// Internal to the library: how the in-house functions hand a text of the site to a caller's buffer.

#ifndef KDXCOMMON_INHOUSE_COPY_TEXT_H_
#define KDXCOMMON_INHOUSE_COPY_TEXT_H_

#include <cstddef>
#include <cstring>
#include <optional>

#include "kdxcommon/base/string_types.h"

namespace kdx {

/// Whether there is a text and it fits into `buffer` of `size` bytes with its zero; else the buffer stays.
inline bool copyText(const std::optional<string>& text, char* buffer, std::size_t size) {
  if (!text || text->size() >= size) return false;
  std::memcpy(buffer, text->c_str(), text->size() + 1);
  return true;
}

}  // namespace kdx

#endif  // KDXCOMMON_INHOUSE_COPY_TEXT_H_
