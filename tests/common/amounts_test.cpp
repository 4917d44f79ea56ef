#include "common/amounts.h"

#include <gtest/gtest.h>

#include <cmath>
#include <tuple>

namespace ktl {
namespace {

TEST(Amounts, RoundByType) {
  const std::tuple<int, double, double> cases[] = {
      {1, 10.5, 11},     {1, -10.5, -11},    {1, 10.49, 10},   {1, 10.499, 10},   {1, 0.5, 1},
      {1, 0.3, 0},       {2, 10, 10},        {2, 10.001, 11},  {2, 10.0004, 10},  {2, 10.6, 11},
      {2, 10.496, 12},   {2, -10.2, -11},    {2, 0.3, 1},      {3, 14.99, 10},    {3, 15, 20},
      {3, 20, 20},       {3, 19.7, 20},      {3, -15, -20},    {4, 20, 20},       {4, 20.01, 30},
      {4, 0, 0},         {5, 10.126, 10.13}, {5, 2.675, 2.68}, {5, 0, 0},         {5, 7, 7},
      {6, 10.01, 10.05}, {6, 10.06, 10.1},   {6, 10.96, 11},   {6, 10.05, 10.05}, {6, 10.1, 10.1},
      {6, 9.999, 10},    {6, -10.06, -10.1}, {0, 5, 0},        {7, 5, 0},
  };
  for (const auto& [type, value, rounded] : cases)
    EXPECT_EQ(FnDblRoundByType(type, value), rounded) << "type " << type << " of " << value;
}

TEST(Amounts, RoundUp) {
  const std::pair<double, double> cases[] = {{10, 10},   {10.004, 10}, {10.01, 11}, {10.496, 12},
                                             {10.5, 11}, {10.6, 11},   {0.3, 1},    {-10.2, -10}};
  for (const auto& [value, rounded] : cases) EXPECT_EQ(FnDblRoundUp(value), rounded) << value;
}

TEST(Amounts, IndianGrouping) {
  const std::tuple<const char*, int, const char*> cases[] = {
      {"1234567.5", 2, "12,34,567.50"},
      {"0", 2, ""},
      {"", 2, ""},
      {"999", 0, "999"},
      {"1,00,000", 0, "1,00,000"},
      {"-123456", 1, "-1,23,456.0"},
      {"-999", 2, "-999.00"},
      {"1000.12345", 3, "1,000.123"},
      {"0.5", 9, "0.5000"},
      {"12ab", 2, "12.00"},
      {"9999999999.99", 2, "9,99,99,99,999.99"},
  };
  for (const auto& [text, decimals, grouped] : cases) {
    EXPECT_EQ(clsGenCmn::FnStrCormat(text, decimals), grouped) << text;
    EXPECT_EQ(clsGenCmn::FnStrConvertToCommaNumber(text, decimals), grouped) << text;
  }
  EXPECT_EQ(clsGenCmn::FnStrConvertToNumber("12,34,567.5", 2), "1234567.50");
}

TEST(Amounts, Limits) {
  EXPECT_EQ(clsGenCmn::FnStrRestrictAmount("10000000", 5e9), "99,99,999.99");
  EXPECT_EQ(clsGenCmn::FnStrRestrictAmount("5,001", 5000), "5,000.00");
  EXPECT_EQ(clsGenCmn::FnStrRestrictAmount("5000", 5000), "5,000.00");
  EXPECT_EQ(clsGenCmn::FnStrRestrictAmount("-7", 5000), "-7.00");
  EXPECT_TRUE(FnBlnWithinLimit("9,99,99,99,999.99", kAmountLimit));
  EXPECT_FALSE(FnBlnWithinLimit("10000000000", kAmountLimit));
  EXPECT_FALSE(FnBlnWithinLimit("1e400", kAmountLimit));
}

TEST(Amounts, InWords) {
  const std::pair<double, const char*> cases[] = {
      {0, "Rupees Zero"},
      {12345.67, "Rupees Twelve Thousand Three Hundred Forty Five and Paise Sixty Seven Only"},
      {-19, "Rupees Nineteen Only"},
      {20, "Rupees Twenty Only"},
      {100, "Rupees One Hundred  Only"},
      {0.5, "Rupees  and Paise Fifty Only"},
      {100000.01, "Rupees One Lakh  and Paise One Only"},
      {987654321,
       "Rupees Ninety Eight Crore Seventy Six Lakh Fifty Four Thousand Three Hundred Twenty One Only"},
      {1.999, "Rupees Two Only"},
      {1234567890, "Rupees Twelve Crore Thirty Four Lakh Fifty Six Thousand Seven Hundred Ninety Only"},
  };
  for (const auto& [amount, words] : cases) {
    double given = amount;
    EXPECT_EQ(clsGenCmn::FnStrRupeeInWords(given), words);
    EXPECT_EQ(given, std::abs(amount));
  }
}

TEST(Amounts, TextConversions) {
  EXPECT_EQ(clsGenCmn::FnStrConvProperCase("rAVI  kumar-rao\télan"), "Ravi  Kumar-rao\tÉlan");
  EXPECT_EQ(clsGenCmn::FnStrCorrectFileName("a'b/c,d*e(f) g"), "abcdefg");
  EXPECT_EQ(clsGenCmn::FnStrClearAllNonFileChar("a:b?<c>é|`"), "abcé");
  EXPECT_EQ(clsGenCmn::FnStrConvertToDate("1.4.2010"), "01/Apr/2010");
  EXPECT_EQ(clsGenCmn::FnStrConvertToDate("1.13.2010"), "");
  EXPECT_EQ(clsGenCmn::FnStrPADL("₹7", 4, '*'), "**₹7");
  EXPECT_EQ(clsGenCmn::FnStrPADL("12345", 3), "12345");
  const std::pair<long, const char*> suffixes[] = {{1, "st"},   {2, "nd"},  {3, "rd"},  {4, "th"},
                                                   {11, "th"},  {12, "th"}, {13, "th"}, {21, "st"},
                                                   {112, "th"}, {103, "rd"}};
  for (const auto& [number, suffix] : suffixes)
    EXPECT_EQ(clsGenCmn::FnStrSuffixST_ND_RD_TH(number), suffix) << number;
}

TEST(Amounts, ScramblingTwiceGivesTheTextBack) {
  EXPECT_EQ(clsGenCmn::FnStrEncryptWord("A\x7F"), "\xC1\xFF");
  const std::string devanagari = "Data Source=/tmp/वेतन.kldb;";
  EXPECT_EQ(clsGenCmn::FnStrEncryptWord(clsGenCmn::FnStrEncryptWord(devanagari)), devanagari);
  for (const std::string text : {"", "Provider=SQLite;Data Source=/tmp/a b.kldb;", "é\u00FF\u0080 z"}) {
    EXPECT_EQ(clsGenCmn::FnStrEncryptWord(clsGenCmn::FnStrEncryptWord(text)), text);
    const std::string scrambled = clsGenCmn::FnStrAccessPassword(text);
    EXPECT_EQ(clsGenCmn::FnStrAccessPassword(scrambled), text);
    EXPECT_EQ(scrambled == text, text.empty());
  }
  EXPECT_EQ(clsGenCmn::FnStrAccessPassword(clsGenCmn::FnStrAccessPassword("₹100")), "₹100");
}

// Every character below 128 and two above, by the plain ones that a filter lets through.
TEST(Keystrokes, LetThrough) {
  const std::string digits = "0123456789";
  const std::string letters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
  const std::tuple<const char*, int (*)(int), std::string> cases[] = {
      {"numbers", clsGenCmn::FnIntAllowNumbersOnly, digits},
      {"date", clsGenCmn::FnIntAllowDateOnly, digits + " -./"},
      {"date with letters", clsGenCmn::FnIntAllowDateOnlyWithAlpha, digits + letters + " -./"},
      {"letters and digits", clsGenCmn::FnIntAllowAlphaNumaralsOnly, digits + letters + "-"},
      {"letters", clsGenCmn::FnIntAllowAlphabetsOnly, letters + "-"},
      {"evaluation", clsGenCmn::FnIntAllowOnlyEvalNumarals, digits + "()*+,-./"},
      {"expression", clsGenCmn::FnIntAllowExprsnOnly, digits + "()*+-./"},
      {"amount", [](int key) { return clsGenCmn::FnIntAllowAmtOnly(key, "12"); }, digits + ",."},
      {"amount with a point", [](int key) { return clsGenCmn::FnIntAllowAmtOnly(key, "1.2"); }, digits + ","},
      {"plain amount", [](int key) { return clsGenCmn::FnIntAllowAmountOnly(key, ""); }, digits + "."},
      {"double", [](int key) { return clsGenCmn::FnIntAllowDoubleOnly(key, "."); }, digits},
      {"negative", [](int key) { return clsGenCmn::FnIntAllowNegativeAmtAlso(key, "1"); }, digits + ",.-"},
      {"negative with both", [](int key) { return clsGenCmn::FnIntAllowNegativeAmtAlso(key, "-1."); },
       digits + ","},
      {"full box", [](int key) { return clsGenCmn::FnIntLimitMaxLength("₹é", key, 2); }, ""},
  };
  const std::string controls = "\x01\x03\x08\x0D\x16\x18\x1A";
  for (const auto& [name, filter, allowed] : cases)
    for (int key = 1; key < 256; ++key) {
      const char character = static_cast<char>(key);
      const bool passes = key < 128 && (allowed + controls).find(character) != std::string::npos;
      EXPECT_EQ(filter(key), passes ? key : 0) << name << ", key " << key;
    }
}

TEST(Keystrokes, DropOrChange) {
  for (const char key : std::string("\"#'[\\]|"))
    EXPECT_EQ(clsGenCmn::FnIntAllowAllNonSpecial(key), 0) << key;
  for (const char key : std::string("\"*/:<>?\\`|"))
    EXPECT_EQ(clsGenCmn::FnIntAllowAllFileNameChrs(key), 0) << key;
  for (const char key : std::string(",_\\/")) {
    EXPECT_EQ(clsGenCmn::DateKey(key), '/') << key;
    EXPECT_EQ(clsGenCmn::DateKeyWithAlpha(key), '/') << key;
  }
  EXPECT_TRUE(clsGenCmn::DateKey('7') == '7' && clsGenCmn::DateKey('M') == 0);
  EXPECT_EQ(clsGenCmn::DateKeyWithAlpha('M'), 'M');
  EXPECT_EQ(clsGenCmn::FnIntAllowAllNonSpecial('*'), '*');
  EXPECT_EQ(clsGenCmn::FnIntAllowAllNonSpecial(0x20B9), 0x20B9);
  EXPECT_EQ(clsGenCmn::FnIntAllowAllFileNameChrs('#'), '#');
  EXPECT_EQ(clsGenCmn::FnIntAllowCapitalsOnly('q'), 'Q');
  EXPECT_EQ(clsGenCmn::FnIntAllowCapitalsOnly('7'), '7');
  EXPECT_EQ(clsGenCmn::FnIntAllowLowerCaseOnly('Q'), 'q');
  EXPECT_EQ(clsGenCmn::FnIntLimitMaxLength("₹é", 'x', 3), 'x');
}

}  // namespace
}  // namespace ktl
