#include "runtime/text.h"

#include <gtest/gtest.h>

namespace ktl {
namespace {

TEST(Texts, CaseOfLatin1Letters) {
  EXPECT_EQ(UpperCase("zoë àÿ÷ß1{"), "ZOË Àÿ÷ß1{");
  EXPECT_EQ(LowerCase("ZOË À×ÞA["), "zoë à×þa[");
  EXPECT_TRUE(EqualsNoCase("Zoë", "ZOË"));
  EXPECT_FALSE(EqualsNoCase("Zoë", "Zoe"));
  EXPECT_FALSE(EqualsNoCase("ab", "abc"));
}

TEST(Texts, CountCharactersNotBytes) {
  EXPECT_EQ(Length("₹ é"), 3U);
  EXPECT_EQ(Left("₹éab", 2), "₹é");
  EXPECT_EQ(Left("ab", 9), "ab");
  EXPECT_EQ(Left("é", 0), "");
}

TEST(Texts, SplitAndReplace) {
  using Parts = std::vector<std::string>;
  EXPECT_EQ(Split("a::b::", "::"), (Parts{"a", "b", ""}));
  EXPECT_EQ(Split("abc", "#"), Parts{"abc"});
  EXPECT_EQ(Split("", "#"), Parts{});
  EXPECT_EQ(ReplaceAll("aaa", "aa", "a"), "aa");
  EXPECT_EQ(ReplaceAll("O'Brien's", "'", "''"), "O''Brien''s");
  EXPECT_EQ(ReplaceAll("abc", "", "x"), "abc");
  EXPECT_EQ(Trim("  a b  "), "a b");
  EXPECT_EQ(Trim("   "), "");
}

}  // namespace
}  // namespace ktl
