// Every character at every level of instructions. Where characters, wrong bytes and surrogates lie in a text is varied
// by fuzz/transcoder_fuzz.cc.

#include "kdxcommon/base/transcoder.h"

#include <gtest/gtest.h>

#include "fuzz/slow_transcoder.h"

namespace kdx {
namespace {

class Transcoder : public ::testing::TestWithParam<testing::InstructionLevel> {
 protected:
  void SetUp() override {
    if (!offered(level_)) GTEST_SKIP() << "this processor lacks " << GetParam().name;
  }

  const Instructions level_ = GetParam().instructions;
  wstring wide_;
  string narrow_;
};

INSTANTIATE_TEST_SUITE_P(, Transcoder, ::testing::ValuesIn(testing::kInstructionLevels),
                         [](const auto& level) { return level.param.name; });

TEST_P(Transcoder, ConvertsEveryCharacter) {
  for (std::uint32_t first = 0; first <= 0x10FFFF; first += 64) {
    if (first >= 0xD800 && first <= 0xDFFF) continue;
    string text;
    wstring units;
    for (std::uint32_t character = first; character != first + 64; ++character) {
      testing::appendUtf8(character, text);
      testing::appendUtf16(character, units);
    }
    ASSERT_TRUE(utf8ToUtf16(text, wide_, level_) && wide_ == units) << std::hex << first;
    ASSERT_TRUE(utf16ToUtf8(units, narrow_, level_) && narrow_ == text) << std::hex << first;
  }
}

TEST_P(Transcoder, TakesAsMuchMemoryAsTheTextNeeds) {
  string text(20000, 'x');
  for (std::size_t i = 0; i != 20000; ++i) text += "\u8a9e\u00e9\U0001F600";
  ASSERT_TRUE(utf8ToUtf16(text, wide_, level_) && utf16ToUtf8(wide_, narrow_, level_));
  EXPECT_LE(wide_.capacity(), wide_.size() + 8);
  EXPECT_LE(narrow_.capacity(), narrow_.size() + 8);
}

}  // namespace
}  // namespace kdx
