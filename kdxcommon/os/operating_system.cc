#include "kdxcommon/os/operating_system.h"

#include "kdxcommon/os/installed_system.h"
#include "kdxcommon/os/native_operating_system.h"

namespace kdx::os {

constinit std::atomic<OperatingSystem*> installed{nullptr};

namespace {

// Returns the object that another thread has installed meanwhile, otherwise the native one.
[[gnu::noinline]] OperatingSystem& installNative() {
  OperatingSystem& native = nativeOperatingSystem();
  OperatingSystem* other = nullptr;
  return installed.compare_exchange_strong(other, &native) ? native : *other;
}

// Created when the library loads: a child of a fork would wait forever for a construction under way on another thread.
[[maybe_unused]] const OperatingSystem& madeAtLoading = OperatingSystem::current();

}  // namespace

FileStream::~FileStream() = default;

SystemLog::~SystemLog() = default;

DirectoryStream::~DirectoryStream() = default;

OperatingSystem::~OperatingSystem() = default;

OperatingSystem& OperatingSystem::current() {
  OperatingSystem* const system = installed.load(std::memory_order_acquire);
  return system ? *system : installNative();
}

ScopedOperatingSystem::ScopedOperatingSystem(OperatingSystem& system)
    : previous_(installed.exchange(&system, std::memory_order_acq_rel)) {}

ScopedOperatingSystem::~ScopedOperatingSystem() {
  installed.store(previous_, std::memory_order_release);
}

}  // namespace kdx::os
