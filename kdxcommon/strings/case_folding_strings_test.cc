#include "kdxcommon/strings/case_folding_strings.h"

#include <gtest/gtest.h>

#include <utility>

#include "kdxcommon/testing/wide_text.h"

namespace kdx {
namespace {

using testing::wide;

template <typename Object, typename Text>
void expectHolds(const Object& object, const Text& original, const wstring& folded, const string& utf8) {
  EXPECT_TRUE(object.original() == original) << ::testing::PrintToString(original);
  EXPECT_EQ(object.utf().aString(), utf8);
  EXPECT_TRUE(object.utf().wString() == folded) << utf8;
  EXPECT_FALSE(object.utf().initialized());
}

// Every way to put two texts into one object, and every way to clear it.
template <typename Object, typename Text>
void checkOperations(const Text& (Object::*foldedForm)() const, const Text& first, const Text& second,
                     const wstring& folded, const string& utf8) {
  using Character = typename Text::value_type;
  const Character* const null = nullptr;
  const Object left(first), right(second);
  for (const Object& sum : {left + right, left + second, left + second.c_str(), Object(first.c_str()) += second,
                            Object() + left + right, (Object(right) = first) += right, Object(second) = left + right}) {
    expectHolds(sum, first + second, folded, utf8);
    expectHolds(sum + Character() + Text() + null + Text().c_str() + Object(), first + second, folded, utf8);
    for (const Object& empty :
         {Object(sum) = Character(), Object(sum) = Text(), Object(sum) = null, Object(sum) = Text().c_str(),
         Object(sum) = Object(), Object(Character()), Object(null)}) {
      expectHolds(empty, Text(), {}, "");
    }
  }
  Object self(first + second);
  self = self.original();
  expectHolds(self = *&self, first + second, folded, utf8);
  expectHolds(self += self, self.original(), folded + folded, utf8 + utf8);
  EXPECT_TRUE(left.original() == first);  // no sum changed it
  Object withOwn(first);
  const Text own = (withOwn.*foldedForm)();
  withOwn += (withOwn.*foldedForm)();
  EXPECT_TRUE(withOwn.original() == first + own && (withOwn.*foldedForm)() == own + own);
}

TEST(CaseFoldingStrings, KeepATextBesideItsFoldedForms) {
  const string first = "Abc\u4e2d", second = "dE\U0001F600Z";
  const wstring wideFirst = wide(u"Abc\u4e2d"), wideSecond = wide(u"dE\U0001F600Z");
  const wstring upper = wide(u"ABC\u4e2dDE\U0001F600Z"), lower = wide(u"abc\u4e2dde\U0001F600z");
  checkOperations(&CUpperCaseString::upper, first, second, upper, "ABC\u4e2dDE\U0001F600Z");
  checkOperations(&CLowerCaseString::lower, first, second, lower, "abc\u4e2dde\U0001F600z");
  checkOperations(&CUpperCaseWString::upper, wideFirst, wideSecond, upper, "ABC\u4e2dDE\U0001F600Z");
  checkOperations(&CLowerCaseWString::lower, wideFirst, wideSecond, lower, "abc\u4e2dde\U0001F600z");
  EXPECT_EQ((CUpperCaseString('a') + 'b').upper(), "AB");
}

TEST(CaseFoldingStrings, EachHasAnErrorStateOfItsOwn) {
  CUpperCaseString failed("a");
  std::as_const(failed).kdxErrorTraits().setMajor(5);
  EXPECT_EQ(failed.errorID(), 5U);
  EXPECT_EQ(CUpperCaseString(failed).errorID(), 0U);
  CUpperCaseString assigned;
  assigned.setMinor(6);
  (((assigned = failed) += failed) += "\xFF") = "\xFF";
  EXPECT_EQ(assigned.errorID(), 6U);
}

}  // namespace
}  // namespace kdx
