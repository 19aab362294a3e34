// Internal: text of any bytes as valid UTF-8 on one line. Characters that could break a line, or misrepresent it to its
// reader, are escaped: line_sink.h lists them.

#ifndef KDXCOMMON_SINKS_ESCAPED_TEXT_H_
#define KDXCOMMON_SINKS_ESCAPED_TEXT_H_

#include <cstdint>

#include "kdxcommon/base/scratch_text.h"
#include "kdxcommon/base/string_types.h"

namespace kdx {

/// How a format writes what can't stand in a line as it is.
struct EscapeStyle {
  void (*appendCharacter)(std::uint32_t character, ScratchText& line);
  void (*appendInvalid)(unsigned char byte, ScratchText& line);  ///< a byte that isn't UTF-8
};

/// Appends `text` to `line`. Throws only std::bad_alloc. Thread-safe for different lines.
void appendEscaped(string_view text, const EscapeStyle& style, ScratchText& line);

}  // namespace kdx

#endif  // KDXCOMMON_SINKS_ESCAPED_TEXT_H_
