#include "kdxcommon/inhouse/zqlib/last_error.h"

#include <gtest/gtest.h>

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
    *buffer = number == 5 ? known : empty;
    ++held;
    return static_cast<std::uint32_t>(std::strlen(*buffer));
  }
  void LocalFree(void*) override { --held; }
  char known[20] = "Access is denied.\r\n";
  char empty[3] = "\r\n";
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
      {0, false, "No error: 77, "},
      {5, true, "Access is denied.: 77, "},
      {6, true, "Error 6: 77, "},
      {0x56000003, false, "Insufficient memory: 77, "},
      {0x56000077, true, "Error 1442840695: 77, "},
      {0x16000025, false, "Database: out of disk space: 77, "},
      {0x17000000, true, "Error 385875968: 77, "},
  };
  ZQLastError error;
  error.addArgument(77);
  error.addArgument(nullptr);
  for (const auto& row : rows) {
    error.setNumber(row.number);
    EXPECT_EQ(error.isOSError(), row.isSystems) << row.number;
    EXPECT_STREQ(error.message(), row.text);
    EXPECT_STREQ(error.message(), row.text);  // the system is not asked again
  }
  EXPECT_EQ(system.asked, 4);
  EXPECT_EQ(system.held, 0);
  error.setCritical(0x56000004);
  error.addArgument("100%1 %s.xml");
  EXPECT_STREQ(error.message(), "File not found: 100%1 %s.xml");
}

}  // namespace
}  // namespace kdx
