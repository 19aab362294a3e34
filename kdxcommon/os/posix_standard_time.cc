#include "kdxcommon/os/posix_standard_time.h"

#include <time.h>

#include <algorithm>
#include <array>
#include <limits>
#include <numeric>
#include <optional>

#include "kdxcommon/base/civil_date.h"

namespace kdx::os {
namespace {

// No daylight time of a zone, and no standard time between two, is shorter, so a step of this length skips none.
constexpr std::int64_t kStep = 601200;
constexpr int kStepsPerYear = 53;
constexpr int kLongestSearch = 2 * kStepsPerYear;
constexpr std::int32_t kManyChanges = std::numeric_limits<std::int32_t>::min();

struct UtcOffset {
  std::int32_t seconds = 0;
  bool daylight = false;  // according to the zone's data
};

UtcOffset utcOffsetAt(std::int64_t second) {
  const time_t instant = second;
  tm fields{};
  ::localtime_r(&instant, &fields);
  return {static_cast<std::int32_t>(fields.tm_gmtoff), fields.tm_isdst > 0};
}

// Returns the number of steps from an instant to the one that `otherTimeNear` returns. `at(n)` is the offset n steps
// from the instant.
template <typename OffsetAtStep>
int stepsToOtherTime(const OffsetAtStep& at) {
  const UtcOffset here = at(0);
  const auto find = [&](int direction, int limit) {
    for (int steps = 1; steps <= limit; ++steps) {
      if (at(direction * steps).daylight != here.daylight) return direction * steps;
    }
    return 0;
  };
  if (here.daylight) {
    const int before = find(-1, kLongestSearch);
    const int after = find(1, before ? -before - 1 : kLongestSearch);
    return after ? after : before;
  }
  const int after = find(1, kStepsPerYear);
  const bool smaller = after && at(after).seconds < here.seconds;
  return smaller && !find(-1, kStepsPerYear) ? 0 : after;
}

template <typename OffsetAtStep>
std::int32_t standardOffset(const OffsetAtStep& at) {
  return std::min(at(0).seconds, at(stepsToOtherTime(at)).seconds);
}

auto stepsFrom(std::int64_t second) {
  return [second](int steps) { return utcOffsetAt(second + steps * kStep); };
}

// Returns the first second after `from` with another standard offset than at `from`; at `to` the offset is another.
std::int64_t findChange(std::int64_t from, std::int64_t to) {
  const std::int32_t offset = standardOffsetAt(from);
  while (to - from > 1) {
    const std::int64_t middle = std::midpoint(from, to);
    (standardOffsetAt(middle) == offset ? from : to) = middle;
  }
  return to;
}

}  // namespace

std::int64_t otherTimeNear(std::int64_t second) {
  return second + stepsToOtherTime(stepsFrom(second)) * kStep;
}

std::int32_t standardOffsetAt(std::int64_t second) {
  return standardOffset(stepsFrom(second));
}

std::int32_t StandardTimes::laterOffset(const Piece& piece, std::int64_t second) {
  return piece.later == kManyChanges ? standardOffsetAt(second) : piece.later;
}

StandardTimes::Piece StandardTimes::read(std::int64_t start) {
  constexpr int kSteps = ((1 << kBitsOfPiece) + 2 * kSecondsPerDay) / kStep + 1;
  std::array<std::optional<UtcOffset>, kSteps + 1 + 2 * kLongestSearch> asked;
  const auto secondOfStep = [start](int step) { return start - kSecondsPerDay + step * kStep; };
  const auto standardOffsetOfStep = [&](int step) {
    return standardOffset([&, step](int more) {
      const int index = kLongestSearch + step + more;
      std::optional<UtcOffset>& offset = asked[static_cast<std::size_t>(index)];
      if (!offset) offset = utcOffsetAt(secondOfStep(step + more));
      return *offset;
    });
  };
  const std::int32_t first = standardOffsetOfStep(0);
  Piece piece{kNever, first, first};
  for (int step = 1; step <= kSteps; ++step) {
    const std::int32_t offset = standardOffsetOfStep(step);
    if (offset == piece.later) continue;
    if (piece.later != piece.offset) {
      piece.later = kManyChanges;
      break;
    }
    piece.changesAt = findChange(secondOfStep(step - 1), secondOfStep(step));
    piece.later = offset;
  }
  return piece;
}

}  // namespace kdx::os
