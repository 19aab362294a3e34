// Internal to the transcoder: the shuffles that remove what a block doesn't keep, for the levels without an instruction
// for that.

#ifndef KDXCOMMON_BASE_TRANSCODER_SHUFFLES_H_
#define KDXCOMMON_BASE_TRANSCODER_SHUFFLES_H_

#include <array>
#include <cstddef>

#include "kdxcommon/base/transcoder_blocks.h"

namespace kdx {

using Shuffles = std::array<std::array<Byte, 16>, 256>;

/// For each set of eight lanes of 16 bits, the shuffle that moves the lanes of the set to the front.
inline constexpr Shuffles kKeepLanes = [] {
  Shuffles shuffles{};
  for (std::size_t set = 0; set != shuffles.size(); ++set) {
    std::size_t kept = 0;
    for (std::size_t lane = 0; lane != 8; ++lane) {
      if ((set >> lane & 1) == 0) continue;
      shuffles[set][kept++] = static_cast<Byte>(2 * lane);
      shuffles[set][kept++] = static_cast<Byte>(2 * lane + 1);
    }
  }
  return shuffles;
}();

/// Four lanes of 32 bits contain a character each: its last byte at 2, the one before at 1, a third one at 0. Bit n of
/// the index means that lane n has two bytes or more, bit n + 4 that it has three. The shuffle closes the gaps.
inline constexpr Shuffles kCloseGaps = [] {
  Shuffles shuffles{};
  for (std::size_t index = 0; index != shuffles.size(); ++index) {
    std::size_t kept = 0;
    for (std::size_t lane = 0; lane != 4; ++lane) {
      if ((index >> lane & 0x10) != 0) shuffles[index][kept++] = static_cast<Byte>(4 * lane);
      if ((index >> lane & 0x01) != 0) shuffles[index][kept++] = static_cast<Byte>(4 * lane + 1);
      shuffles[index][kept++] = static_cast<Byte>(4 * lane + 2);
    }
  }
  return shuffles;
}();

}  // namespace kdx

#endif  // KDXCOMMON_BASE_TRANSCODER_SHUFFLES_H_
