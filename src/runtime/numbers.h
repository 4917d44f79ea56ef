#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace ktl {

// The number that the text begins with, 0 when it begins with none: "12ab" is 12, " 1 2.5" is 12.5 (blanks
// are skipped), "1e3" is 1000, "1,200" is 1. Never fails.
double Val(std::string_view text);

// The whole text as a number, digit-grouping commas allowed ("12,34,567.89"); nothing when it is none.
std::optional<double> ParseNumber(std::string_view text);

// At most 15 significant digits, no trailing zeros; exponent form from 1E+15 on and below 1E-4.
std::string NumberText(double value);

// Half to even.
double RoundHalfEven(double value, int decimals = 0);
// Half to even on the value times 100, as the run-time's rounding to two places works.
double RoundTwoPlaces(double value);
// Cuts the decimal text behind the given number of decimals.
double TruncateDecimals(double value, int decimals);

// The amount in paise; nothing when it has finer parts, more than fifteen digits, or is a negative zero.
std::optional<std::int64_t> WholePaise(double amount);

// Number patterns: "####", "####.##", "0", "0.00", "000000000", "###.##", "#,##,###.00", "00". Halves go away
// from zero, judged on the decimal text of the value (15 significant digits). A negative that rounds to zero
// shows no sign. A pattern without a digit to show gives an empty text ("####" of 0.3). A pattern with ","
// groups by thousands unless it is "#,##,###..", which groups as in Indian amounts.
std::string FormatNumber(double value, std::string_view pattern);

// FormatNumber read back as a number. An empty text is the run-time error 13 (raw) of the schedule generator.
double RoundByPattern(double value, std::string_view pattern);
// The same with an empty text counting 0.
double RoundByPatternOr0(double value, std::string_view pattern);

}  // namespace ktl
