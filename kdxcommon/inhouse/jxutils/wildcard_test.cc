#include "kdxcommon/inhouse/jxutils/wildcard.h"

#include <gtest/gtest.h>

#include <random>

namespace kdx {
namespace {

// Tries every length of every star.
bool slowMatch(string_view pattern, string_view name) {
  if (pattern.empty()) return name.empty();
  const bool oneMore = !name.empty() && (pattern[0] == '*' || pattern[0] == name[0]);
  if (pattern[0] != '*') return oneMore && slowMatch(pattern.substr(1), name.substr(1));
  return slowMatch(pattern.substr(1), name) || (oneMore && slowMatch(pattern, name.substr(1)));
}

TEST(WildcardTest, AgreesWithTryingEveryLengthOfEveryStar) {
  std::mt19937 random(20240229);
  auto text = [&](string_view alphabet, unsigned longest) {
    string result(random() % (longest + 1), ' ');
    for (char& c : result) c = alphabet[random() % alphabet.size()];
    return result;
  };
  int matched = 0;
  for (int round = 0; round < 200'000; ++round) {
    const string pattern = text("ab*", 8), name = text("ab", 10);
    const bool expected = slowMatch(pattern, name);
    ASSERT_EQ(Wildcard(pattern).matches(name), expected) << pattern << ' ' << name;
    matched += expected;
  }
  EXPECT_GT(matched, 10'000);
}

TEST(WildcardTest, OnlyTheStarIsSpecial) {
  EXPECT_TRUE(Wildcard("D_JOB_*_*.txt").matches("D_JOB_3456_ITR_-1.txt"));
  EXPECT_FALSE(Wildcard("D_JOB_*_*.txt").matches("d_JOB_3456_ITR_-1.TXT"));
  EXPECT_FALSE(Wildcard("?.[a]\\*").matches("x.a\\b"));
  EXPECT_TRUE(Wildcard("?.[a]\\*").matches("?.[a]\\\xC3"));
}

}  // namespace
}  // namespace kdx
