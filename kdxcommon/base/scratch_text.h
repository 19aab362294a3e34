// Internal: a text that is built and dropped within a function. Its characters lie in memory on the caller's stack as
// long as they fit, otherwise on the heap:
//
//   char room[1024];
//   ScratchMemory memory(room, sizeof room);
//   ScratchText line(&memory);
//
// This is what std::pmr offers, which libc++ lacks before version 16. Not thread-safe.

#ifndef KDXCOMMON_BASE_SCRATCH_TEXT_H_
#define KDXCOMMON_BASE_SCRATCH_TEXT_H_

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace kdx {

/// Memory that is taken from its start to its end and not reused.
class ScratchMemory {
 public:
  ScratchMemory(char* begin, std::size_t size) : next_(begin), begin_(begin), left_(size) {}

  /// Returns `size` bytes, or null if fewer are left.
  char* take(std::size_t size) {
    if (size > left_) return nullptr;
    left_ -= size;
    return std::exchange(next_, next_ + size);
  }
  bool holds(const char* bytes) const { return !std::less<>()(bytes, begin_) && std::less<>()(bytes, next_); }

 private:
  char* next_;
  const char* begin_;
  std::size_t left_;
};

/// An allocator for characters. Without memory of its own it allocates on the heap, as copies of a text do.
template <typename Character>
class ScratchAllocator {
 public:
  using value_type = Character;

  ScratchAllocator() = default;
  ScratchAllocator(ScratchMemory* memory) : memory_(memory) {}

  Character* allocate(std::size_t size) {
    Character* const taken = memory_ != nullptr ? memory_->take(size) : nullptr;
    return taken != nullptr ? taken : std::allocator<Character>().allocate(size);
  }
  void deallocate(Character* characters, std::size_t size) {
    if (memory_ == nullptr || !memory_->holds(characters)) std::allocator<Character>().deallocate(characters, size);
  }
  ScratchAllocator select_on_container_copy_construction() const { return {}; }
  bool operator==(const ScratchAllocator&) const = default;

 private:
  ScratchMemory* memory_ = nullptr;
};

using ScratchText = std::basic_string<char, std::char_traits<char>, ScratchAllocator<char>>;

}  // namespace kdx

#endif  // KDXCOMMON_BASE_SCRATCH_TEXT_H_
