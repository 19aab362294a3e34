#include "kdxcommon/platform/files_and_clock.h"

#include <gtest/gtest.h>

#include <cstring>
#include <tuple>
#include <utility>

#include "kdxcommon/inhouse/zqlib/last_error.h"
#include "kdxcommon/os/operating_system_wrapper.h"
#include "kdxcommon/testing/fake_zone.h"
#include "kdxcommon/testing/temporary_directory.h"

namespace kdx {
namespace {

TEST(WholeFiles, ComeBackBehindWhatIsThereWithoutTheRestOfAChunkBehindANul) {
  const testing::TemporaryDirectory directory;
  const string path = directory.path("file");
  int error = 7;
  // Size; where a NUL stands, if at all; the bytes that come back.
  const std::size_t rows[][3] = {
      {0, 0, 0}, {32768, 32768, 32768}, {20, 10, 10}, {100000, 100000, 100000}, {100000, 32868, 100000 - 32768 + 100}};
  for (const auto& [size, nul, kept] : rows) {
    string text(size, 'x'), contents = "before ";
    if (nul < size) text[nul] = '\0';
    EXPECT_TRUE(platformWriteEntireFileContent(path, text, error));
    EXPECT_EQ(directory.read("file"), text);
    EXPECT_TRUE(platformReadEntireFileContents(path, contents, error));
    EXPECT_EQ(contents, "before " + string(kept, 'x'));
  }
}

/// Five hours west of Greenwich.
struct NamedZone : testing::FakeZone {
  NamedZone(std::uint32_t inForce, int refused) : FakeZone(300, inForce), refusedName(refused) {}
  std::uint32_t GetLastError() override { return 1459; }
  void _tzset() override { looked = true; }
  int _get_tzname(char* buffer, std::size_t, int index) override {
    std::strcpy(buffer, index == 0 ? "EST" : "");
    return index == refusedName || !looked ? 22 : 0;
  }

  const int refusedName;
  bool looked = false;
};

auto fields(const TimeZone_t& zone) {
  return std::tie(zone.standardName, zone.daylightName, zone.biasSeconds, zone.daylightActive,
                  zone.daylightBiasSeconds);
}

TEST(Zones, AreGivenInSecondsAndWhatCannotBeReadTouchesNothing) {
  // What is in force, the name that can't be had, the zone.
  const std::tuple<std::uint32_t, int, TimeZone_t> rows[] = {
      {os::kTimeZoneIdStandard, -1, {"EST", "", 18000, false, 0}},
      {os::kTimeZoneIdDaylight, -1, {"EST", "", 18000, true, -3600}},
      {os::kTimeZoneIdUnknown, 0, {"A", "B", 18000, false, 0}},
      {os::kTimeZoneIdUnknown, 1, {"A", "B", 18000, false, 0}},
      {os::kTimeZoneIdInvalid, -1, {"A", "B", 1, true, 2}}};
  for (const auto& [inForce, refusedName, expected] : rows) {
    NamedZone system(inForce, refusedName);
    const bool readable = inForce != os::kTimeZoneIdInvalid;
    TimeZone_t zone{"A", "B", 1, true, 2};
    ZQLastError lastError;
    EXPECT_TRUE(platformGetTimeZone(zone, nullptr) == readable && platformGetTimeZone(zone, &lastError) == readable);
    EXPECT_EQ(lastError.number(), readable ? 0 : 1459u);
    EXPECT_EQ(lastError.isCritical(), !readable);
    EXPECT_EQ(fields(zone), fields(expected));
    EXPECT_EQ(platformTimezone(), -18000);
  }
}

}  // namespace
}  // namespace kdx
