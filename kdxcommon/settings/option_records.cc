#include "kdxcommon/settings/option_records.h"

#include <cstddef>
#include <cstring>
#include <initializer_list>

namespace kdx {
namespace {

// Components built at different times share these records: no compiler may lay them out otherwise.
static_assert(offsetof(subclientFiles, value32) == 0);
static_assert(offsetof(subclientFiles, value64) == 8);
static_assert(offsetof(subclientFiles, text1) == 16);
static_assert(offsetof(subclientFiles, text2) == 16 + 1025);
static_assert(offsetof(subclientFiles, text5) == 16 + 1025 + 3 * 1024);
static_assert(offsetof(subclientFiles, text6) == 16 + 1025 + 3 * 1024 + 2048);
static_assert(offsetof(subclientFiles, text10) == 16 + 1025 + 7 * 1024 + 2048);
static_assert(sizeof(subclientFiles) == 11288, "the texts end at 11281; the record at the next multiple of 8");

static_assert(offsetof(OptHdrAbars, word4) == 3 * sizeof(std::uint16_t));
static_assert(offsetof(OptHdrAbars, dword1) == 4 * sizeof(std::uint16_t));
static_assert(offsetof(OptHdrAbars, dword9) == 4 * sizeof(std::uint16_t) + 8 * sizeof(std::uint32_t));
static_assert(sizeof(OptHdrAbars) == 44, "no gap between the fields or behind them");

}  // namespace

subclientFiles::subclientFiles() {
  for (char* text : {text1, text2, text3, text4, text5, text6, text7, text8, text9, text10}) *text = '\0';
}

subclientFiles& subclientFiles::operator=(const subclientFiles& other) {
  // NOLINTNEXTLINE(bugprone-undefined-memory-manipulation): plain bytes, but for the constructor's zeros
  if (this != &other) std::memcpy(static_cast<void*>(this), &other, sizeof *this);
  return *this;
}

OptHdrAbars::OptHdrAbars() = default;

OptHdrAbars& OptHdrAbars::operator=(const OptHdrAbars& other) {
  OptHdrAbars copy(other);
  std::memcpy(static_cast<void*>(this), &copy, sizeof *this);  // NOLINT(bugprone-undefined-memory-manipulation)
  return *this;
}

}  // namespace kdx
