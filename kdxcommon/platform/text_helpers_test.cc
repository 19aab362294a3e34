#include "kdxcommon/platform/text_helpers.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>
#include <cwctype>
#include <memory>
#include <string>

#include "kdxcommon/testing/wide_text.h"

namespace kdx::testing {
namespace {

template <typename Unit>
Unit changed(Unit* (*change)(Unit*), int unit) {
  Unit text[] = {static_cast<Unit>(unit), 0};
  return *change(text);
}

TEST(TextHelpers, CasesAndPrintableBytesAreThoseOfTheLocale) {
  for (const char* locale : {"C", "C.UTF-8", "French_France.1252"}) {
    if (!std::setlocale(LC_CTYPE, locale)) continue;
    for (int unit = 1; unit <= 0xFFFF; ++unit) {
      const auto wideUnit = static_cast<std::wint_t>(unit);
      ASSERT_EQ(changed(platformWStringUpper, unit), static_cast<wchar>(std::towupper(wideUnit))) << unit;
      ASSERT_EQ(changed(platformWStringLower, unit), static_cast<wchar>(std::towlower(wideUnit))) << unit;
      if (unit > 0xFF) continue;
      ASSERT_EQ(changed(platformStringUpper, unit), static_cast<char>(std::toupper(unit))) << unit;
      ASSERT_EQ(changed(platformStringLower, unit), static_cast<char>(std::tolower(unit))) << unit;
      const bool printable = (std::isalnum(unit) || std::isprint(unit)) && unit != '\t';  // a tab is one for msvcrt
      ASSERT_EQ(platformStringIsAlphaNumeric(string(1, static_cast<char>(unit))), printable) << unit;
    }
  }
  std::setlocale(LC_CTYPE, "C");
}

TEST(TextHelpers, ArraysOfCharactersEndWithTheirNul) {
  char text[] = "[aZ] caf\xC3\xA9\0az";
  const wstring wideText = wide(u"\u00C4\uFFFF text");
  EXPECT_EQ(string(platformStringUpper(text), sizeof text), string("[AZ] CAF\xC3\xA9\0az", sizeof text));
  EXPECT_STREQ(platformStringLower(text), "[az] caf\xC3\xA9");
  const std::unique_ptr<char, decltype(&std::free)> copy(platformStringDuplicate(text), &std::free);
  const std::unique_ptr<wchar, decltype(&std::free)> wideCopy(platformWStringDuplicate(wideText.c_str()), &std::free);
  EXPECT_STREQ(copy.get(), text);
  EXPECT_EQ(wideCopy.get(), wideText);
  EXPECT_FALSE(platformStringUpper(nullptr) || platformWStringLower(nullptr) || platformStringDuplicate(nullptr));
}

}  // namespace
}  // namespace kdx::testing
