#include "common/sql_text.h"

#include <gtest/gtest.h>

#include <tuple>

namespace ktl {
namespace {

TEST(SqlText, LiteralsByDialect) {
  const std::tuple<const char*, const char*, const char*> cases[] = {
      {"SQL", "O'Brien", "O''Brien"},
      {"mysql", "O'Brien", "O''Brien"},
      {"ACC97", "O'Brien", "O''Brien"},
      {"ORA", "O'Brien", "O''Brien"},
      {"SQL", "a|b\\c", "a|b\\c"},
      {"mysql", "a|b\\c", "a|b\\\\c"},
      {"Acc97", "a|b\\c", "a' & Chr$(124) & 'b\\c"},  // the quotes put in are not doubled
  };
  for (const auto& [dialect, text, literal] : cases)
    EXPECT_EQ(clsSPChar(dialect).FnStrSpSQL(text), literal) << dialect;
}

TEST(SqlText, PatternsAndFilterLiterals) {
  EXPECT_EQ(clsSPChar::FnStrSpLikeSQL("'[#|\""), "''[[][#]' & Chr$(124) & '\"");
  EXPECT_EQ(clsSPChar::FnStrSpFFSQL("'|"), "' & Chr$(39) & '' & Chr$(124) & '");
  EXPECT_EQ(clsSPChar::FnStrSpFFLikeSQL("[?*#'"), "[[][?][*][#]' & Chr$(39) & '");
  EXPECT_EQ(clsSPChar::FnStrChangeAllSp("O'B|r"), "O''Br");
  EXPECT_EQ(clsSPChar::FnStrClearAllSp("'|\"#[]"), "");
  EXPECT_EQ(clsSPChar::FnStrClearAllSp("a'b#c"), "abc");
}

TEST(SqlText, QuotesOfFindExpressions) {
  EXPECT_EQ(clsSPChar::FnStrSpRep("Rao"), "'Rao'");
  EXPECT_EQ(clsSPChar::FnStrSpRep("O'Brien"), "\"O'Brien\"");
  EXPECT_EQ(clsSPChar::FnStrSpRep("5\" pipe"), "'5\" pipe'");
  EXPECT_EQ(clsSPChar::FnStrSpRep("O'Brien's 5\""), "'OBriens 5\"'");
  EXPECT_EQ(clsSPChar::FnStrSpRep(""), "''");
}

TEST(SqlText, NumbersThatStandCloseTogetherAreASpan) {
  const auto among = [](const std::vector<long>& numbers) { return AmongNumbers("E", numbers); };
  EXPECT_EQ(among({12, 9, 10}), "E Between 9 And 12");
  EXPECT_EQ(among({10, 4}), "E In (10, 4)");
  EXPECT_EQ(among({7}), "E Between 7 And 7");
}

TEST(SqlText, OverwriteInFixedWidth) {
  EXPECT_EQ(clsSPChar::FnStrSpeReplace("abcdef", 3, "XY"), "abXYef");
  EXPECT_EQ(clsSPChar::FnStrSpeReplace("abcdef", 1, "XY"), "XYcdef");
  EXPECT_EQ(clsSPChar::FnStrSpeReplace("ab", 5, "XY"), "ab  XY");
  EXPECT_EQ(clsSPChar::FnStrSpeReplace("abc", 3, "XYZ"), "abXYZ");
  EXPECT_EQ(clsSPChar::FnStrSpeReplace("₹bcd", 2, "é"), "₹écd");
}

}  // namespace
}  // namespace ktl
