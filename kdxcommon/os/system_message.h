// Internal to the library: the operating system's texts for its error numbers.

#ifndef KDXCOMMON_OS_SYSTEM_MESSAGE_H_
#define KDXCOMMON_OS_SYSTEM_MESSAGE_H_

#include <cstdint>
#include <optional>

#include "kdxcommon/base/string_types.h"

namespace kdx::os {

/// Returns the text for `code` from `FormatMessageA`, including the line break that some systems end it with, or
/// std::nullopt if the system has none.
std::optional<string> systemMessage(std::uint32_t code);

}  // namespace kdx::os

#endif  // KDXCOMMON_OS_SYSTEM_MESSAGE_H_
