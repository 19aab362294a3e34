// What the strings hold is in fuzz/case_folding_strings_fuzz.cc.

#include "kdxcommon/strings/case_folding_strings.h"

#include <gtest/gtest.h>

#include <utility>

namespace kdx {
namespace {

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
