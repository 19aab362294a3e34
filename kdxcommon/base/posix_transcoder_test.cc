// Compares each level of instructions with its slow twin, with the input before an inaccessible page: this detects
// vector reads beyond the end of a text even where a sanitizer doesn't check them.

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <random>

#include "fuzz/slow_transcoder.h"

namespace kdx {
namespace {

class GuardedMemory {
 public:
  GuardedMemory()
      : begin_(static_cast<char*>(
            ::mmap(nullptr, 2 * page_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0))) {
    EXPECT_EQ(::mprotect(begin_ + page_, page_, PROT_NONE), 0);
  }
  ~GuardedMemory() { ::munmap(begin_, 2 * page_); }

  template <typename Unit>
  std::basic_string_view<Unit> atEnd(std::basic_string_view<Unit> text) {
    auto* const copy = reinterpret_cast<Unit*>(begin_ + page_) - text.size();
    std::copy(text.begin(), text.end(), copy);
    return {copy, text.size()};
  }

 private:
  const std::size_t page_ = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
  char* begin_;
};

TEST(PosixTranscoder, ReadsNothingBehindTheInputAtAnyLevel) {
  const string pieces[] = {"a", string(40, 'b'), "\u00e9", "\u0416", "\u8a9e", "\U0001F600", "\x80", "\xE0"};
  GuardedMemory memory;
  std::mt19937 random(4096);
  for (int round = 0; round != 20000; ++round) {
    string text;
    const auto kinds = 1 + random() % 8;  // those of the end are rarer, so that most texts are right
    for (auto count = random() % 40; count != 0; --count) text += pieces[random() % kinds];
    const auto decoded = testing::decodeSlowly(text);
    const wstring units = decoded ? *decoded : wstring(text.begin(), text.end()) + static_cast<wchar>(0xD801);
    bool paired = false;
    const string encoded = testing::encodeSlowly(units, paired);
    for (const auto& [name, level] : testing::kInstructionLevels) {
      if (!offered(level)) continue;
      wstring wide;
      string narrow;
      ASSERT_EQ(utf8ToUtf16(memory.atEnd<char>(text), wide, level), decoded.has_value()) << name << ' ' << round;
      ASSERT_TRUE(wide == decoded.value_or(wstring())) << name << ' ' << round;
      utf16ToUtf8Replacing(memory.atEnd<wchar>(units), narrow, level);
      ASSERT_EQ(narrow, encoded) << name << ' ' << round;
    }
  }
}

}  // namespace
}  // namespace kdx
