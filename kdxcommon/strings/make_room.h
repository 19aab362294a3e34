// Internal: room in several texts before any of them changes, so that an append to all is an append to none where
// there is no memory.

#ifndef KDXCOMMON_STRINGS_MAKE_ROOM_H_
#define KDXCOMMON_STRINGS_MAKE_ROOM_H_

#include <algorithm>
#include <cstddef>

namespace kdx {

/// Sees to it that `count` more units can be appended without an allocation. Grows as an append would, so that many
/// small ones cost linear time. Throws what an allocation throws, with the text as it was.
template <typename Text>
void makeRoom(Text& text, std::size_t count) {
  const std::size_t capacity = text.capacity();
  if (capacity - text.size() < count) text.reserve(std::max(text.size() + count, 2 * capacity));
}

}  // namespace kdx

#endif  // KDXCOMMON_STRINGS_MAKE_ROOM_H_
