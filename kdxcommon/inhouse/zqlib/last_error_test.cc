#include "kdxcommon/inhouse/zqlib/last_error.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>

#include "kdxcommon/os/operating_system_wrapper.h"

namespace kdx {
namespace {

// Knows the numbers 5 (with the line break that some systems add) and 6 (with nothing else), counts what it is asked
// for and what it has not got back.
struct TextsOfTheSystem : OperatingSystemWrapper {
  std::uint32_t FormatMessageA(std::uint32_t flags, const void*, std::uint32_t number, std::uint32_t, char** buffer,
                               std::uint32_t) override {
    EXPECT_EQ(flags, 0x1300U);
    ++asked;
    if (number != 5 && number != 6) return 0;
    *buffer = ::strdup(number == 5 ? "Access is denied.\r\n" : "\r\n");
    ++held;
    return static_cast<std::uint32_t>(std::strlen(*buffer));
  }
  void LocalFree(void* memory) override {
    --held;
    std::free(memory);
  }
  int asked = 0;
  int held = 0;
};

TEST(LastErrorTest, TellsItsOwnNumbersFromTheSystems) {
  TextsOfTheSystem system;
  const ScopedOperatingSystem scope(system);
  const struct {
    std::uint32_t number;
    bool isSystems;
    const char* text;
  } rows[] = {
      {0, false, "No error"},
      {5, true, "Access is denied."},
      {6, true, "Error 6"},
      {0xFFFFFFFF, true, "Error 4294967295"},
      {0x55FFFFFF, true, "Error 1442840575"},
      {0x56000002, false, "Invalid argument"},
      {0x56000077, false, "Error 1442840695"},
      {0x16000025, false, "Database: out of disk space"},
      {0x17000000, true, "Error 385875968"},
  };
  for (const auto& row : rows) {
    const ZQLastError error(row.number, ZQLE_MINOR);
    EXPECT_EQ(error.isOSError(), row.isSystems) << row.number;
    EXPECT_STREQ(error.message(), row.text);
  }
  EXPECT_EQ(system.asked, 5);
  EXPECT_EQ(system.held, 0);
}

TEST(LastErrorTest, KeepsATextUntilTheErrorChanges) {
  TextsOfTheSystem system;
  const ScopedOperatingSystem scope(system);
  ZQLastError error(5, ZQLE_MAJOR);
  const char* text = error.message();
  EXPECT_EQ(error.message(), text);
  EXPECT_EQ(system.asked, 1);

  error.addArgument("100%1 %s.xml");
  error.addArgument(77);
  error.addArgument(nullptr);
  EXPECT_STREQ(error.message(), "Access is denied.: 100%1 %s.xml, 77, ");
  error.setNumber(0x56000004);
  const ZQLastError copy = error;
  EXPECT_STREQ(copy.message(), "File not found: 100%1 %s.xml, 77, ");
  EXPECT_TRUE(copy.isMajor());
  error.setCritical(0x56000004);
  EXPECT_STREQ(error.message(), "File not found");
  EXPECT_TRUE(error.isCritical());
  error.clear();
  EXPECT_STREQ(error.message(), "No error");
  EXPECT_TRUE(error.isInformational());
}

}  // namespace
}  // namespace kdx
