#include "kdxcommon/os/operating_system.h"

#include <atomic>

#include "kdxcommon/os/native_operating_system.h"

namespace kdx::os {
namespace {

constinit std::atomic<OperatingSystem*> replacement{nullptr};  // null: the native one

// Created when the library loads: a child of a fork would wait forever for a construction under way on another thread.
[[maybe_unused]] const OperatingSystem& madeAtLoading = nativeOperatingSystem();

}  // namespace

FileStream::~FileStream() = default;

SystemLog::~SystemLog() = default;

DirectoryStream::~DirectoryStream() = default;

OperatingSystem::~OperatingSystem() = default;

OperatingSystem& OperatingSystem::current() {
  OperatingSystem* system = replacement.load(std::memory_order_acquire);
  return system ? *system : nativeOperatingSystem();
}

ScopedOperatingSystem::ScopedOperatingSystem(OperatingSystem& system)
    : previous_(replacement.exchange(&system, std::memory_order_acq_rel)) {}

ScopedOperatingSystem::~ScopedOperatingSystem() {
  replacement.store(previous_, std::memory_order_release);
}

}  // namespace kdx::os
