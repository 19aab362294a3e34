// Any text as a DN, and any other as an RDN to append: a name must answer every question as a splitter of one character
// at a time does.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "kdxcommon/strings/wide_string.h"
#include "kdxcommon/testing/reference_dn.h"

namespace {

using kdx::wstring;

constexpr kdx::wchar kSeparator{';'};
constexpr kdx::wchar kEscape{'\\'};

void require(bool holds) {
  if (!holds) std::abort();
}

void ask(const wstring& dn) {
  const kdx::string question = kdx::testing::findDisagreement(dn);
  if (question.empty()) return;
  std::fprintf(stderr, "%s disagrees with the slow twin\n", question.c_str());
  std::abort();
}

void append(const wstring& dn, const wstring& rdn) {
  kdx::CBasicX500Name name;
  name.setDN(dn);
  require(name.addRDN(rdn));
  wstring expected = dn;
  if (!dn.empty()) expected += kSeparator;
  for (const kdx::wchar unit : rdn) {
    if (unit == kSeparator || unit == kEscape) expected += kEscape;
    expected += unit;
  }
  require(name.wDN() == expected && name.depth() == kdx::testing::splitDN(expected).size());
  require(name.aDN() == kdx::CWideString(expected).aString());
  ask(expected);
}

void refuseEmptyRDNs(const wstring& dn) {
  kdx::CBasicX500Name name;
  name.disableEmptyRDN();
  bool refused = dn.empty() || dn.front() == kSeparator || dn.back() == kSeparator;
  for (std::size_t i = 1; i < dn.size(); ++i) refused |= dn[i - 1] == kSeparator && dn[i] == kSeparator;
  require(name.setDN(dn) != refused && name.wDN() == (refused ? wstring() : dn));
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
  ask(dn);
  refuseEmptyRDNs(dn);
  append(dn, end == wstring::npos ? wstring() : text.substr(end + 1));
  return 0;
}
