#include "runtime/numbers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <tuple>

#include "runtime/errors.h"
#include "support/errors.h"

namespace ktl {
namespace {

TEST(Numbers, FormatByPattern) {
  const std::tuple<double, const char*, const char*> cases[] = {
      {2.675, "0.00", "2.68"},  // the binary value lies below the half, its decimal text does not
      {1.005, "0.00", "1.01"},
      {-2.5, "####", "-3"},
      {2.5, "####", "3"},
      {0.5, "####", "1"},
      {0.3, "####", ""},
      {-0.3, "####", ""},
      {0, "####.##", ""},
      {-0.004, "0.00", "0.00"},
      {-0.005, "0.00", "-0.01"},
      {99999.5, "####", "100000"},
      {9.995, "0.00", "10.00"},
      {5, "###.##", "5."},
      {5.1, "###.##", "5.1"},
      {0.5, "###.##", ".5"},
      {10.5, "####.00", "10.50"},
      {0.5, "####.00", ".50"},
      {0, "####.00", ".00"},
      {0, "0", "0"},
      {7, "00", "07"},
      {107, "00", "107"},
      {12345, "000000000", "000012345"},
      {12345678901, "000000000", "12345678901"},
      {1.23456, "0.0000", "1.2346"},
      {3, "0.0", "3.0"},
      {1234567.5, "#,##,###.00", "12,34,567.50"},
      {-123456789, "#,##,##0.00", "-12,34,56,789.00"},
      {999.999, "#,##,###.00", "1,000.00"},
      {100, "#,##,###.00", "100.00"},
      {1234567, "#,###", "1,234,567"},
      {1e20, "0", "100000000000000000000"},
  };
  for (const auto& [value, pattern, text] : cases)
    EXPECT_EQ(FormatNumber(value, pattern), text) << value << " by " << pattern;
  EXPECT_THROW(FormatNumber(std::numeric_limits<double>::infinity(), "0"), RuntimeError);
}

TEST(Numbers, RoundByPatternReadsTheTextBack) {
  EXPECT_EQ(RoundByPattern(2.5, "####"), 3);
  EXPECT_EQ(RoundByPattern(-7.126, "###.##"), -7.13);
  EXPECT_EQ(RoundByPattern(5, "####.##"), 5);
  EXPECT_EQ(RoundByPattern(0, "####.00"), 0);
  EXPECT_EQ(RoundByPatternOr0(0.3, "####"), 0);
  EXPECT_EQ(ErrorOf([] { RoundByPattern(0.3, "####"); }), 13) << "an empty text is no number";
}

TEST(Numbers, TextHasFifteenSignificantDigits) {
  const std::pair<double, const char*> cases[] = {
      {0, "0"},
      {-0.0, "0"},
      {100, "100"},
      {-1234.5678, "-1234.5678"},
      {0.1 + 0.2, "0.3"},
      {1.0 / 3, "0.333333333333333"},
      {2.0 / 3, "0.666666666666667"},
      {9999999999.99, "9999999999.99"},
      {123456789012345, "123456789012345"},
      {999999999999999, "999999999999999"},
      {1e15, "1E+15"},
      {-1.25e20, "-1.25E+20"},
      {1e100, "1E+100"},
      {0.0001, "0.0001"},
      {0.00012, "0.00012"},
      {0.00001, "1E-05"},
      {0.000012, "1.2E-05"},
  };
  for (const auto& [value, text] : cases) EXPECT_EQ(NumberText(value), text);
}

TEST(Numbers, ValTakesTheBeginning) {
  const std::pair<const char*, double> cases[] = {
      {"12ab", 12}, {" 1 2.5", 12.5}, {"1e3", 1000}, {"1,200", 1},   {"-5.5x", -5.5},
      {"+7", 7},    {".5", 0.5},      {"5.", 5},     {"1.2.3", 1.2}, {"12e", 12},
      {"", 0},      {"abc", 0},       {"--1", 0},    {".", 0},       {"inf", 0},
      {"nan", 0},   {"-", 0},         {"0x10", 0},   {"1e-400", 0},  {"12 34", 1234},
  };
  for (const auto& [text, value] : cases) EXPECT_EQ(Val(text), value) << text;
  EXPECT_GT(Val("1e400"), 1e300);
}

TEST(Numbers, ParseTakesTheWholeText) {
  const std::pair<const char*, double> cases[] = {
      {"12,34,567.89", 1234567.89},
      {" 42 ", 42},
      {"-1,000", -1000},
      {"+5", 5},
      {".5", 0.5},
      {"5.", 5},
      {"1E+15", 1e15},
  };
  for (const auto& [text, value] : cases) EXPECT_EQ(ParseNumber(text), value) << text;
  for (const char* text : {"", " ", "12ab", "1 2", ",5", "1.5,000", "1.2.3", "-", "inf", "1e400"})
    EXPECT_EQ(ParseNumber(text), std::nullopt) << text;
}

TEST(Numbers, HalvesGoToEvenOnTheScaledDouble) {
  EXPECT_EQ(RoundHalfEven(0.5), 0);
  EXPECT_EQ(RoundHalfEven(1.5), 2);
  EXPECT_EQ(RoundHalfEven(-2.5), -2);
  EXPECT_EQ(RoundHalfEven(360.5), 360);
  EXPECT_EQ(RoundHalfEven(0.0625, 3), 0.062);
  EXPECT_EQ(RoundTwoPlaces(1.005), 1);  // times 100 it is 100.49999999999999
  EXPECT_EQ(RoundTwoPlaces(0.125), 0.12);
  EXPECT_EQ(RoundTwoPlaces(0.375), 0.38);
  EXPECT_EQ(RoundTwoPlaces(1e300), 1e300);
}

TEST(Numbers, TruncateCutsTheDecimalText) {
  EXPECT_EQ(TruncateDecimals(10.499, 2), 10.49);
  EXPECT_EQ(TruncateDecimals(-10.499, 2), -10.49);
  EXPECT_EQ(TruncateDecimals(0.29, 2), 0.29);  // times 100 it is 28.999999999999996
  EXPECT_EQ(TruncateDecimals(1.1 + 2.2, 2), 3.3);
  EXPECT_EQ(TruncateDecimals(0.009, 2), 0);
  EXPECT_EQ(TruncateDecimals(12345678.9, 0), 12345678);
}

}  // namespace
}  // namespace ktl
