// Another local zone for a scope, for tests of the POSIX side.

#ifndef KDXCOMMON_TESTING_SCOPED_TIME_ZONE_H_
#define KDXCOMMON_TESTING_SCOPED_TIME_ZONE_H_

#include <cstdlib>
#include <ctime>
#include <optional>
#include <string>

#include "kdxcommon/os/posix_time_zone.h"

namespace kdx::testing {

/// Sets TZ, has the C library and the library of ours read it at once, and gives the former zone back in the end. Only
/// while no other thread runs.
class ScopedTimeZone {
 public:
  explicit ScopedTimeZone(const std::string& name) {
    if (const char* former = std::getenv("TZ")) former_ = former;
    ::setenv("TZ", name.c_str(), 1);
    noticed();
  }
  ~ScopedTimeZone() {
    former_ ? ::setenv("TZ", former_->c_str(), 1) : ::unsetenv("TZ");
    noticed();
  }
  ScopedTimeZone(const ScopedTimeZone&) = delete;
  ScopedTimeZone& operator=(const ScopedTimeZone&) = delete;

 private:
  static void noticed() {
    ::tzset();
    os::lookForChangedZone();
  }

  std::optional<std::string> former_;
};

}  // namespace kdx::testing

#endif  // KDXCOMMON_TESTING_SCOPED_TIME_ZONE_H_
