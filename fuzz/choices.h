// The choices of a target that makes its own cases: a byte of the input for each, and after its end those of a
// generator that the input starts.

#ifndef KDXCOMMON_FUZZ_CHOICES_H_
#define KDXCOMMON_FUZZ_CHOICES_H_

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <random>

namespace kdx::testing {

inline void require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "%s\n", what);
  std::abort();
}

class Choices {
 public:
  Choices(const std::uint8_t* data, std::size_t size) : next_(data), end_(data + size) {
    std::seed_seq seed(data, data + size);
    generator_.seed(seed);
  }
  std::size_t below(std::size_t count) { return (next_ != end_ ? *next_++ : generator_() >> 8) % count; }
  template <typename Values>
  auto among(const Values& values) {
    return std::data(values)[below(std::size(values))];
  }
  std::uint32_t any32Bits() {
    std::uint32_t all = 0;
    for (int i = 0; i < 4; ++i) all = all << 8 | static_cast<std::uint32_t>(below(256));
    return all;
  }

 private:
  const std::uint8_t* next_;
  const std::uint8_t* end_;
  std::mt19937 generator_;
};

/// Calls `check(choices)` as often as the first two bytes of the input say, and once more. A fuzzer, which makes many
/// inputs, gets a few cases of each.
template <typename Check>
void repeat(const std::uint8_t* data, std::size_t size, const Check& check) {
  if (size < 2) return;
  Choices choices(data + 2, size - 2);
  std::size_t left = std::size_t{data[0]} * 256 + data[1] + 1;
#ifdef FUZZING_BUILD_MODE_UNSAFE_FOR_PRODUCTION
  left = std::min<std::size_t>(left, 16);
#endif
  for (; left > 0; --left) check(choices);
}

}  // namespace kdx::testing

#endif  // KDXCOMMON_FUZZ_CHOICES_H_
