// Each line of the input is a DN and an RDN to append: every operation of a name must return what a splitter of one
// character at a time returns.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "fuzz/reference_dn.h"

namespace {

using kdx::wstring;

void require(const kdx::string& disagreement) {
  if (disagreement.empty()) return;
  std::fprintf(stderr, "%s disagrees with the slow twin\n", disagreement.c_str());
  std::abort();
}

// A byte is an ASCII character or, with its high bit, a surrogate; a control character is a unit whose low byte is a
// separator or an escape. The first NUL separates the DN from the RDN.
kdx::wchar unitOf(unsigned char byte) {
  if (byte >= 0x80) return static_cast<kdx::wchar>(0xD000 + (byte << 4));
  return static_cast<kdx::wchar>(byte == 0 || byte >= 0x20 ? byte : byte << 8 | (byte % 2 ? ';' : '\\'));
}

void check(std::string_view bytes) {
  wstring text;
  for (const char byte : bytes) text += unitOf(static_cast<unsigned char>(byte));
  const std::size_t end = text.find(kdx::wchar{0});
  wstring dn = text.substr(0, end);
  dn.shrink_to_fit();
  const wstring rdn = end == wstring::npos ? wstring() : text.substr(end + 1);
  require(kdx::testing::findDisagreement(dn));
  require(kdx::testing::findWrongChange(dn, rdn));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view lines(reinterpret_cast<const char*>(data), size);
  while (true) {
    const std::string_view line = lines.substr(0, lines.find('\n'));
    // Enough for several blocks of the scanners; checking every tail costs the square of the length.
    check(line.substr(0, 300));
    if (line.size() == lines.size()) return 0;
    lines.remove_prefix(line.size() + 1);
  }
}
