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
    const string pattern = text("aB*?", 8), name = text("aB?b", 10);
    const bool expected = slowMatch(pattern, name);
    ASSERT_EQ(Wildcard(pattern).matches(name), expected) << pattern << ' ' << name;
    matched += expected;
  }
  EXPECT_GT(matched, 1'000);
}

}  // namespace
}  // namespace kdx
