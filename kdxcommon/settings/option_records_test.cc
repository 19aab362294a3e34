#include "kdxcommon/settings/option_records.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <new>

namespace kdx {
namespace {

// In memory that held other bytes: how many bytes the constructor clears, and that an assignment copies them all.
template <typename Record>
void expectClearedAndCopied(std::ptrdiff_t clearedBytes) {
  alignas(Record) unsigned char memory[2][sizeof(Record)];
  std::memset(memory, 0xAB, sizeof memory);
  const Record& from = *new (memory[0]) Record;
  Record& to = *new (memory[1]) Record;
  EXPECT_EQ(std::ranges::count(memory[1], 0), clearedBytes);
  for (std::size_t i = 0; i < sizeof from; ++i) memory[0][i] = static_cast<unsigned char>(i * 7 + i / 256);
  const Record& itself = to = from;
  to = itself;
  EXPECT_TRUE(std::ranges::equal(memory[0], memory[1]));
}

TEST(OptionRecords, AreClearedAsFarAsTheyMustAndCopiedWhole) {
  expectClearedAndCopied<subclientFiles>(4 + 8 + 10);  // the numbers, and the first character of each text
  expectClearedAndCopied<OptHdrAbars>(44);
  const subclientFiles files;
  EXPECT_EQ(files.value32 + files.value64, 0U);
  EXPECT_EQ(files.text1[0] | files.text5[0] | files.text10[0], 0);
}

}  // namespace
}  // namespace kdx
