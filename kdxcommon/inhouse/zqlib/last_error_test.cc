#include "kdxcommon/inhouse/zqlib/last_error.h"

#include <gtest/gtest.h>

#include "kdxcommon/os/operating_system_wrapper.h"

namespace kdx {
namespace {

TEST(LastError, KnowsItsOwnNumbersFromTheSystems) {
  const struct {
    std::uint32_t number;
    bool isSystems;
    const char* text;
  } rows[] = {
      {0, false, "No error"},
      {2, true, "No such file or directory"},
      {0x56000002, false, "Invalid argument"},
      {0x56000077, false, "Error 1442840695"},
      {0x16000001, false, "Database: row not found"},
      {0x16FFFFFF, false, "Error 385875967"},
      {0x15FFFFFF, true, "Error 369098751"},
      {0x80070002, true, "Error 2147942402"},
  };
  for (const auto& row : rows) {
    const ZQLastError error(row.number, ZQLE_MINOR);
    EXPECT_EQ(error.isOSError(), row.isSystems) << row.number;
    EXPECT_STREQ(error.message(), row.text);
  }
}

TEST(LastError, PutsItsArgumentsBehindItsText) {
  ZQLastError error(0x56000006, ZQLE_MAJOR);
  EXPECT_STREQ(error.message(), "A call of an interface failed");
  EXPECT_TRUE(error.addArgument("100%1 %s"));
  EXPECT_STREQ(error.message(), "A call of an interface failed: 100%1 %s");
  const ZQLastError copy = error;
  EXPECT_TRUE(error.addArgument(4294967295U));
  EXPECT_TRUE(error.addArgument(nullptr));
  EXPECT_STREQ(error.message(), "A call of an interface failed: 100%1 %s, 4294967295, ");
  EXPECT_STREQ(copy.message(), "A call of an interface failed: 100%1 %s");
  error.setNumber(0x56000004);
  EXPECT_TRUE(error.isMajor());
  EXPECT_STREQ(error.message(), "File not found: 100%1 %s, 4294967295, ");
  error.setCritical(0x56000004);
  EXPECT_STREQ(error.message(), "File not found");
  error.clear();
  EXPECT_EQ(error.number(), 0U);
  EXPECT_TRUE(error.isInformational());
}

// Ends its texts with a line break, as some systems do.
struct BreakingSystem : OperatingSystemWrapper {
  std::uint32_t FormatMessageA(std::uint32_t, const void*, std::uint32_t, std::uint32_t, char** buffer,
                               std::uint32_t) override {
    ++asked;
    *buffer = text;
    return sizeof text - 1;
  }
  void LocalFree(void* memory) override { released += memory == text; }

  char text[13] = "Disk full.\r\n";
  int asked = 0;
  int released = 0;
};

TEST(LastError, AsksTheSystemOnceAndReleasesItsText) {
  BreakingSystem system;
  const ScopedOperatingSystem scope(system);
  const ZQLastError error(112, ZQLE_CRITICAL);
  EXPECT_STREQ(error.message(), "Disk full.");
  EXPECT_EQ(error.message(), error.message());
  EXPECT_EQ(system.asked, 1);
  EXPECT_EQ(system.released, 1);
}

}  // namespace
}  // namespace kdx
