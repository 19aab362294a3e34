#include "kdxcommon/dumpfile/retention.h"

#include <algorithm>
#include <limits>

#include "kdxcommon/base/civil_date.h"

namespace kdx {

std::int64_t filesToDelete(std::size_t present, std::uint32_t limit) {
  return static_cast<std::int64_t>(present) - (static_cast<std::int64_t>(limit) - 1);
}

std::vector<std::pair<std::int64_t, int>> jobsToDelete(const JobCounts& jobs, std::int64_t surplus) {
  std::int64_t covered = 0;
  auto end = jobs.begin();
  for (; end != jobs.end() && covered < surplus; ++end) covered += end->second;
  return {jobs.begin(), end};
}

std::int32_t ageInDays(std::int64_t now, std::int64_t fileTime) {
  // A file system may hold any date. Ones beyond all clocks are brought near enough for a difference to be taken.
  constexpr std::int64_t kFarthest = std::int64_t{1} << 61;
  const std::int64_t days =
      (std::clamp(now, -kFarthest, kFarthest) - std::clamp(fileTime, -kFarthest, kFarthest)) / kSecondsPerDay;
  constexpr std::numeric_limits<std::int32_t> kLimits;
  return static_cast<std::int32_t>(std::clamp<std::int64_t>(days, kLimits.min(), kLimits.max()));
}

bool hasExpired(std::int32_t age, std::uint32_t daysToKeep) {
  return static_cast<std::uint32_t>(age) > daysToKeep;
}

}  // namespace kdx
