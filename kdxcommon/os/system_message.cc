#include "kdxcommon/os/system_message.h"

#include <memory>

#include "kdxcommon/os/operating_system.h"

namespace kdx::os {

std::optional<string> systemMessage(std::uint32_t code) {
  OperatingSystem& system = OperatingSystem::current();
  char* text = nullptr;
  if (system.FormatMessageA(kFormatMessageAllocateIgnoreInsertsFromSystem, nullptr, code, 0, &text, 0) == 0) {
    return std::nullopt;
  }
  const auto release = [&system](char* memory) { system.LocalFree(memory); };
  const std::unique_ptr<char, decltype(release)> buffer(text, release);
  return buffer ? buffer.get() : "";
}

}  // namespace kdx::os
