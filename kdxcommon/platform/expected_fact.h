// Internal to the library: the condition that a row of a table of systems or processors sets on a fact.

#ifndef KDXCOMMON_PLATFORM_EXPECTED_FACT_H_
#define KDXCOMMON_PLATFORM_EXPECTED_FACT_H_

#include <cstdint>
#include <optional>

namespace kdx {

/// The value that a fact must have for a row to match; kAny matches every value.
using ExpectedFact = std::optional<std::uint32_t>;
inline constexpr std::nullopt_t kAny = std::nullopt;

inline bool fits(const ExpectedFact& expected, std::uint32_t value) {
  return !expected || *expected == value;
}

}  // namespace kdx

#endif  // KDXCOMMON_PLATFORM_EXPECTED_FACT_H_
