// Any bytes, as a narrow and as a wide text: every text helper must answer as its slow twin does.

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
  // The same bytes as units of 16 bits: those that are no ASCII must count as letters of nothing.
  kdx::wstring wide;
  std::string plain;
  for (std::size_t i = 0; i + 1 < size; i += 2) {
    const auto unit = static_cast<kdx::wchar>(data[i] | data[i + 1] << 8);
    wide += unit;
    plain += unit < 0x80 ? static_cast<char>(unit) : '\x80';
  }
  const bool agree = kdx::platformWATOLL(wide) == kdx::testing::slowATOLL(plain) &&
                     kdx::testing::sameNumber(kdx::platformWATOF(wide), kdx::testing::slowATOF(plain)) &&
                     kdx::platformWStringIsNumeric(wide) == kdx::testing::slowIsNumeric(plain) &&
                     kdx::platformWStringIsHexadecimal(wide) == kdx::testing::slowIsHexadecimal(plain);
  if (!agree) std::abort();
  return 0;
}
