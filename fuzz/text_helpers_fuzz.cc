// Any bytes, as a narrow and as a wide text, whole and line by line: every text helper must return what its slow twin
// does. So one file of the corpus holds many texts.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <string>

#include "slow_text_helpers.h"

namespace {

void compare(const std::string& text) {
  if (const char* helper = kdx::testing::disagreeingHelper(text)) {
    std::fprintf(stderr, "%s disagrees with its slow twin over \"%s\"\n", helper, text.c_str());
    std::abort();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(data, data + size);
  compare(text);
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) compare(line);
  return 0;
}
