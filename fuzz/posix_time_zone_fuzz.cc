// Real zones and zones of any rule: what a thread caches of a zone's history is what a search for each instant finds,
// local times are those of the C library, and an instant is found again from its fields.

#include <time.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <string>
#include <tuple>

#include "kdxcommon/os/posix_standard_time.h"
#include "kdxcommon/testing/scoped_time_zone.h"

namespace {

using namespace kdx::os;

void require(bool holds, const std::string& zone, std::int64_t instant) {
  if (holds) return;
  std::fprintf(stderr, "%s at %lld\n", zone.c_str(), static_cast<long long>(instant));
  std::abort();
}

// With changes of the standard time at many dates, and of its meaning.
constexpr const char* kZones[] = {"Europe/London", "Europe/Berlin", "Europe/Moscow", "Europe/Istanbul", "Europe/Lisbon",
                                  "Asia/Kolkata", "Asia/Kathmandu", "Asia/Pyongyang", "Asia/Aqtau", "Asia/Gaza",
                                  "America/St_Johns", "America/Sao_Paulo", "America/Caracas", "America/Mexico_City",
                                  "America/Nuuk", "Pacific/Apia", "Pacific/Kwajalein", "Australia/Lord_Howe",
                                  "Antarctica/Troll", "Africa/El_Aaiun",
                                  // Their standard time changes near an end of a piece of the cache.
                                  "America/Inuvik", "America/Nome", "Africa/Khartoum", "America/Santo_Domingo"};

class Bytes {
 public:
  Bytes(const std::uint8_t* data, std::size_t size) : next_(data), end_(data + size) {}
  bool any() const { return next_ != end_; }
  int below(int count) { return any() ? *next_++ % count : 0; }
  std::int64_t instant() {
    std::int64_t number = 0;
    for (int i = 0; i < 4; ++i) number = number * 256 + below(256);
    return number;
  }

 private:
  const std::uint8_t* next_;
  const std::uint8_t* end_;
};

// Returns a zone of the list, or a rule whose times last a month or more each.
std::string zoneOf(Bytes& bytes) {
  const int choice = bytes.below(static_cast<int>(std::size(kZones)) + 10);
  if (choice < static_cast<int>(std::size(kZones))) return kZones[choice];
  const int offset = bytes.below(27 * 4) - 12 * 4, daylight = bytes.below(2) == 0 ? 4 : 2;  // quarters of an hour
  const auto text = [](int quarters) {
    char buffer[16];
    std::snprintf(buffer, sizeof buffer, "%s%d:%02d", quarters < 0 ? "-" : "", std::abs(quarters) / 4,
                  std::abs(quarters) % 4 * 15);
    return std::string(buffer);
  };
  const std::string standard = "STD" + text(offset);
  if (bytes.below(4) == 0) return standard;
  const int begin = bytes.below(12), end = (begin + 2 + bytes.below(9)) % 12;
  const auto rule = [&bytes](int month) {
    return ",M" + std::to_string(month + 1) + '.' + std::to_string(bytes.below(5) + 1) + '.' +
           std::to_string(bytes.below(7)) + '/' + std::to_string(bytes.below(25));
  };
  const std::string begins = rule(begin);
  return standard + "DST" + text(offset - daylight) + begins + rule(end);
}

bool haveEqualFields(const BrokenDownTime& left, const tm& right) {
  return std::tie(left.tm_sec, left.tm_min, left.tm_hour, left.tm_mday, left.tm_mon, left.tm_year, left.tm_wday,
                  left.tm_yday) == std::tie(right.tm_sec, right.tm_min, right.tm_hour, right.tm_mday, right.tm_mon,
                                            right.tm_year, right.tm_wday, right.tm_yday);
}

void compare(const std::string& zone, StandardTimes& cached, std::int64_t second) {
  const time_t instant = second;
  tm expected, expectedUtc;
  BrokenDownTime local, utc;
  ::localtime_r(&instant, &expected);
  ::gmtime_r(&instant, &expectedUtc);
  require(breakDownLocal(second, local) && breakDownUtc(second, utc), zone, second);
  require(haveEqualFields(local, expected) && haveEqualFields(utc, expectedUtc), zone, second);
  const std::int32_t offset = standardOffsetAt(second);
  require(cached.offsetAt(second) == offset, zone, second);
  require(local.tm_isdst == (expected.tm_gmtoff > offset), zone, second);
  // The clock of the standard time may show these fields twice, or not at all, near a change of the standard time.
  const std::int64_t found = secondOfStandardTime(utc), here = second - offset;
  const bool steady = standardOffsetAt(second - 2 * 86400) == offset && standardOffsetAt(second + 2 * 86400) == offset;
  require(!steady || found == (here < 0 || here > kLastConvertibleSecond ? -1 : here), zone, second);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Bytes bytes(data, size);
  const std::string zone = zoneOf(bytes);
  const kdx::testing::ScopedTimeZone scope(zone);
  StandardTimes cached;
  for (int count = 0; bytes.any() && count < 40; ++count) compare(zone, cached, bytes.instant());
  return 0;
}
