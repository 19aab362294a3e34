#include "kdxcommon/inhouse/zqlib/last_error.h"

#include <gtest/gtest.h>

#include <map>

#include "kdxcommon/os/operating_system_wrapper.h"

namespace kdx {
namespace {

// Ends its texts with a line break, as some systems do. Counts those that it has not got back.
struct TextsOfTheSystem : os::OperatingSystemWrapper {
  std::uint32_t FormatMessageA(std::uint32_t flags, const void*, std::uint32_t number, std::uint32_t, char** buffer,
                               std::uint32_t) override {
    EXPECT_EQ(flags, 0x1300U);
    if (!texts.contains(number)) return 0;
    ++held;
    *buffer = texts[number].data();
    return static_cast<std::uint32_t>(texts[number].size());
  }
  void LocalFree(void*) override { --held; }
  std::map<std::uint32_t, string> texts = {{5, "Access is denied.\r\n"}, {6, "\r\n"}};
  int held = 0;
};

TEST(LastErrorTest, TellsItsOwnNumbersFromTheSystems) {
  TextsOfTheSystem system;
  const os::ScopedOperatingSystem scope(system);
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
      {0x16000026, false, "Error 369098790: 77, "},
      {0x17000000, true, "Error 385875968: 77, "},
  };
  ZQLastError error;
  error.addArgument(77);
  error.addArgument(nullptr);
  for (const auto& row : rows) {
    error.setNumber(row.number);
    EXPECT_EQ(error.isOSError(), row.isSystems) << row.number;
    EXPECT_STREQ(error.message(), row.text);
  }
  EXPECT_EQ(system.held, 0);
  error.addArgument("100%1 %s.xml");
  EXPECT_STREQ(error.message(), "Error 385875968: 77, , 100%1 %s.xml");
  error.setCritical(0x56000004);
  EXPECT_STREQ(error.message(), "File not found");
}

}  // namespace
}  // namespace kdx
