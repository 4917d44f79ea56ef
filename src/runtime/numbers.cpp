#include "runtime/numbers.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <iterator>
#include <limits>

#include "runtime/errors.h"

namespace ktl {
namespace {

constexpr int kSignificantDigits = 15;
constexpr double kLargestExactInteger = 9007199254740992.0;  // above it a double has no fraction

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsSpace(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

// A number as its decimal digits: 0.d1d2d3... times 10 to the power of `exponent`, without trailing zeros.
// Zero has no digits.
struct Decimal {
  std::array<char, kSignificantDigits + 1> digits{};
  int count = 0;
  int exponent = 0;
  bool negative = false;

  explicit Decimal(double value);

  char& At(int index) { return digits[static_cast<std::size_t>(index)]; }
  char At(int index) const { return digits[static_cast<std::size_t>(index)]; }
  // The digit that stands `place` places behind the point; 0 and below stand before it.
  char DigitAt(int place) const {
    const int index = exponent + place - 1;
    return index >= 0 && index < count ? At(index) : '0';
  }
  void DropTrailingZeros() {
    while (count > 0 && At(count - 1) == '0') --count;
  }
  void Cut(int decimals) {
    count = std::clamp(exponent + decimals, 0, count);
    DropTrailingZeros();
  }
  void RoundHalfAway(int decimals);
  void CarryOne();
};

Decimal::Decimal(double value) : negative(value < 0) {
  if (!std::isfinite(value)) throw RuntimeError::Overflow();
  if (value == 0) return;
  std::array<char, 32> text;
  const auto written = std::to_chars(text.data(), text.data() + text.size(), std::fabs(value),
                                     std::chars_format::scientific, kSignificantDigits - 1);
  digits[0] = text[0];
  std::copy_n(text.data() + 2, kSignificantDigits - 1, digits.data() + 1);
  const char* power = text.data() + 2 + kSignificantDigits;  // behind "d.dddde"
  if (*power == '+') ++power;
  std::from_chars(power, written.ptr, exponent);
  ++exponent;
  count = kSignificantDigits;
  DropTrailingZeros();
}

void Decimal::RoundHalfAway(int decimals) {
  const int keep = exponent + decimals;
  if (keep >= count) return;
  const bool up = keep >= 0 && At(keep) >= '5';
  count = std::max(keep, 0);
  if (up)
    CarryOne();
  else
    DropTrailingZeros();
}

void Decimal::CarryOne() {
  while (count > 0 && At(count - 1) == '9') --count;
  if (count > 0) {
    ++At(count - 1);
    return;
  }
  digits[0] = '1';
  count = 1;
  ++exponent;
}

struct Pattern {
  enum class Grouping { None, Thousands, Indian };

  int integerPlaces = 0;  // digits shown at least before the point
  int decimals = 0;
  int decimalPlaces = 0;  // digits shown at least behind it
  bool hasPoint = false;
  Grouping grouping = Grouping::None;

  explicit Pattern(std::string_view text);

  // Whether a separator follows the digit that has `following` digits behind it.
  bool SeparatesAt(int following) const {
    if (grouping == Grouping::None || following < 3) return false;
    return grouping == Grouping::Thousands ? following % 3 == 0 : following % 2 == 1;
  }
};

Pattern::Pattern(std::string_view text) {
  bool zeroSeen = false;
  for (const char c : text) {
    if (c == '.') {
      hasPoint = true;
    } else if (c == ',' && !hasPoint) {
      grouping = Grouping::Thousands;
    } else if (hasPoint && (c == '0' || c == '#')) {
      ++decimals;
      if (c == '0') decimalPlaces = decimals;
    } else if (c == '0' || (c == '#' && zeroSeen)) {
      zeroSeen = true;
      ++integerPlaces;
    }
  }
  if (text.starts_with("#,##,##")) grouping = Grouping::Indian;
}

double ParsePrefix(const char* first, const char* last, const char** end) {
  double value = 0;
  const auto read = std::from_chars(first, last, value);
  *end = read.ptr;
  if (read.ec == std::errc::result_out_of_range) {
    const std::string_view text(first, read.ptr);
    return text.find("e-") != text.npos || text.find("E-") != text.npos
               ? 0
               : std::numeric_limits<double>::infinity();
  }
  return read.ec == std::errc() ? value : 0;
}

bool BeginsNumber(std::string_view text) {
  return !text.empty() && (IsDigit(text[0]) || (text[0] == '.' && text.size() > 1 && IsDigit(text[1])));
}

// Takes the sign off the text: -1 or 1.
int TakeSign(std::string_view& text) {
  if (text.empty() || (text[0] != '-' && text[0] != '+')) return 1;
  const int sign = text[0] == '-' ? -1 : 1;
  text.remove_prefix(1);
  return sign;
}

std::optional<double> ParseWhole(std::string_view text) {
  if (!BeginsNumber(text)) return std::nullopt;
  const char* end = nullptr;
  const double value = ParsePrefix(text.data(), text.data() + text.size(), &end);
  if (end != text.data() + text.size() || !std::isfinite(value)) return std::nullopt;
  return value;
}

void AppendExponentForm(std::string& text, const Decimal& number) {
  text += number.digits[0];
  if (number.count > 1)
    text.append(".").append(number.digits.data() + 1, static_cast<std::size_t>(number.count - 1));
  const int power = number.exponent - 1;
  text += power < 0 ? "E-" : "E+";
  if (std::abs(power) < 10) text += '0';
  text += std::to_string(std::abs(power));
}

void AppendDecimalForm(std::string& text, const Decimal& number) {
  if (number.exponent <= 0) text += '0';
  for (int place = 1 - number.exponent; place <= 0; ++place) text += number.DigitAt(place);
  if (number.count <= number.exponent) return;
  text += '.';
  for (int place = 1; place <= number.count - number.exponent; ++place) text += number.DigitAt(place);
}

std::string RupeesAndPaise(std::int64_t paise) {
  std::array<char, 24> text;
  char* end = text.data();
  if (paise < 0) *end++ = '-';
  const auto amount = static_cast<std::uint64_t>(std::abs(paise));
  end = std::to_chars(end, text.data() + text.size(), amount / 100).ptr;
  *end++ = '.';
  *end++ = static_cast<char>('0' + amount / 10 % 10);
  *end++ = static_cast<char>('0' + amount % 10);
  return std::string(text.data(), end);
}

}  // namespace

double Val(std::string_view text) {
  std::string packed;
  if (std::any_of(text.begin(), text.end(), IsSpace)) {
    std::copy_if(text.begin(), text.end(), std::back_inserter(packed), [](char c) { return !IsSpace(c); });
    text = packed;
  }
  const int sign = TakeSign(text);
  if (!BeginsNumber(text)) return 0;
  const char* end = nullptr;
  return sign * ParsePrefix(text.data(), text.data() + text.size(), &end);
}

std::optional<double> ParseNumber(std::string_view text) {
  while (!text.empty() && IsSpace(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsSpace(text.back())) text.remove_suffix(1);
  const int sign = TakeSign(text);
  std::optional<double> value;
  if (text.find(',') == text.npos) {
    value = ParseWhole(text);
  } else if (IsDigit(text[0]) && text.rfind(',') < text.find('.')) {
    std::string ungrouped(text);
    std::erase(ungrouped, ',');
    value = ParseWhole(ungrouped);
  }
  if (value) *value *= sign;
  return value;
}

std::string NumberText(double value) {
  const Decimal number(value);
  if (number.count == 0) return "0";
  std::string text;
  if (number.negative) text += '-';
  if (number.exponent > kSignificantDigits || number.exponent < -3)
    AppendExponentForm(text, number);
  else
    AppendDecimalForm(text, number);
  return text;
}

double RoundHalfEven(double value, int decimals) {
  if (std::fabs(value) >= kLargestExactInteger) return value;
  if (decimals == 0) return std::nearbyint(value);
  const double scale = std::pow(10.0, decimals);
  return std::nearbyint(value * scale) / scale;
}

double RoundTwoPlaces(double value) { return RoundHalfEven(value, 2); }

double TruncateDecimals(double value, int decimals) {
  Decimal number(value);
  number.Cut(decimals);
  if (number.count == 0) return 0;
  std::string text;
  AppendExponentForm(text, number);
  const double cut = ParseWhole(text).value_or(0);
  return number.negative ? -cut : cut;
}

std::optional<std::int64_t> WholePaise(double amount) {
  constexpr double kMostPaise = 1e15;
  const double paise = std::nearbyint(amount * 100);
  const bool whole = std::fabs(paise) < kMostPaise && paise / 100 == amount;
  if (!whole || (paise == 0 && std::signbit(amount))) return std::nullopt;
  return static_cast<std::int64_t>(paise);
}

std::string FormatNumber(double value, std::string_view patternText) {
  // What nearly every amount is, in the pattern that nearly every list has.
  if (patternText == "0.00")
    if (const auto paise = WholePaise(value)) return RupeesAndPaise(*paise);
  const Pattern pattern(patternText);
  Decimal number(value);
  number.RoundHalfAway(pattern.decimals);

  const int integerDigits = std::max({number.count > 0 ? number.exponent : 0, pattern.integerPlaces, 0});
  const int fractionDigits = std::max(number.count - number.exponent, 0);
  const int decimals =
      number.count > 0 ? std::max(fractionDigits, pattern.decimalPlaces) : pattern.decimalPlaces;
  if (integerDigits == 0 && decimals == 0) return {};

  std::string text;
  text.reserve(static_cast<std::size_t>(integerDigits + integerDigits / 2 + decimals + 2));
  if (number.negative && number.count > 0) text += '-';
  for (int following = integerDigits - 1; following >= 0; --following) {
    text += number.DigitAt(-following);
    if (pattern.SeparatesAt(following)) text += ',';
  }
  // The point stays without a decimal behind it: 5 by "###.##" is "5.".
  if (pattern.hasPoint) text += '.';
  for (int place = 1; place <= decimals; ++place) text += number.DigitAt(place);
  return text;
}

double RoundByPattern(double value, std::string_view pattern) {
  const std::optional<double> rounded = ParseNumber(FormatNumber(value, pattern));
  if (!rounded) throw RuntimeError::TypeMismatch();
  return *rounded;
}

double RoundByPatternOr0(double value, std::string_view pattern) {
  return ParseNumber(FormatNumber(value, pattern)).value_or(0);
}

}  // namespace ktl
