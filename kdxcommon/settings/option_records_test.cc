#include "kdxcommon/settings/option_records.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <initializer_list>
#include <memory>
#include <new>

namespace kdx {
namespace {

// A record made in memory that held other bytes before.
template <typename Record>
struct Reused {
  Reused() {
    std::memset(memory, 0xAB, sizeof memory);
    record = new (memory) Record;
  }
  bool operator==(const Reused& other) const { return std::memcmp(memory, other.memory, sizeof memory) == 0; }

  alignas(Record) unsigned char memory[sizeof(Record)];
  Record* record;
};

TEST(OptionRecords, ConstructionTouchesExactlyWhatItMust) {
  Reused<subclientFiles> files;
  std::size_t cleared = 4 + 8;
  for (const char* text :
       {files.record->text1, files.record->text2, files.record->text3, files.record->text4, files.record->text5,
        files.record->text6, files.record->text7, files.record->text8, files.record->text9, files.record->text10}) {
    EXPECT_EQ(text[0], '\0');
    ++cleared;
  }
  EXPECT_EQ(static_cast<std::size_t>(std::count(std::begin(files.memory), std::end(files.memory), 0)), cleared);
  EXPECT_EQ(files.record->value32, 0u);
  EXPECT_EQ(files.record->value64, 0u);

  const Reused<OptHdrAbars> header;
  EXPECT_EQ(std::count(std::begin(header.memory), std::end(header.memory), 0), 44);
}

template <typename Record>
void expectWholeCopies() {
  Reused<Record> from;
  for (std::size_t i = 0; i < sizeof from.memory; ++i) from.memory[i] = static_cast<unsigned char>(i * 7 + i / 256);
  Reused<Record> to;
  *to.record = *from.record;
  EXPECT_TRUE(to == from);
  const Record& same = *to.record;
  *to.record = same;
  EXPECT_TRUE(to == from);
}

TEST(OptionRecords, AssignmentCopiesEveryByte) {
  expectWholeCopies<subclientFiles>();
  expectWholeCopies<OptHdrAbars>();
}

}  // namespace
}  // namespace kdx
