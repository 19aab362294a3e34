#include "kdxcommon/strings/wide_string.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "kdxcommon/inhouse/zqlib/utf_conversion.h"
#include "kdxcommon/logging/error_traits.h"
#include "kdxcommon/testing/wide_text.h"

namespace kdx {
namespace {

using testing::wide;

const string kNotUtf8 = "caf\xE9";
const string kNul(1, '\0');

wstring unpaired() {
  return wide(u"caf") + wchar{0xD800};
}

::testing::AssertionResult holds(const CWideString& text, const string& narrow, const wstring& wide, bool initialized) {
  const bool same = text.aString() == narrow && text.utf8String() == narrow && text.wString() == wide &&
                    text.utf16String() == wide && text.utf16StringV2() == wide && text.initialized() == initialized;
  return ::testing::AssertionResult(same) << ::testing::PrintToString(text.aString()) << ", " << text.wString().size()
                                          << " units, initialized " << text.initialized();
}

const CWideString kEmpty;
const CWideString kHeld(string("caf\u00e9"));
const CWideString kUnconverted(kNotUtf8);

// Every way to set a text comes to the same, whatever the object held.
template <typename Text>
void checkSetting(const Text& value, bool result, const string& narrow, const wstring& wide, bool initialized) {
  EXPECT_TRUE(holds(CWideString(value), narrow, wide, initialized));
  EXPECT_TRUE(holds(CWideString(Text(value)), narrow, wide, initialized));
  for (const CWideString& before : {kEmpty, kHeld, kUnconverted}) {
    CWideString text(before);
    EXPECT_EQ(text.set(value), result);
    EXPECT_TRUE(holds(text, narrow, wide, initialized));
    EXPECT_TRUE(holds(text = before, before.aString(), before.wString(), before.initialized()));
    EXPECT_EQ(text.set(Text(value)), result);
    EXPECT_TRUE(holds(text, narrow, wide, initialized));
    EXPECT_TRUE(holds(CWideString(before) = value, narrow, wide, initialized));
    EXPECT_TRUE(holds(CWideString(before) = Text(value), narrow, wide, initialized));
    text.clear();
    EXPECT_TRUE(holds(text, "", {}, false));
  }
}

TEST(WideString, IsSetFromEitherEncoding) {
  const string mixed = "caf\u00e9 \U0001F600";
  const wstring mixedUnits = wide(u"caf\u00e9 \U0001F600");
  const wstring nulInside = wide(u"a") + wchar{0} + wide(u"b");
  checkSetting(string(), true, "", {}, false);
  checkSetting(mixed, true, mixed, mixedUnits, true);
  checkSetting(kNotUtf8, false, kNotUtf8, {}, false);
  checkSetting("a" + kNul + "b", true, "a" + kNul + "b", nulInside, true);
  checkSetting(wstring(), true, "", {}, false);
  checkSetting(mixedUnits, true, mixed, mixedUnits, true);
  checkSetting(unpaired(), false, "", {}, false);
  // For the conversion a wide text ends at its first NUL; what follows isn't even looked at.
  checkSetting(nulInside, true, "a", nulInside, true);
  checkSetting(wchar{0} + unpaired(), true, "", wchar{0} + unpaired(), true);
}

TEST(WideString, IsSetFromItsOwnText) {
  CWideString text(kHeld);
  EXPECT_TRUE(text.set(text.aString()));
  EXPECT_EQ(text, kHeld);
  EXPECT_TRUE(text.set(text.wString()));
  EXPECT_EQ(text, kHeld);
  text += text;
  text += text.aString();
  EXPECT_TRUE(holds(text, "caf\u00e9caf\u00e9caf\u00e9caf\u00e9", wide(u"caf\u00e9caf\u00e9caf\u00e9caf\u00e9"), true));
}

TEST(WideString, TakesLongTextsOverWithoutCopying) {
  string narrow(1000, 'x');
  const void* const memory = narrow.data();
  CWideString fromNarrow(std::move(narrow));
  const CWideString moved(std::move(fromNarrow));
  EXPECT_EQ(moved.aString().data(), memory);
  EXPECT_TRUE(moved.initialized());
  EXPECT_TRUE(holds(fromNarrow, "", {}, false));  // NOLINT(bugprone-use-after-move): its state is told
}

TEST(WideString, ComparesUtf16Forms) {
  const std::vector<string> narrows = {"",           "a",      "A",       "caf\u00e9", "cafe\u0301", "\u4e2d\u6587",
                                       "\U0001F600", kNotUtf8, "a" + kNul};
  const std::vector<wstring> wides = {
      {}, wide(u"a"), wide(u"caf\u00e9"), unpaired(), wide(u"a") + wchar{0} + unpaired(), wide(u"a") + wchar{0}};
  std::vector<CWideString> texts(narrows.begin(), narrows.end());
  texts.insert(texts.end(), wides.begin(), wides.end());
  for (const CWideString& left : texts) {
    const auto check = [&](const auto& right, const CWideString& asText) {
      const bool equal = left.wString() == asText.wString();
      EXPECT_EQ(left == right, equal);
      EXPECT_EQ(right == left, equal);
      EXPECT_EQ(left != right, !equal);
      EXPECT_EQ(right != left, !equal);
    };
    for (const string& right : narrows) check(right, CWideString(right));
    for (const wstring& right : wides) check(right, CWideString(right));
    for (const CWideString& right : texts) check(right, right);
  }
}

template <typename Operand>
void checkSum(const CWideString& left, const Operand& right, const CWideString& expected, bool initialized) {
  CWideString sum(left);
  EXPECT_EQ(&(sum += right), &sum);
  EXPECT_TRUE(holds(sum, expected.aString(), expected.wString(), initialized));
  EXPECT_TRUE(holds(left + right, expected.aString(), expected.wString(), initialized));
}

TEST(WideString, Concatenates) {
  const CWideString twice(string("caf\u00e9caf\u00e9"));
  checkSum(kHeld, kHeld, twice, true);
  checkSum(kHeld, kHeld.aString(), twice, true);
  checkSum(kHeld, kHeld.wString(), twice, true);
  checkSum(kHeld, kEmpty, kHeld, true);
  checkSum(kHeld, string(), kHeld, true);
  checkSum(kHeld, wstring(), kHeld, true);
  checkSum(kHeld, kUnconverted, kHeld, true);
  // An object that isn't initialized takes the text of another, but not its flag; any other text replaces its own.
  checkSum(kEmpty, kHeld, kHeld, false);
  checkSum(kUnconverted, kUnconverted, kUnconverted, false);
  for (const CWideString& left : {kEmpty, kUnconverted}) {
    checkSum(left, kHeld.aString(), kHeld, true);
    checkSum(left, kHeld.wString(), kHeld, true);
    checkSum(left, string(), kEmpty, false);
    checkSum(left, wstring(), kEmpty, false);
  }
}

template <typename Operand>
void checkRefusal(const CWideString& left, const Operand& right, const string& narrow, const wstring& wide) {
  CWideString sum(left);
  try {
    sum += right;
    ADD_FAILURE() << "no exception";
  } catch (const CWideString::WSConcatenateExceptions_e exception) {
    EXPECT_EQ(exception, 1);
  }
  EXPECT_TRUE(holds(sum, narrow, wide, left.initialized()));
  EXPECT_THROW(left + right, CWideString::WSConcatenateExceptions_e);
}

TEST(WideString, RefusesToAppendWhatIsNotInItsEncoding) {
  checkRefusal(kHeld, kNotUtf8, kHeld.aString(), kHeld.wString());
  checkRefusal(kHeld, unpaired(), kHeld.aString(), kHeld.wString());
  checkRefusal(kEmpty, kNotUtf8, kNotUtf8, {});
  checkRefusal(kUnconverted, unpaired(), "", {});
}

TEST(WideString, ConvertsWithoutState) {
  KDXErrorTraits errors;
  string out = "before";
  const std::vector<std::pair<wstring, string>> cases = {{{}, ""},
                                                         {wide(u"caf\u00e9"), "caf\u00e9"},
                                                         {unpaired() + wide(u"!"), "caf\uFFFD!"},
                                                         {wide(u"a") + wchar{0} + wide(u"b"), "a"}};
  for (const auto& [in, expected] : cases) {
    EXPECT_TRUE(kHeld.convert(in, out, errors));
    EXPECT_EQ(out, expected);
  }
  EXPECT_EQ(errors.errorID(), 0U);
  // The form for a pointer reads nothing behind the NUL either.
  EXPECT_NE(WideChar2UTF8String((wide(u"caf\u00e9") + wchar{0} + unpaired()).c_str(), out), 0);
  EXPECT_EQ(out, "caf\u00e9");
}

}  // namespace
}  // namespace kdx
