#include "kdxcommon/strings/wide_string.h"

#include <gtest/gtest.h>

#include <utility>

#include "kdxcommon/strings/case_folding_strings.h"
#include "kdxcommon/testing/wide_text.h"

namespace kdx {
namespace {

using testing::wide;

const string kNotUtf8 = "caf\xE9";
const wstring kNul(1, wchar{0});
const wstring kUnpaired = wide(u"caf") + wchar{0xD800};
const CWideString kHeld(string("caf\u00e9"));
const CWideString kUnconverted(kNotUtf8);

void expectHolds(const CWideString& text, const string& narrow, const wstring& units, bool initialized) {
  EXPECT_TRUE(text.aString() == narrow && text.utf8String() == narrow) << ::testing::PrintToString(text.aString());
  EXPECT_TRUE(text.wString() == units && text.utf16String() == units && text.utf16StringV2() == units) << narrow;
  EXPECT_EQ(text.initialized(), initialized) << ::testing::PrintToString(narrow);
}

template <typename Text>
void checkSetting(const Text& value, bool result, const string& narrow, const wstring& units) {
  EXPECT_TRUE(CWideString().set(value) == result && CWideString().set(Text(value)) == result);
  for (const CWideString& text :
       {CWideString(value), CWideString(Text(value)), CWideString(kHeld) = value, CWideString(kHeld) = Text(value)}) {
    expectHolds(text, narrow, units, result && !units.empty());
  }
}

TEST(WideString, IsSetFromEitherEncoding) {
  checkSetting(string(), true, "", {});
  checkSetting(string("caf\u00e9 \U0001F600"), true, "caf\u00e9 \U0001F600", wide(u"caf\u00e9 \U0001F600"));
  checkSetting(kNotUtf8, false, kNotUtf8, {});
  checkSetting(wstring(), true, "", {});
  checkSetting(wide(u"caf\u00e9 \U0001F600"), true, "caf\u00e9 \U0001F600", wide(u"caf\u00e9 \U0001F600"));
  checkSetting(kUnpaired, false, "", {});
}

TEST(WideString, TakesItsOwnTextAndThatOfAMovedOne) {
  CWideString text(kHeld);
  EXPECT_TRUE(text.set(text.aString()) && text == kHeld && text.set(text.wString()) && text == kHeld);
  const CWideString moved(std::move(text += text));
  expectHolds(moved, "caf\u00e9caf\u00e9", wide(u"caf\u00e9caf\u00e9"), true);
  expectHolds(text, "", {}, false);  // NOLINT(bugprone-use-after-move): its state is told
}

TEST(WideString, ComparesUtf16Forms) {
  const CWideString texts[] = {kHeld, kUnconverted, string("ascii"), string("\u4e2d\u6587"), kNul, kNul + kNul};
  for (const CWideString& left : texts) {
    for (const CWideString& right : texts) {
      const bool equal = left.wString() == right.wString();
      EXPECT_TRUE((left == right) == equal && (left == right.wString()) == equal);
      EXPECT_EQ(left == right.aString(), left == CWideString(right.aString()));
    }
  }
  EXPECT_TRUE(CWideString() == kUnpaired && kHeld != kUnpaired);
  const CWideString folded = CUpperCaseWString(kUnpaired).utf();
  EXPECT_TRUE(folded != folded.wString() && folded == folded && folded != wstring());
  EXPECT_TRUE(CUpperCaseString("a").utf() == wide(u"A"));
}

TEST(WideString, IsCopiedIntoTheMemoryThatItHas) {
  CWideString text(string(20, 'x'));
  const char* const memory = text.aString().data();
  for (const CWideString& source : {kHeld, text, kUnconverted, CWideString()}) {
    EXPECT_EQ((text = source).aString().data(), memory);
    expectHolds(text, source.aString(), source.wString(), source.initialized());
  }
}

}  // namespace
}  // namespace kdx
