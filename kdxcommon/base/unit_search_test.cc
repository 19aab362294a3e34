#include "kdxcommon/base/unit_search.h"

#include <gtest/gtest.h>

#include <vector>

namespace kdx {
namespace {

TEST(UnitSearch, FindsTheFirstOfTheUnit) {
  const wchar unit{0x4142};
  for (std::size_t size = 0; size != 200; ++size) {
    // Exactly as large as the text, so that a sanitizer detects reads beyond it; each byte of the unit occurs in it.
    std::vector<wchar> text(size, wchar{0x4141});
    for (std::size_t i = 0; i < size; i += 2) text[i] = wchar{0x4242};
    EXPECT_EQ(findUnit({text.data(), size}, unit), size);
    for (std::size_t first = size; first-- != 0;) {
      text[first] = unit;
      ASSERT_EQ(findUnit({text.data(), size}, unit), first) << size << " units";
    }
  }
}

}  // namespace
}  // namespace kdx
