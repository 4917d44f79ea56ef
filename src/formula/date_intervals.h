#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "runtime/date.h"

namespace ktl {

enum class DateInterval : std::uint8_t {
  Year,
  Quarter,
  Month,
  DayOfYear,
  Day,
  Weekday,
  Week,
  Hour,
  Minute,
  Second,
};

// "yyyy", "q", "m", "y", "d", "w", "ww", "h", "n", "s" in any case.
std::optional<DateInterval> IntervalByName(std::string_view name);

// How many bounds of the interval lie between the two, negative when the second is earlier: from the last of
// a month to the first of the next is 1 month. Weeks begin on Sunday; Weekday counts full weeks.
long CountBetween(DateInterval interval, const Date& first, const Date& second);

// Month ends stay within the month: 31/Jan plus a month is the last of February.
Date AddInterval(DateInterval interval, long count, const Date& date);

// Quarter 1 to 4, day of the year from 1, week from the one that holds 1 January, and so on.
int PartOf(DateInterval interval, const Date& date);

}  // namespace ktl
