// Any bytes that are logged must produce the same line as the slow twin: one line of UTF-8 without characters that need
// escaping.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "fuzz/slow_log_text.h"

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  // No spare capacity, so that a sanitizer detects reads beyond the end.
  kdx::string text(data, data + size);
  text.shrink_to_fit();
  require(kdx::testing::standsAsItMust(text));
  if (!text.empty()) require(kdx::testing::standsAsItMust(kdx::string_view(text).substr(0, text.size() - 1)));
  const kdx::string line = kdx::testing::lineOf({2, text, 3, text, text});
  require(std::find(line.begin(), line.end(), '\n') == line.end() - 1);
  const auto units = kdx::testing::decodeSlowly(line);
  require(units && std::none_of(units->begin(), units->end() - 1, kdx::testing::mustBeEscaped));
  return 0;
}
