#include "common/amounts.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "runtime/numbers.h"
#include "runtime/value.h"

namespace ktl {
namespace {

constexpr std::string_view kRupees = "####";
constexpr double kBoxLimit = 9999999.99;  // the most that an amount box takes

double NearestRupee(double value) {
  const double paise = RoundTwoPlaces(TruncateDecimals(value, 2));
  if (FormatNumber(paise, "####.00").ends_with(".50")) return paise + 0.5;
  return RoundByPatternOr0(paise, kRupees);
}

// Decides by what is left of the value beside its number by "####". A value that lies above that number gets
// 1 added to the number of the value rounded to paise, even if that rounding has gone up already: 10.496
// gives 12.
double NextRupee(double value, int decimalsOfDifference) {
  const double number = RoundByPatternOr0(value, kRupees);
  const double difference = RoundHalfEven(value - number, decimalsOfDifference);
  if (difference == 0) return number;
  const double ofPaise = RoundByPatternOr0(RoundTwoPlaces(value), kRupees);
  return difference > 0 ? ofPaise + 1 : ofPaise;
}

double TensAbove(double value, double threshold) {
  const double tens = std::floor(value / 10) * 10;
  return value - tens > threshold ? tens + 10 : tens;
}

double NextFivePaise(double value) {
  std::string text = FormatNumber(value, "0.00");
  char& lastDigit = text.back();
  if (lastDigit == '0' || lastDigit == '5') return Val(text);
  if (lastDigit < '5') {
    lastDigit = '5';
    return Val(text);
  }
  char& firstDecimal = text[text.size() - 2];
  if (firstDecimal == '9') return std::floor(Val(text)) + 1;
  ++firstDecimal;
  lastDigit = '0';
  return Val(text);
}

double RoundPositive(int type, double value) {
  switch (type) {
    case 1:
      return NearestRupee(value);
    case 2:
      return NextRupee(RoundHalfEven(TruncateDecimals(value, 3), 3), 4);
    case 3:
      return TensAbove(value, 4.99);
    case 4:
      return TensAbove(value, 0);
    case 5:
      return RoundByPatternOr0(value, "###.##");
    case 6:
      return NextFivePaise(value);
    default:
      return 0;
  }
}

std::string FormatIndian(double value, int decimals) {
  constexpr std::array<std::string_view, 5> kPatterns = {"#,##,##0", "#,##,##0.0", "#,##,##0.00",
                                                         "#,##,##0.000", "#,##,##0.0000"};
  if (value == 0) return {};
  return FormatNumber(value,
                      kPatterns[decimals < 0 || decimals > 3 ? 4 : static_cast<std::size_t>(decimals)]);
}

constexpr std::array<std::string_view, 20> kUnits = {
    "",         "One",     "Two",     "Three",     "Four",     "Five",    "Six",
    "Seven",    "Eight",   "Nine",    "Ten",       "Eleven",   "Twelve",  "Thirteen",
    "Fourteen", "Fifteen", "Sixteen", "Seventeen", "Eighteen", "Nineteen"};
constexpr std::array<std::string_view, 10> kTens = {"",      "",      "Twenty",  "Thirty", "Forty",
                                                    "Fifty", "Sixty", "Seventy", "Eighty", "Ninety"};

// Words of the digits, one or two; nothing when they are zero.
std::string WordsOf(std::string_view digits) {
  std::size_t number = 0;
  for (const char digit : digits) number = number * 10 + static_cast<std::size_t>(digit - '0');
  if (number < kUnits.size()) return std::string(kUnits[number]);
  std::string words(kTens[number / 10]);
  if (number % 10 != 0) words.append(" ").append(kUnits[number % 10]);
  return words;
}

std::string WordsBefore(std::string_view digits, std::string_view unit) {
  const std::string words = WordsOf(digits);
  return words.empty() ? words : words + std::string(unit);
}

}  // namespace

double FnDblRoundByType(int type, double value) {
  const double rounded = RoundPositive(type, std::fabs(value));
  return value < 0 ? -rounded : rounded;
}

double FnDblRoundUp(double value) { return NextRupee(value, 2); }

std::string ShownAmount(double amount) { return FormatNumber(amount, "0.00"); }

std::string ShownAmount(const Value& amount) { return amount.IsNull() ? "" : ShownAmount(amount.ToDouble()); }

std::string ShownAmount(const std::optional<double>& amount) { return amount ? ShownAmount(*amount) : ""; }

bool FnBlnWithinLimit(std::string_view text, double limit) { return clsGenCmn::FnDblTrimVal(text) <= limit; }

double clsGenCmn::FnDblTrimVal(std::string_view text) {
  if (text.find(',') == text.npos) return Val(text);
  std::string ungrouped(text);
  std::erase(ungrouped, ',');
  return Val(ungrouped);
}

std::string clsGenCmn::FnStrCormat(std::string_view text, int decimals) {
  return FormatIndian(FnDblTrimVal(text), decimals);
}

std::string clsGenCmn::FnStrConvertToCommaNumber(std::string_view text, int decimals) {
  return FnStrCormat(text, decimals);
}

std::string clsGenCmn::FnStrConvertToNumber(std::string_view text, int decimals) {
  std::string number = FnStrCormat(text, decimals);
  std::erase(number, ',');
  return number;
}

std::string clsGenCmn::FnStrRestrictAmount(std::string_view text, double limit) {
  return FormatIndian(std::min({FnDblTrimVal(text), limit, kBoxLimit}), 2);
}

// The blanks of two neighbours both stay: 100 gives "Rupees One Hundred  Only". Of ten and more digits the
// crores are the first two and the tens the last two.
std::string clsGenCmn::FnStrRupeeInWords(double& amount) {
  amount = std::fabs(amount);
  if (amount == 0) return "Rupees Zero";
  const std::string text = FormatNumber(amount, "000000000.00");
  const std::string_view rupees = std::string_view(text).substr(0, text.size() - 3);
  const std::string_view paise = std::string_view(text).substr(text.size() - 2);

  std::string words = "Rupees ";
  words += WordsBefore(rupees.substr(0, 2), " Crore ");
  words += WordsBefore(rupees.substr(2, 2), " Lakh ");
  words += WordsBefore(rupees.substr(4, 2), " Thousand ");
  words += WordsBefore(rupees.substr(6, 1), " Hundred ");
  words += WordsOf(rupees.substr(rupees.size() - 2));
  if (const std::string paiseWords = WordsOf(paise); !paiseWords.empty()) words += " and Paise " + paiseWords;
  return words + " Only";
}

}  // namespace ktl
