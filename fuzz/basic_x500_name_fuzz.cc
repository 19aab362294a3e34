// Any text as a DN, and any other as an RDN to append: a name must answer every question as a splitter of one character
// at a time does.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "kdxcommon/testing/reference_dn.h"

namespace {

using kdx::wstring;

void require(const kdx::string& disagreement) {
  if (disagreement.empty()) return;
  std::fprintf(stderr, "%s disagrees with the slow twin\n", disagreement.c_str());
  std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  // Enough for several blocks of the scanners; asking for every tail costs the square of the length.
  size = std::min<std::size_t>(size, 300);
  // A byte is an ASCII character or, with its high bit, some surrogate; the first NUL parts the DN from the RDN.
  wstring text;
  for (std::size_t i = 0; i != size; ++i)
    text += static_cast<kdx::wchar>(data[i] < 0x80 ? data[i] : 0xD000 + (data[i] << 4));
  const std::size_t end = text.find(kdx::wchar{0});
  wstring dn = text.substr(0, end);
  dn.shrink_to_fit();
  const wstring rdn = end == wstring::npos ? wstring() : text.substr(end + 1);
  require(kdx::testing::findDisagreement(dn));
  require(kdx::testing::findWrongChange(dn, rdn));
  return 0;
}
