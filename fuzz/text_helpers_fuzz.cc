// Any bytes, as a narrow and as a wide text: every text helper must return what its slow twin does.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "kdxcommon/testing/slow_text_helpers.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(data, data + size);
  if (const char* helper = kdx::testing::disagreeingHelper(text)) {
    std::fprintf(stderr, "%s disagrees with its slow twin\n", helper);
    std::abort();
  }
  return 0;
}
