#include "runtime/numbers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "runtime/errors.h"
#include "support/errors.h"

namespace ktl {
namespace {

TEST(Numbers, FormatByPattern) {
  using Numbers = std::vector<std::pair<double, const char*>>;
  const std::pair<const char*, Numbers> cases[] = {
      // 2.675 and 1.005 lie below the half in binary, their decimal texts do not.
      {"0.00", {{2.675, "2.68"}, {1.005, "1.01"}, {-0.004, "0.00"}, {-0.005, "-0.01"}, {9.995, "10.00"}}},
      {"####", {{-2.5, "-3"}, {2.5, "3"}, {0.5, "1"}, {0.3, ""}, {-0.3, ""}, {99999.5, "100000"}}},
      {"####.##", {{0, ""}}},
      {"###.##", {{5, "5."}, {5.1, "5.1"}, {0.5, ".5"}}},
      {"####.00", {{10.5, "10.50"}, {0.5, ".50"}, {0, ".00"}}},
      {"0", {{0, "0"}, {1e20, "100000000000000000000"}}},
      {"00", {{7, "07"}, {107, "107"}}},
      {"000000000", {{12345, "000012345"}, {12345678901, "12345678901"}}},
      {"0.0000", {{1.23456, "1.2346"}}},
      {"0.0", {{3, "3.0"}}},
      {"#,##,###.00", {{1234567.5, "12,34,567.50"}, {999.999, "1,000.00"}, {100, "100.00"}}},
      {"#,##,##0.00", {{-123456789, "-12,34,56,789.00"}}},
      {"#,###", {{1234567, "1,234,567"}}},
  };
  for (const auto& [pattern, numbers] : cases)
    for (const auto& [value, text] : numbers)
      EXPECT_EQ(FormatNumber(value, pattern), text) << value << " by " << pattern;
  EXPECT_THROW(FormatNumber(std::numeric_limits<double>::infinity(), "0"), RuntimeError);
}

TEST(Numbers, WholePaiseAreFormattedAsAnyAmount) {
  for (const double amount : {0.0, -0.0, 0.01, -0.1, 1234.5, -99999.99, 9999999999999.99, 1e13, 1e15, -1e15,
                              0.005, 1.005, 1e-13, 1234.565, 0.29, 1.1 * 3})
    EXPECT_EQ(FormatNumber(amount, "0.00"), FormatNumber(amount, "#0.00")) << amount;
  EXPECT_EQ(WholePaise(-1234.56), -123456);
  for (const double amount : {0.005, 1.1 * 3, -0.0, 1e15, std::nan("")})
    EXPECT_EQ(WholePaise(amount), std::nullopt) << amount;
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
