// Internal to the library: copies a text of the site into a caller's buffer.

#ifndef KDXCOMMON_INHOUSE_COPY_TEXT_H_
#define KDXCOMMON_INHOUSE_COPY_TEXT_H_

#include <cstddef>
#include <cstring>
#include <optional>

#include "kdxcommon/base/string_types.h"

namespace kdx {

/// Copies `text`, NUL-terminated, into `buffer` of `size` bytes. Returns false and leaves `buffer` unchanged if there
/// is no text or it doesn't fit.
inline bool copyText(const std::optional<string>& text, char* buffer, std::size_t size) {
  if (!text || text->size() >= size) return false;
  std::memcpy(buffer, text->c_str(), text->size() + 1);
  return true;
}

}  // namespace kdx

#endif  // KDXCOMMON_INHOUSE_COPY_TEXT_H_
