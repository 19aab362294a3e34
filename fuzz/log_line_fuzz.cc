// Whatever bytes are logged, they make one line of UTF-8 with nothing in it that must be escaped, the one that the slow
// twin makes.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "kdxcommon/testing/slow_log_text.h"

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  // No spare room, so that a sanitizer sees what reads behind the end.
  kdx::string text(data, data + size);
  text.shrink_to_fit();
  require(kdx::testing::standsAsItMust(text));
  const kdx::string line = kdx::testing::lineOf({2, text, 3, text, text});
  require(std::find(line.begin(), line.end(), '\n') == line.end() - 1);
  const auto units = kdx::testing::decodeSlowly(line);
  require(units && std::none_of(units->begin(), units->end() - 1, kdx::testing::mustBeEscaped));
  return 0;
}
