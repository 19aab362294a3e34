// A clock and a local zone of the test's own, in place of the machine's.

#ifndef KDXCOMMON_TESTING_FAKE_ZONE_H_
#define KDXCOMMON_TESTING_FAKE_ZONE_H_

#include "kdxcommon/base/civil_date.h"
#include "kdxcommon/os/operating_system_wrapper.h"

namespace kdx::testing {

/// In force from construction to destruction. Daylight time, when it is in force, is so on every date.
class FakeZone : public os::OperatingSystemWrapper {
 public:
  explicit FakeZone(std::int32_t bias, std::uint32_t inForce = os::kTimeZoneIdStandard)
      : bias_(bias), inForce_(inForce) {}

  void setNow(std::int64_t seconds) { now_ = seconds; }

  std::int64_t _time64(std::int64_t*) override { return now_; }
  std::uint32_t GetTimeZoneInformation(os::TIME_ZONE_INFORMATION& zone) override {
    zone.Bias = bias_;
    zone.DaylightBias = kDaylightBias;
    return inForce_;
  }
  std::int64_t _mktime64(const os::BrokenDownTime& local) override {
    const std::int64_t days =
        daysFromCivil(local.tm_year + 1900, static_cast<std::uint32_t>(local.tm_mon + 1), local.tm_mday);
    const std::int64_t seconds =
        days * kSecondsPerDay + local.tm_hour * 3600 + (local.tm_min + bias_) * 60 + local.tm_sec;
    return seconds >= 0 && seconds <= os::kLastConvertibleSecond ? seconds : -1;
  }
  bool _localtime64(std::int64_t seconds, os::BrokenDownTime& local) override {
    const std::int32_t daylightBias = inForce_ == os::kTimeZoneIdDaylight ? kDaylightBias : 0;
    return _gmtime64(seconds - (bias_ + daylightBias) * 60, local);
  }

 private:
  static constexpr std::int32_t kDaylightBias = -60;

  const std::int32_t bias_;  // minutes, positive west of Greenwich
  const std::uint32_t inForce_;
  std::int64_t now_ = 1281021492;  // 2010-08-05 15:18:12 UTC
  os::ScopedOperatingSystem scope_{*this};
};

}  // namespace kdx::testing

#endif  // KDXCOMMON_TESTING_FAKE_ZONE_H_
