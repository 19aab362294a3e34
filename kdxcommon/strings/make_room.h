// Internal: reserves memory in several texts before any of them changes, so that an append to all of them either
// succeeds or changes none.

#ifndef KDXCOMMON_STRINGS_MAKE_ROOM_H_
#define KDXCOMMON_STRINGS_MAKE_ROOM_H_

#include <algorithm>
#include <cstddef>

namespace kdx {

/// Reserves memory so that `count` more units can be appended without an allocation. Grows by at least doubling, as an
/// append does, so that many small appends take linear time. Throws only std::bad_alloc; the text is unchanged.
template <typename Text>
void makeRoom(Text& text, std::size_t count) {
  const std::size_t capacity = text.capacity();
  if (capacity - text.size() < count) text.reserve(std::max(text.size() + count, 2 * capacity));
}

}  // namespace kdx

#endif  // KDXCOMMON_STRINGS_MAKE_ROOM_H_
