#include "kdxcommon/inhouse/jxutils/jx_string.h"

#include <gtest/gtest.h>

#include <array>
#include <climits>

namespace kdx {
namespace {

TEST(JxStringTest, JoinsTextsAndNumbersOfEveryKind) {
  const CJxString prefix("KDX");
  EXPECT_EQ(prefix + "_SC_" + UINT32_MAX + CJxString('_') + INT64_MIN + "/" + CJxString(-7) + 0 + nullptr,
            "KDX_SC_4294967295_-9223372036854775808/-70");
  EXPECT_EQ("<" + prefix + CJxString(INT64_MAX), "<KDX9223372036854775807");
}

TEST(JxStringTest, FindsAndCutsWithinTheText) {
  const CJxString name("JOB_3456_JOB_1.txt");
  const int found[] = {name.Find("JOB", -3), name.Find("JOB", 1), name.Find("ITR", 0), name.Find('.', 8),
                       name.Find('.', INT_MAX)};
  EXPECT_EQ(std::to_array(found), (std::array{0, 9, -1, 14, -1}));
  EXPECT_EQ(name.SubStr(4, 4) + "/" + name.SubStr(14, INT_MAX) + "/" + name.SubStr(-2, 3), "3456/.txt/JOB");
  EXPECT_EQ(name.SubStr(18, 1) + name.SubStr(INT_MAX, INT_MAX) + name.SubStr(2, -5), "");
}

}  // namespace
}  // namespace kdx
