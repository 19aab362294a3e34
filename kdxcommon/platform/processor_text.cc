#include "kdxcommon/platform/processor_text.h"

#include <algorithm>
#include <string>

namespace kdx {
string processorText(std::span<const ProcessorRow> rows, std::uint32_t majorVersion, const os::SYSTEM_INFO& processor) {
  const ProcessorRow& row = *std::find_if(rows.begin(), rows.end(), [&](const ProcessorRow& candidate) {
    return fits(candidate.architecture, processor.wProcessorArchitecture) && majorVersion >= candidate.leastMajor &&
           fits(candidate.type, processor.dwProcessorType);
  });
  string text = row.text;
  if (row.detail != ProcessorDetail::kNone) text += ' ' + std::to_string(processor.wProcessorLevel);
  if (row.detail == ProcessorDetail::kLevelModelStepping) {
    text += " Model " + std::to_string(processor.wProcessorRevision >> 8) + " Stepping " +
            std::to_string(processor.wProcessorRevision & 0xFF);
  }
  if (row.counted && processor.dwNumberOfProcessors > 1) {
    text += ": CPUs " + std::to_string(static_cast<std::int32_t>(processor.dwNumberOfProcessors));
  }
  return text;
}

}  // namespace kdx
