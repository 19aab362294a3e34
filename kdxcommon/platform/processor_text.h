// Internal to the library: a table of processors, and the text for a row of it. Each operation that describes the
// processor has its own table.

#ifndef KDXCOMMON_PLATFORM_PROCESSOR_TEXT_H_
#define KDXCOMMON_PLATFORM_PROCESSOR_TEXT_H_

#include <cstdint>
#include <span>

#include "kdxcommon/base/string_types.h"
#include "kdxcommon/os/operating_system.h"
#include "kdxcommon/platform/expected_fact.h"

namespace kdx {

/// The details after the text of a row.
enum class ProcessorDetail {
  kNone,
  kLevel,               ///< " 6"
  kLevelModelStepping,  ///< " 6 Model 15 Stepping 11"
};

struct ProcessorRow {
  ExpectedFact architecture = kAny;
  std::uint32_t leastMajor = 0;  ///< the lowest matching major version of the system
  ExpectedFact type = kAny;
  const char* text;
  ProcessorDetail detail = ProcessorDetail::kNone;
  bool counted = false;  ///< append the number of processors if there are several: ": CPUs 2"
};

/// Returns the text of the first row that matches the processor; the last of `rows` must match every processor.
string processorText(std::span<const ProcessorRow> rows, std::uint32_t majorVersion, const os::SYSTEM_INFO& processor);

}  // namespace kdx

#endif  // KDXCOMMON_PLATFORM_PROCESSOR_TEXT_H_
