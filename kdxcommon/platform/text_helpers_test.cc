#include "kdxcommon/platform/text_helpers.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>
#include <cwctype>
#include <memory>
#include <random>
#include <sstream>
#include <vector>

#include "kdxcommon/testing/slow_text_helpers.h"
#include "kdxcommon/testing/wide_text.h"

namespace kdx::testing {
namespace {

TEST(TextHelpers, AgreeWithTheSlowOnes) {
  std::istringstream edges(
      "|-|+|- 5|+-5|--1|1-2| \t\v\f\r+7 x|\xA0 1|~|\x7F|0x|0X1f|00x1|x1|0x0x1|0x1p4|-0X.8p|0xg|0x-1|0xinf|0xfp+-9|"
      "9223372036854775808|-9223372036854775809|18446744073709551616|.|1e|1e+|1,5|INFINITY|-infx|nan|1e999|-1e999|"
      "1e-999|-x|-.|-0|-0x|4e-324|0x1p9999|0x1p-9999|1e99999999999999999999|1e-99999999999999999999|4294967295|"
      "-4294967295|4294967296|-4294967296|-0x110fff.8f0808f18p-1043");
  const std::string zeros(400, '0');
  std::vector<std::string> texts = {
      {"1\0002", 3}, "0." + zeros + "1e402", "0." + zeros + "1", "1" + zeros + "e-400", "0x." + zeros + "1p500"};
  for (std::string text; std::getline(edges, text, '|');) texts.push_back(text);
  std::mt19937 random{20100805};
  for (const std::string alphabet :
       {"0123456789", "+- \t09x\xA0\xB1", "0123456789.eE+-", "xX.9afpP+-1", "\\\"*()/ab\xAA\xDC"}) {
    for (int i = 0; i < 20000; ++i) {
      std::string& text = texts.emplace_back(alphabet[0] == 'x' ? "0x" : "");
      for (auto length = random() % 24; length > 0; --length) text += alphabet[random() % alphabet.size()];
    }
  }
  for (const std::string& text : texts) ASSERT_EQ(disagreeingHelper(text), nullptr) << text;
}

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
