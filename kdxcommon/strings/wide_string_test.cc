// What an object holds, appends and compares equal to is in fuzz/wide_string_fuzz.cc.

#include "kdxcommon/strings/wide_string.h"

#include <gtest/gtest.h>

#include <utility>

#include "kdxcommon/strings/case_folding_strings.h"
#include "kdxcommon/testing/wide_text.h"

namespace kdx {
namespace {

using testing::wide;

const CWideString kHeld(string("caf\u00e9"));

TEST(WideString, TakesItsOwnTextAndThatOfAMovedOne) {
  CWideString text(kHeld);
  EXPECT_TRUE(text.set(text.aString()) && text == kHeld && text.set(text.wString()) && text == kHeld);
  const CWideString moved(std::move(text += text));
  EXPECT_TRUE(moved.aString() == "caf\u00e9caf\u00e9" && moved == wide(u"caf\u00e9caf\u00e9") && moved.initialized());
  // NOLINTNEXTLINE(bugprone-use-after-move): its state is told
  EXPECT_TRUE(text.aString().empty() && text.wString().empty() && !text.initialized());
}

TEST(WideString, ThatIsUnsetComparesAsEmptyToWhatItWouldRefuse) {
  const wstring unpaired = wide(u"caf") + wchar{0xD800};
  EXPECT_TRUE(CWideString() == unpaired && kHeld != unpaired);
  const CWideString folded = CUpperCaseWString(unpaired).utf();
  EXPECT_TRUE(folded != folded.wString() && folded == folded && folded != wstring());
  EXPECT_TRUE(CUpperCaseString("a").utf() == wide(u"A"));
}

TEST(WideString, IsCopiedIntoTheMemoryThatItHas) {
  CWideString text(string(20, 'x'));
  const char* const memory = text.aString().data();
  for (const CWideString& source : {kHeld, text, CWideString(string("caf\xE9")), CWideString()}) {
    EXPECT_EQ((text = source).aString().data(), memory);
    EXPECT_TRUE(text.aString() == source.aString() && text == source && text.initialized() == source.initialized());
  }
}

}  // namespace
}  // namespace kdx
