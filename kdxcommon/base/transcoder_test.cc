#include "kdxcommon/base/transcoder.h"

#include <gtest/gtest.h>

#include <array>
#include <random>
#include <vector>

#include "fuzz/slow_transcoder.h"

namespace kdx {
namespace {

using testing::decodeSlowly;
using ::testing::PrintToString;

class Transcoder : public ::testing::TestWithParam<testing::InstructionLevel> {
 protected:
  void SetUp() override {
    if (!offered(level_)) GTEST_SKIP() << "this processor lacks " << GetParam().name;
  }

  // Both read a copy of the text in memory of exactly its size, so that a sanitizer detects reads beyond it. The
  // output's former content must not matter.

  bool decodesAsItsTwin(string_view text) {
    const std::vector<char> exact(text.begin(), text.end());
    const std::optional<wstring> expected = decodeSlowly(text);
    wide_ = wstring(held(), wchar{1});
    return utf8ToUtf16({exact.data(), exact.size()}, wide_, level_) == expected.has_value() &&
           wide_ == expected.value_or(wstring());
  }

  bool encodesAsItsTwin(wstring_view text) {
    const std::vector<wchar> exact(text.begin(), text.end());
    bool paired = false;
    const string expected = testing::encodeSlowly(text, paired);
    narrow_ = string(held(), '\1');
    utf16ToUtf8Replacing({exact.data(), exact.size()}, narrow_, level_);
    return narrow_ == expected && utf16ToUtf8({exact.data(), exact.size()}, narrow_, level_) == paired &&
           narrow_ == (paired ? expected : string());
  }

  std::size_t held() { return std::array{0U, 6U, 64U, 400U, 5000U}[calls_++ % 5]; }

  const Instructions level_ = GetParam().instructions;
  wstring wide_;
  string narrow_;
  std::size_t calls_ = 0;
};

INSTANTIATE_TEST_SUITE_P(, Transcoder, ::testing::ValuesIn(testing::kInstructionLevels),
                         [](const auto& level) { return level.param.name; });

TEST_P(Transcoder, ConvertsEveryCharacter) {
  for (std::uint32_t first = 0; first <= 0x10FFFF; first += 64) {
    if (first >= 0xD800 && first <= 0xDFFF) continue;
    string text;
    for (std::uint32_t character = first; character != first + 64; ++character) testing::appendUtf8(character, text);
    ASSERT_TRUE(decodesAsItsTwin(text) && encodesAsItsTwin(wide_)) << std::hex << first;
  }
}

TEST_P(Transcoder, JudgesEverySequenceOfBytes) {
  const string borders = "\x7F\x80\xBF\xC2\x8F\x90\x9F\xA0\xC1\xDF\xE0\xE1\xEC\xED\xEE\xEF\xF0\xF1\xF4\xF5\xFF";
  const std::size_t count = borders.size();
  for (std::size_t i = 0; i != count * count * count * 5; ++i) {
    string bytes = {borders[i % count], borders[i / count % count], borders[i / count / count % count]};
    if (i % 5 != 4) bytes += borders[i % 5];
    ASSERT_TRUE(decodesAsItsTwin(bytes)) << PrintToString(bytes);
    for (const std::size_t before : {30U, 31U, 63U}) {  // at the ends of blocks, and across them
      ASSERT_TRUE(decodesAsItsTwin(string(before, 'x') + bytes + string(70, 'x'))) << PrintToString(bytes);
    }
  }
  ASSERT_TRUE(decodesAsItsTwin("\xC3" + string(32, 'x') + "\xA9"));  // the continuation comes a block too late
}

TEST_P(Transcoder, JudgesEverySequenceOfUnits) {
  const wstring borders = {0x01, 0x7F, 0x80, 0x7FF, 0x800, 0xD7FF, 0xD800, 0xDBFF, 0xDC00, 0xDFFF, 0xE000, 0xFFFF};
  for (const std::size_t before : {0U, 14U, 15U, 31U, 63U}) {  // at the ends of blocks
    for (std::size_t i = 0; i != 12 * 12 * 12; ++i) {
      const wstring text = wstring(before, wchar{0x4E2D}) + borders[i % 12] + borders[i / 12 % 12] + borders[i / 144];
      ASSERT_TRUE(encodesAsItsTwin(text + wstring(i % 40, wchar{'x'}))) << PrintToString(text);
    }
  }
}

// Long and short runs of every kind in all orders, at every offset in a block; then something wrong anywhere.
TEST_P(Transcoder, AgreesWithItsTwinsOnSplicedTexts) {
  const string good[] = {
      "a",          string(45, 'b'), "\u00e9", "\u0416\u0443\u043a", "\u8a9e\u8a9e\u8a9e\u8a9e\u8a9e",
      "\U0001F600", string(1, '\0')};
  const string bad[] = {"\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xC3", "\xE4\xB8", "\xF0\x9F\x98", "\xFF"};
  std::mt19937 random(20240229);
  for (std::size_t round = 0; round != 20000; ++round) {
    string text(round % 65, 'x');
    for (auto pieces = 1 + random() % (round % 50 == 0 ? 1000 : 40); pieces != 0; --pieces) text += good[random() % 7];
    ASSERT_TRUE(decodesAsItsTwin(text) && encodesAsItsTwin(wide_)) << round << ": " << PrintToString(text);
    wstring units = wide_;
    units.insert(random() % units.size(), 1, static_cast<wchar>(0xD800 + random() % 0x800));
    ASSERT_TRUE(encodesAsItsTwin(units)) << round << ": " << PrintToString(units);
    text.insert(random() % text.size(), bad[random() % 7]);
    ASSERT_TRUE(decodesAsItsTwin(text)) << round << ": " << PrintToString(text);
  }
}

// What stops the blocks shifts them, so that the last one of a piece reaches far into the next piece.
TEST_P(Transcoder, FillsPiecesBeyondTheirEnd) {
  for (std::size_t position = 0; position != 130; ++position) {
    const string text = string(8300, 'x').insert(position, "\U0001F600").insert(position / 2, "\U0001F600");
    ASSERT_TRUE(decodesAsItsTwin(text) && encodesAsItsTwin(wide_)) << position;
  }
}

TEST_P(Transcoder, TakesAsMuchMemoryAsTheTextNeeds) {
  string text(20000, 'x');
  for (std::size_t i = 0; i != 20000; ++i) text += "\u8a9e\u00e9\U0001F600";
  wstring wide;
  string narrow;
  ASSERT_TRUE(utf8ToUtf16(text, wide, level_) && utf16ToUtf8(wide, narrow, level_));
  EXPECT_LE(wide.capacity(), wide.size() + 8);
  EXPECT_LE(narrow.capacity(), narrow.size() + 8);
}

}  // namespace
}  // namespace kdx
