// Texts whose characters, wrong bytes and surrogates lie anywhere in the blocks of the transcoder: at each level of
// instructions that this processor offers it must convert as its slow twin does, whatever the output contains. The
// input ends at a page that can't be read, where the system has such pages. The first two bytes are the number of
// texts less one.

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <vector>
#if __has_include(<sys/mman.h>)
#include <sys/mman.h>
#endif

#include "choices.h"
#include "slow_transcoder.h"

namespace {

using kdx::string;
using kdx::string_view;
using kdx::wchar;
using kdx::wstring;
using kdx::wstring_view;
using kdx::testing::Choices;
using kdx::testing::require;

// Returns a copy of `text` that nothing readable follows.
template <typename Unit>
std::basic_string_view<Unit> atTheEnd(std::basic_string_view<Unit> text) {
#if __has_include(<sys/mman.h>)
  constexpr std::size_t kPage = 65536, kReadable = 32 * kPage;  // any system's pages fit into these
  static char* const memory = [] {
    void* pages = ::mmap(nullptr, kReadable + kPage, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    require(pages != MAP_FAILED && ::mprotect(static_cast<char*>(pages) + kReadable, kPage, PROT_NONE) == 0, "pages");
    return static_cast<char*>(pages);
  }();
  auto* const copy = reinterpret_cast<Unit*>(memory + kReadable) - text.size();
#else
  static std::vector<Unit> memory;
  memory = std::vector<Unit>(text.size());
  auto* const copy = memory.data();
#endif
  std::copy(text.begin(), text.end(), copy);
  return {copy, text.size()};
}

void decode(string_view text, std::size_t held) {
  const std::optional<wstring> expected = kdx::testing::decodeSlowly(text);
  for (const auto& [name, level] : kdx::testing::kInstructionLevels) {
    if (!kdx::offered(level)) continue;
    wstring wide(held, wchar{1});
    require(kdx::utf8ToUtf16(atTheEnd(text), wide, level) == expected.has_value(), name);
    require(wide == expected.value_or(wstring()), name);
  }
}

void encode(wstring_view text, std::size_t held) {
  bool paired = false;
  const string expected = kdx::testing::encodeSlowly(text, paired);
  for (const auto& [name, level] : kdx::testing::kInstructionLevels) {
    if (!kdx::offered(level)) continue;
    string narrow(held, '\1');
    kdx::utf16ToUtf8Replacing(atTheEnd(text), narrow, level);
    require(narrow == expected, name);
    narrow.assign(held, '\1');
    require(kdx::utf16ToUtf8(atTheEnd(text), narrow, level) == paired, name);
    require(narrow == (paired ? expected : string()), name);
  }
}

// Runs of characters of each length, behind some ASCII that shifts them in their blocks.
string randomText(Choices& choices) {
  static const string kRuns[] = {string(1, '\0'),      "a",
                                 string(45, 'b'),      "\u00e9",
                                 "\u0416\u0443\u043a", "\u8a9e\u8a9e\u8a9e\u8a9e\u8a9e",
                                 "\U0001F600",         string(4096, 'x')};
  const std::size_t kinds = 1 + choices.below(std::size(kRuns) - (choices.below(16) != 0));  // rarely the longest
  string text(choices.below(4) == 0 ? 0 : choices.below(130), 'x');
  for (std::size_t runs = choices.below(choices.below(16) ? 40 : 200); runs > 0; --runs)
    text += kRuns[choices.below(kinds)];
  return text;
}

// Up to four bytes that begin, continue and end sequences, or nearly do.
string randomBytes(Choices& choices) {
  constexpr string_view kBorders =
      "\x7F\x80\xBF\xC2\xC3\x8F\x90\x9F\xA0\xA9\xC1\xDF\xE0\xE1\xE4\xEC\xED\xEE\xEF\xF0\xF1\xF4\xF5\xFF";
  string bytes;
  for (std::size_t count = choices.below(5); count > 0; --count) bytes += choices.among(kBorders);
  return bytes;
}

void check(Choices& choices) {
  constexpr std::size_t kHeld[] = {0, 6, 64, 400, 5000};
  constexpr wchar kUnits[] = {0x01, 0x7F, 0x80, 0x7FF, 0x800, 0xD7FF, 0xD800, 0xDBFF, 0xDC00, 0xDFFF, 0xE000, 0xFFFF};
  string text = randomText(choices);
  decode(text, choices.among(kHeld));
  wstring units = *kdx::testing::decodeSlowly(text);
  encode(units, choices.among(kHeld));

  const std::size_t at = choices.any32Bits() % (text.size() + 1);
  decode(text.insert(at, randomBytes(choices)), choices.among(kHeld));
  wstring odd;
  for (std::size_t count = choices.below(4); count > 0; --count) odd += choices.among(kUnits);
  encode(units.insert(choices.any32Bits() % (units.size() + 1), odd), choices.among(kHeld));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  kdx::testing::repeat(data, size, check);
  return 0;
}
