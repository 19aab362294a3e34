#include "kdxcommon/platform/text_helpers.h"

#include <gtest/gtest.h>

#include <cctype>
#include <clocale>
#include <cstdlib>
#include <cwctype>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "kdxcommon/testing/slow_text_helpers.h"
#include "kdxcommon/testing/wide_text.h"

namespace kdx::testing {
namespace {

TEST(TextHelpers, AgreeWithTheSlowOnesAtTheEdges) {
  std::istringstream texts(
      "|2147483650|-4294967295|4294967296|-4294967296"
      "|-|+|- 5|+-5|--1|1-2| \t\v\f\r+7 x|\xA0 1|~|\x7F|0x|0X1f|00x1|x1|0x0x1|0x1p4|-0X.8p|0xg|0x-1|0xinf|0xfp+-9|"
      "9223372036854775808|-9223372036854775809|18446744073709551616|.|1e|1e+|1,5|INFINITY|-infx|nan|1e999|-1e999|"
      "1e-999|-x|-.|-0|-0x|4e-324|0x1p9999|0x1p-9999|1e99999999999999999999|1e-99999999999999999999");
  const std::string zeros(400, '0');
  std::vector<std::string> edges = {{"1\0002", 3}, "0." + zeros + "1e402", "0." + zeros + "1", "1" + zeros + "e-400"};
  for (std::string text; std::getline(texts, text, '|');) edges.push_back(text);
  for (const std::string& text : edges) EXPECT_EQ(disagreeingHelper(text), nullptr) << text;
}

TEST(TextHelpers, AgreeWithTheSlowOnesOnRandomTexts) {
  std::mt19937 random{20100805};
  for (const std::string alphabet : {"0123456789", "+- \t09x", "0123456789.eE+-", "xX.9afpP+-1", "\\\"*()/ab"}) {
    for (int i = 0; i < 20000; ++i) {
      std::string text(random() % 24, '\0');
      for (char& unit : text) unit = alphabet[random() % alphabet.size()];
      if (alphabet[0] == 'x') text.insert(0, "0x");
      ASSERT_EQ(disagreeingHelper(text), nullptr) << text;
    }
  }
}

TEST(TextHelpers, WideUnitsOutsideAsciiAreNothing) {
  // Low bytes of a digit, a blank, an asterisk; a digit and a blank of other scripts.
  for (const auto* units : {u"\u0131", u"\u01201", u"\u012A", u"\u0661", u"\uFF11", u"\u20031"}) {
    wstring text = wide(units);
    EXPECT_EQ(platformWATOI(text), 0);
    EXPECT_EQ(platformWATOF(text), 0);
    EXPECT_FALSE(platformWStringIsNumeric(text));
    EXPECT_FALSE(platformWStringIsHexadecimal(text));
    escapeADSIspecialChars(text);
    EXPECT_EQ(text, wide(units));
  }
}

TEST(TextHelpers, CasesAndPrintableBytesAreThoseOfTheLocale) {
  const auto oneUnit = [](std::uint32_t changed, int unit) {
    return changed <= 0xFFFF ? static_cast<int>(changed) : unit;
  };
  for (const char* locale : {"C", "C.UTF-8", "French_France.1252"}) {
    if (!std::setlocale(LC_CTYPE, locale)) continue;
    for (int unit = 1; unit <= 0xFFFF; ++unit) {
      wchar upper[] = {static_cast<wchar>(unit), 0}, lower[] = {static_cast<wchar>(unit), 0};
      const auto wide = static_cast<std::wint_t>(unit);
      ASSERT_EQ(platformWStringUpper(upper)[0], oneUnit(std::towupper(wide), unit)) << unit;
      ASSERT_EQ(platformWStringLower(lower)[0], oneUnit(std::towlower(wide), unit)) << unit;
    }
    for (int byte = 1; byte <= 0xFF; ++byte) {
      char upper[] = {static_cast<char>(byte), 0}, lower[] = {static_cast<char>(byte), 0};
      const bool printable = std::isalnum(byte) || std::isprint(byte);
      ASSERT_EQ(platformStringIsAlphaNumeric(upper), printable && byte != '\t') << byte;  // printable for msvcrt
      ASSERT_EQ(platformStringUpper(upper)[0], static_cast<char>(std::toupper(byte))) << byte;
      ASSERT_EQ(platformStringLower(lower)[0], static_cast<char>(std::tolower(byte))) << byte;
    }
    wchar letter[] = {0xE9, 0};
    EXPECT_EQ(platformWStringUpper(letter)[0], string_view(locale) == "C" ? std::towupper(0xE9) : 0xC9);
  }
  std::setlocale(LC_CTYPE, "C");
}

TEST(TextHelpers, ArraysOfCharacters) {
  char text[] = "@AZ[`az{ caf\xC3\xA9\0az";
  EXPECT_STREQ(platformStringUpper(text), "@AZ[`AZ{ CAF\xC3\xA9");
  EXPECT_STREQ(text + sizeof text - 3, "az");  // behind the NUL
  EXPECT_STREQ(platformStringLower(text), "@az[`az{ caf\xC3\xA9");
  const std::unique_ptr<char, decltype(&std::free)> copy(platformStringDuplicate(text), &std::free);
  EXPECT_STREQ(copy.get(), text);
  EXPECT_NE(copy.get(), text);
  EXPECT_FALSE(platformStringUpper(nullptr) || platformStringLower(nullptr) || platformStringDuplicate(nullptr));
  EXPECT_FALSE(platformWStringUpper(nullptr) || platformWStringLower(nullptr) || platformWStringDuplicate(nullptr));
}

}  // namespace
}  // namespace kdx::testing
