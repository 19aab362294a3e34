#include "kdxcommon/platform/text_helpers.h"

#include <cctype>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <memory>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "kdxcommon/testing/slow_text_helpers.h"
#include "kdxcommon/testing/wide_text.h"

namespace kdx::testing {
namespace {

wstring widened(std::string_view bytes) {
  wstring wide;
  for (const char byte : bytes) wide += static_cast<unsigned char>(byte);
  return wide;
}

/// Texts that look like what the helpers read, now and then.
class RandomTexts {
 public:
  std::string next(std::string_view alphabet) {
    std::string text(random_() % 24, '\0');
    for (char& unit : text) unit = alphabet[random_() % alphabet.size()];
    return text;
  }

 private:
  std::mt19937 random_{20100805};
};

TEST(TextHelpers, WholeNumbers) {
  constexpr std::int64_t kLargest = std::numeric_limits<std::int64_t>::max();
  constexpr std::int64_t kSmallest = std::numeric_limits<std::int64_t>::min();
  const struct {
    std::string text;
    std::int32_t narrow;
    std::int64_t wide;
  } kRows[] = {
      {"", 0, 0},
      {"files", 0, 0},
      {"12 files", 12, 12},
      {" \t\n\v\f\r+7", 7, 7},
      {"-5", -5, -5},
      {"- 5", 0, 0},
      {"+-5", 0, 0},
      {"0x1f", 0, 0},
      {std::string("1\0002", 3), 1, 1},
      {"1\xC2\xA0", 1, 1},
      {"\xA0"
       "1",
       0, 0},
      {"2147483648", std::numeric_limits<std::int32_t>::min(), 2147483648},
      {"4294967295", -1, 4294967295},
      {"-4294967295", 1, -4294967295},
      {"4294967296", -1, 4294967296},
      {"-4294967296", -1, -4294967296},
      {"9999999999", -1, 9999999999},
      {"000000000000000000000000000042", 42, 42},
      {"9223372036854775807", -1, kLargest},
      {"9223372036854775808", -1, kLargest},
      {"-9223372036854775808", -1, kSmallest},
      {"-9223372036854775809", -1, kSmallest},
      {"18446744073709551615", -1, kLargest},
      {"18446744073709551616", -1, kLargest},
      {"-99999999999999999999999999", -1, kSmallest},
  };
  for (const auto& row : kRows) {
    EXPECT_EQ(platformATOI(row.text), row.narrow) << row.text;
    EXPECT_EQ(platformATOL(row.text), row.narrow) << row.text;
    EXPECT_EQ(platformATOLL(row.text), row.wide) << row.text;
    EXPECT_EQ(platformWATOI(widened(row.text)), row.narrow) << row.text;
    EXPECT_EQ(platformWATOL(widened(row.text)), row.narrow) << row.text;
    EXPECT_EQ(platformWATOLL(widened(row.text)), row.wide) << row.text;
  }
  // Units whose low byte is a digit, a digit of another script, a blank of another script.
  for (const auto* text : {u"\u0131\u0132", u"\u0661", u"\u20031", u"\u01201"}) EXPECT_EQ(platformWATOI(wide(text)), 0);
}

TEST(TextHelpers, FloatingPointNumbers) {
  const double infinity = std::numeric_limits<double>::infinity();
  const struct {
    std::string text;
    double value;
  } kRows[] = {
      {"", 0},
      {"x", 0},
      {".", 0},
      {"-", 0},
      {"+-1", 0},
      {"-+1", 0},
      {" \t-1.5e3x", -1500},
      {"+.5", 0.5},
      {"5.", 5},
      {"1e", 1},
      {"1e+", 1},
      {"1,5", 1},
      {"1e999", infinity},
      {"-1e999", -infinity},
      {"1e-999", 0},
      {"0x1p4", 16},
      {"-0X.8", -0.5},
      {"0x", 0},
      {"0xg", 0},
      {"0x-1", 0},
      {"0xinf", 0},
      {"0x1p9999", infinity},
      {"0x1p-9999", 0},
      {"INFINITY", infinity},
      {"-infx", -infinity},
      {std::string("1\0002", 3), 1},
      {"1e99999999999999999999", infinity},
      {"1e-99999999999999999999", 0},
      {"0." + std::string(400, '0') + "1e402", 10},
      {"0." + std::string(400, '0') + "1", 0},
      {std::string(400, '9'), infinity},
      {std::string(400, '9') + "e-400", 1},
  };
  for (const auto& row : kRows) {
    EXPECT_EQ(platformATOF(row.text), row.value) << row.text;
    EXPECT_EQ(platformWATOF(widened(row.text)), row.value) << row.text;
  }
  EXPECT_TRUE(std::isnan(platformATOF("nan")));
  EXPECT_TRUE(std::isnan(platformWATOF(wide(u" nan"))));
  EXPECT_EQ(platformWATOF(wide(u"1\u0132")), 1);
}

TEST(TextHelpers, FormsOfTexts) {
  const struct {
    std::string text;
    bool numeric, hexadecimal, alphaNumeric;
  } kRows[] = {
      {"", false, false, false},
      {"0", true, true, true},
      {"0123456789", true, true, true},
      {"+", false, false, true},
      {"-", false, false, true},
      {"+12", true, false, true},
      {"-0", true, false, true},
      {"1-2", false, false, true},
      {"--1", false, false, true},
      {"1 2", false, false, true},
      {" 1", false, false, true},
      {"0x", false, false, true},
      {"0X1f", false, true, true},
      {"0xfF09", false, true, true},
      {"1fAF", false, true, true},
      {"x1f", false, false, true},
      {"00x1", false, false, true},
      {"0x0x1", false, false, true},
      {"fg", false, false, true},
      {"@`", false, false, true},
      {"two words!", false, false, true},
      {"~", false, false, true},
      {"\x7F", false, false, false},
      {"a\tb", false, false, false},
      {"caf\xC3\xA9", false, false, false},
      {std::string("1\0", 2), false, false, false},
  };
  for (const auto& row : kRows) {
    EXPECT_EQ(platformStringIsNumeric(row.text), row.numeric) << row.text;
    EXPECT_EQ(platformWStringIsNumeric(widened(row.text)), row.numeric) << row.text;
    EXPECT_EQ(platformStringIsHexadecimal(row.text), row.hexadecimal) << row.text;
    EXPECT_EQ(platformWStringIsHexadecimal(widened(row.text)), row.hexadecimal) << row.text;
    EXPECT_EQ(platformStringIsAlphaNumeric(row.text), row.alphaNumeric) << row.text;
  }
  for (const auto* text : {u"\u0131", u"\u0661", u"1\uFF11"}) {
    EXPECT_FALSE(platformWStringIsNumeric(wide(text)));
    EXPECT_FALSE(platformWStringIsHexadecimal(wide(text)));
  }
}

TEST(TextHelpers, CaseChangesUnitByUnit) {
  for (std::uint32_t unit = 1; unit <= 0xFFFF; ++unit) {
    wchar upper[] = {static_cast<wchar>(unit), 0};
    wchar lower[] = {static_cast<wchar>(unit), 0};
    const bool ascii = unit < 0x80;
    ASSERT_EQ(platformWStringUpper(upper), upper);
    ASSERT_EQ(platformWStringLower(lower), lower);
    ASSERT_EQ(upper[0], ascii ? std::toupper(static_cast<int>(unit)) : static_cast<int>(unit));
    ASSERT_EQ(lower[0], ascii ? std::tolower(static_cast<int>(unit)) : static_cast<int>(unit));
  }
  char text[] = "@AZ[`az{ caf\xC3\xA9 0\0az";
  EXPECT_EQ(platformStringUpper(text), text);
  EXPECT_EQ(std::string(text, sizeof text - 1), std::string("@AZ[`AZ{ CAF\xC3\xA9 0\0az", 19));
  EXPECT_STREQ(platformStringLower(text), "@az[`az{ caf\xC3\xA9 0");
  char empty[] = "";
  EXPECT_EQ(platformStringUpper(empty), empty);
  EXPECT_EQ(platformStringUpper(nullptr), nullptr);
  EXPECT_EQ(platformStringLower(nullptr), nullptr);
  EXPECT_EQ(platformWStringUpper(nullptr), nullptr);
  EXPECT_EQ(platformWStringLower(nullptr), nullptr);
}

TEST(TextHelpers, DuplicatesAreTheCallersToFree) {
  const char text[] = "text";
  const std::unique_ptr<char, decltype(&std::free)> copy(platformStringDuplicate(text), &std::free);
  const wstring wideText = wide(u"\u00C4\uFFFF text");
  const std::unique_ptr<wchar, decltype(&std::free)> wideCopy(platformWStringDuplicate(wideText.c_str()), &std::free);
  EXPECT_STREQ(copy.get(), text);
  EXPECT_NE(copy.get(), text);
  EXPECT_EQ(wstring(wideCopy.get()), wideText);
  EXPECT_EQ(platformStringDuplicate(nullptr), nullptr);
  EXPECT_EQ(platformWStringDuplicate(nullptr), nullptr);
}

TEST(TextHelpers, Escapings) {
  const struct {
    std::string text, quoted, search;
  } kRows[] = {
      {"", "", ""},
      {"plain", "plain", "plain"},
      {"\\\"", "\\\\\\\"", "\\5c\""},
      {"\"\"", "\\\"\\\"", "\"\""},
      {"\\2a", "\\\\2a", "\\5c2a"},
      {"a*(b)/c", "a*(b)/c", "a\\2a\\28b\\29\\2fc"},
      {std::string("\0*\xE9", 3), std::string("\0*\xE9", 3), std::string("\0\\2a\xE9", 5)},
  };
  for (const auto& row : kRows) {
    std::string quoted = row.text;
    EXPECT_TRUE(escapeDoubleQuote(quoted));
    EXPECT_EQ(quoted, row.quoted);
    std::string search = row.text;
    escapeADSIspecialChars(search);
    EXPECT_EQ(search, row.search);
    wstring wideSearch = widened(row.text);
    escapeADSIspecialChars(wideSearch);
    EXPECT_EQ(wideSearch, widened(row.search));
  }
  wstring lookAlikes = wide(u"\u012A\u0128\u015C");  // low bytes of * ( and backslash
  escapeADSIspecialChars(lookAlikes);
  EXPECT_EQ(lookAlikes, wide(u"\u012A\u0128\u015C"));
}

TEST(TextHelpers, AgreeWithTheSlowOnes) {
  RandomTexts texts;
  for (const char* alphabet : {"0123456789", "+- \t09x", "0123456789.eE+-", "0xX.9afpP+-1", "\\\"*()/ab"}) {
    for (int i = 0; i < 20000; ++i) {
      std::string text = texts.next(alphabet);
      if (alphabet[1] == 'x') text.insert(0, "0x");
      ASSERT_EQ(disagreeingHelper(text), nullptr) << text;
    }
  }
}

}  // namespace
}  // namespace kdx::testing
