#include "kdxcommon/settings/option_records.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <new>

namespace kdx {
namespace {

// A record made in memory that held other bytes before, and how many of these its constructor cleared.
template <typename Record>
struct Reused {
  Reused() {
    std::memset(memory, 0xAB, sizeof memory);
    record = new (memory) Record;
    cleared = std::count(std::begin(memory), std::end(memory), 0);
  }
  alignas(Record) unsigned char memory[sizeof(Record)];
  Record* record;
  std::ptrdiff_t cleared;
};

template <typename Record>
void expectWholeCopies() {
  Reused<Record> from, to;
  for (std::size_t i = 0; i < sizeof from.memory; ++i) from.memory[i] = static_cast<unsigned char>(i * 7 + i / 256);
  const Record& self = *to.record = *from.record;
  *to.record = self;  // changes nothing
  EXPECT_EQ(std::memcmp(to.memory, from.memory, sizeof to.memory), 0);
}

TEST(OptionRecords, AreClearedAsFarAsTheyMustAndCopiedWhole) {
  const Reused<subclientFiles> files;
  EXPECT_EQ(files.record->value32 + files.record->value64, 0U);
  EXPECT_EQ(files.cleared, 4 + 8 + 10);  // the numbers, and the first character of each text
  EXPECT_EQ(files.record->text1[0] | files.record->text5[0] | files.record->text10[0], 0);
  EXPECT_EQ(Reused<OptHdrAbars>().cleared, 44);
  expectWholeCopies<subclientFiles>();
  expectWholeCopies<OptHdrAbars>();
}

}  // namespace
}  // namespace kdx
