// Internal to the library: a table of processors, and the text that a row of it makes. Who asks has a table of his own.

#ifndef KDXCOMMON_PLATFORM_PROCESSOR_TEXT_H_
#define KDXCOMMON_PLATFORM_PROCESSOR_TEXT_H_

#include <cstdint>
#include <span>

#include "kdxcommon/base/string_types.h"
#include "kdxcommon/os/operating_system.h"

namespace kdx {

inline constexpr std::uint32_t kAnyProcessor = 0xFFFFFFFF;

/// What stands behind the text of a row.
enum class ProcessorDetail {
  kNone,
  kLevel,               ///< " 6"
  kLevelModelStepping,  ///< " 6 Model 15 Stepping 11"
};

struct ProcessorRow {
  std::uint32_t architecture;  ///< or kAnyProcessor
  std::uint32_t leastMajor;    ///< least major version of the system
  std::uint32_t type;          ///< or kAnyProcessor
  const char* text;
  ProcessorDetail detail = ProcessorDetail::kNone;
  bool counted = false;  ///< two processors and more are counted at the end: ": CPUs 2"
};

/// The text of the first row that the processor fits; `rows` must end with one that fits every processor.
string processorText(std::span<const ProcessorRow> rows, std::uint32_t majorVersion, const os::SYSTEM_INFO& processor);

}  // namespace kdx

#endif  // KDXCOMMON_PLATFORM_PROCESSOR_TEXT_H_
