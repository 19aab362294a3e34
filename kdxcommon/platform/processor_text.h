// Internal to the library: a table of processors, and the text that a row of it makes. Each operation that
// describes the processor has a table of its own.

#ifndef KDXCOMMON_PLATFORM_PROCESSOR_TEXT_H_
#define KDXCOMMON_PLATFORM_PROCESSOR_TEXT_H_

#include <cstdint>
#include <span>

#include "kdxcommon/base/string_types.h"
#include "kdxcommon/os/operating_system.h"
#include "kdxcommon/platform/expected_fact.h"

namespace kdx {

/// What stands behind the text of a row.
enum class ProcessorDetail {
  kNone,
  kLevel,               ///< " 6"
  kLevelModelStepping,  ///< " 6 Model 15 Stepping 11"
};

struct ProcessorRow {
  ExpectedFact architecture = kAny;
  std::uint32_t leastMajor = 0;  ///< least major version of the system
  ExpectedFact type = kAny;
  const char* text;
  ProcessorDetail detail = ProcessorDetail::kNone;
  bool counted = false;  ///< two processors and more are counted at the end: ": CPUs 2"
};

/// Returns the text of the first row that fits the processor; the last of `rows` must fit every processor.
string processorText(std::span<const ProcessorRow> rows, std::uint32_t majorVersion, const os::SYSTEM_INFO& processor);

}  // namespace kdx

#endif  // KDXCOMMON_PLATFORM_PROCESSOR_TEXT_H_
