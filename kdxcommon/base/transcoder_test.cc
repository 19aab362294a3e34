#include "kdxcommon/base/transcoder.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <random>
#include <vector>

#include "kdxcommon/testing/slow_transcoder.h"

namespace kdx {
namespace {

using testing::appendUtf16;
using testing::appendUtf8;
using testing::decodeSlowly;
using testing::encodeSlowly;
using ::testing::PrintToString;

class Transcoder : public ::testing::TestWithParam<Instructions> {
 protected:
  // Both look at a copy of the text in memory of exactly its size, so that a sanitizer sees a step beyond it.

  bool decodesAsItsTwin(string_view text) {
    const std::vector<char> exact(text.begin(), text.end());
    const std::optional<wstring> expected = decodeSlowly(text);
    wide_ = wstring(6, wchar{1});
    return utf8ToUtf16({exact.data(), exact.size()}, wide_, GetParam()) == expected.has_value() &&
           wide_ == expected.value_or(wstring());
  }

  bool encodesAsItsTwin(wstring_view text) {
    const std::vector<wchar> exact(text.begin(), text.end());
    bool paired = false;
    const string expected = encodeSlowly(text, paired);
    narrow_ = "before";
    const bool same = utf16ToUtf8({exact.data(), exact.size()}, narrow_, GetParam()) == paired &&
                      narrow_ == (paired ? expected : string());
    utf16ToUtf8Replacing({exact.data(), exact.size()}, narrow_, GetParam());
    return same && narrow_ == expected;
  }

 private:
  wstring wide_;
  string narrow_;
};

INSTANTIATE_TEST_SUITE_P(BothInstructionSets, Transcoder,
                         ::testing::Values(Instructions::kBaseline, Instructions::kBest));

TEST_P(Transcoder, ConvertsEveryCharacter) {
  string narrow;
  wstring wide;
  for (std::uint32_t character = 0; character <= 0x10FFFF; ++character) {
    if (character >= 0xD800 && character <= 0xDFFF) continue;
    appendUtf8(character, narrow);
    appendUtf16(character, wide);
    if (character % 61 != 0 && character != 0x10FFFF) continue;
    ASSERT_TRUE(decodesAsItsTwin(narrow) && encodesAsItsTwin(wide)) << "up to " << std::hex << character;
    narrow.clear();
    wide.clear();
  }
}

TEST_P(Transcoder, JudgesEverySequenceOfBytes) {
  const auto check = [&](const string& bytes) {
    ASSERT_TRUE(decodesAsItsTwin(bytes)) << PrintToString(bytes);
    for (const std::size_t before : {30U, 31U}) {  // at the end of a block, and across it
      ASSERT_TRUE(decodesAsItsTwin(string(before, 'x') + bytes + string(40, 'x')))
          << before << " before " << PrintToString(bytes);
    }
  };
  for (int first = 0; first != 256; ++first) {
    for (int second = 0; second != 256; ++second) check({static_cast<char>(first), static_cast<char>(second)});
  }
  check("\xC3" + string(32, 'x') + "\xA9");  // the continuation comes a block too late
  const string borders =
      "\x01\x7F\x80\x8F\x90\x9F\xA0\xBF\xC0\xC1\xC2\xDF\xE0\xE1\xEC\xED\xEE\xEF\xF0\xF1\xF4\xF5\xF8\xFF";
  for (const char a : borders.substr(8)) {
    for (const char b : borders) {
      for (const char c : borders) {
        check({a, b, c});
        for (const char d : {'\x7F', '\x80', '\xBF', '\xC2'}) check({a, b, c, d});
      }
    }
  }
}

TEST_P(Transcoder, JudgesEverySequenceOfUnits) {
  const wstring borders = {0x01, 0x7F, 0x80, 0x7FF, 0x800, 0xD7FF, 0xD800, 0xDBFF, 0xDC00, 0xDFFF, 0xE000, 0xFFFF};
  for (const std::size_t before : {0U, 14U, 15U, 1022U, 1023U}) {  // at the ends of blocks and of a piece
    for (std::size_t i = 0; i != 12 * 12 * 12; ++i) {
      const wstring text = wstring(before, wchar{0x4E2D}) + borders[i % 12] + borders[i / 12 % 12] + borders[i / 144] +
                           wstring(i % 40, wchar{'x'});
      ASSERT_TRUE(encodesAsItsTwin(text)) << PrintToString(text);
    }
  }
}

// Long and short runs of every kind in all orders, at every offset in a block; one text in two has something wrong.
TEST_P(Transcoder, AgreesWithItsTwinsOnSplicedTexts) {
  const std::vector<string> good = {
      "a",          string(45, 'b'), "\u00e9", "\u0416\u0443\u043a", "\u4e2d", "\u8a9e\u8a9e\u8a9e\u8a9e\u8a9e",
      "\U0001F600", string(1, '\0')};
  const std::vector<string> bad = {
      "\x80", "\xC1\xBF", "\xE0\x9F\xBF", "\xED\xA0\x80", "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80",
      "\xC3", "\xE4\xB8", "\xF0\x9F\x98", "\xFF"};
  std::mt19937 random(20240229);
  const auto below = [&](std::size_t limit) { return static_cast<std::size_t>(random() % limit); };
  for (std::size_t round = 0; round != 20000; ++round) {
    string text(round % 65, 'x');
    const std::size_t pieces = 1 + below(round % 50 == 0 ? 1000 : 40);
    for (std::size_t i = 0; i != pieces; ++i) text += good[below(good.size())];
    std::optional<wstring> units = decodeSlowly(text);
    ASSERT_TRUE(units && encodesAsItsTwin(*units)) << "round " << round;
    ASSERT_TRUE(decodesAsItsTwin(text)) << "round " << round << ": " << PrintToString(text);
    text.insert(below(text.size() + 1), bad[below(bad.size())]);
    ASSERT_TRUE(decodesAsItsTwin(text)) << "round " << round << ": " << PrintToString(text);
    units->insert(below(units->size() + 1), 1, static_cast<wchar>(0xD800 + below(0x800)));
    ASSERT_TRUE(encodesAsItsTwin(*units)) << "round " << round << ": " << PrintToString(*units);
  }
}

// What stops the blocks shifts them, so that the last one of a piece reaches far into the next piece.
TEST_P(Transcoder, FillsPiecesBeyondTheirEnd) {
  for (std::size_t position = 0; position != 130; ++position) {
    string text(2100, 'x');
    text.insert(position, "\U0001F600").insert(position / 2, "\U0001F600");
    ASSERT_TRUE(decodesAsItsTwin(text)) << position;
  }
}

}  // namespace
}  // namespace kdx
