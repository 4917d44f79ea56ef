#include "formula/date_intervals.h"

#include <algorithm>
#include <array>
#include <utility>

#include "runtime/errors.h"
#include "runtime/text.h"

namespace ktl {
namespace {

constexpr long kSecondsPerDay = 86400;

long MonthNumber(const Date& date) { return date.year() * 12L + date.month() - 1; }
int Quarter(const Date& date) { return (date.month() - 1) / 3 + 1; }
long SecondOfDay(const Date& date) { return date.hour() * 3600L + date.minute() * 60L + date.second(); }
Date StartOfWeek(const Date& date) { return date.AddDays(1 - date.weekday()); }

// Counts up over all days; days are numbered from the first date so that whole units stay whole.
long UnitsBetween(long secondsPerUnit, const Date& first, const Date& second) {
  const long secondsToSecond = DaysBetween(first, second) * kSecondsPerDay + SecondOfDay(second);
  const auto unit = [&](long seconds) {
    return seconds >= 0 ? seconds / secondsPerUnit : -((secondsPerUnit - 1 - seconds) / secondsPerUnit);
  };
  return unit(secondsToSecond) - unit(SecondOfDay(first));
}

Date AddSeconds(long seconds, const Date& date) {
  const long sum = SecondOfDay(date) + seconds;
  const long days = sum >= 0 ? sum / kSecondsPerDay : -((kSecondsPerDay - 1 - sum) / kSecondsPerDay);
  const int second = static_cast<int>(sum - days * kSecondsPerDay);
  const Date day = date.DayOnly().AddDays(days);
  return Date::FromYmd(day.year(), day.month(), day.day(), second / 3600, second / 60 % 60, second % 60)
      .value();
}

int DayOfYear(const Date& date) {
  return static_cast<int>(DaysBetween(Date::FromYmd(date.year(), 1, 1).value(), date)) + 1;
}

int WeekOfYear(const Date& date) {
  const int weekdayOfJanuary1 = Date::FromYmd(date.year(), 1, 1).value().weekday();
  return (DayOfYear(date) + weekdayOfJanuary1 - 2) / 7 + 1;
}

}  // namespace

std::optional<DateInterval> IntervalByName(std::string_view name) {
  static constexpr auto kNames = std::to_array<std::pair<std::string_view, DateInterval>>({
      {"yyyy", DateInterval::Year},
      {"q", DateInterval::Quarter},
      {"m", DateInterval::Month},
      {"y", DateInterval::DayOfYear},
      {"d", DateInterval::Day},
      {"w", DateInterval::Weekday},
      {"ww", DateInterval::Week},
      {"h", DateInterval::Hour},
      {"n", DateInterval::Minute},
      {"s", DateInterval::Second},
  });
  const auto* const found =
      std::ranges::find_if(kNames, [&](const auto& entry) { return EqualsNoCase(entry.first, name); });
  if (found == kNames.end()) return std::nullopt;
  return found->second;
}

long CountBetween(DateInterval interval, const Date& first, const Date& second) {
  switch (interval) {
    case DateInterval::Year:
      return second.year() - first.year();
    case DateInterval::Quarter:
      return second.year() * 4 + Quarter(second) - (first.year() * 4 + Quarter(first));
    case DateInterval::Month:
      return MonthNumber(second) - MonthNumber(first);
    case DateInterval::Weekday:
      return DaysBetween(first, second) / 7;
    case DateInterval::Week:
      return DaysBetween(StartOfWeek(first), StartOfWeek(second)) / 7;
    case DateInterval::Hour:
      return UnitsBetween(3600, first, second);
    case DateInterval::Minute:
      return UnitsBetween(60, first, second);
    case DateInterval::Second:
      return UnitsBetween(1, first, second);
    case DateInterval::DayOfYear:
    case DateInterval::Day:
      break;
  }
  return DaysBetween(first, second);
}

Date AddInterval(DateInterval interval, long count, const Date& date) {
  switch (interval) {
    case DateInterval::Year:
      return date.AddMonths(count * 12);
    case DateInterval::Quarter:
      return date.AddMonths(count * 3);
    case DateInterval::Month:
      return date.AddMonths(count);
    case DateInterval::Week:
      return date.AddDays(count * 7);
    case DateInterval::Hour:
      return AddSeconds(count * 3600, date);
    case DateInterval::Minute:
      return AddSeconds(count * 60, date);
    case DateInterval::Second:
      return AddSeconds(count, date);
    case DateInterval::DayOfYear:
    case DateInterval::Day:
    case DateInterval::Weekday:
      break;
  }
  return date.AddDays(count);
}

int PartOf(DateInterval interval, const Date& date) {
  switch (interval) {
    case DateInterval::Year:
      return date.year();
    case DateInterval::Quarter:
      return Quarter(date);
    case DateInterval::Month:
      return date.month();
    case DateInterval::DayOfYear:
      return DayOfYear(date);
    case DateInterval::Weekday:
      return date.weekday();
    case DateInterval::Week:
      return WeekOfYear(date);
    case DateInterval::Hour:
      return date.hour();
    case DateInterval::Minute:
      return date.minute();
    case DateInterval::Second:
      return date.second();
    case DateInterval::Day:
      break;
  }
  return date.day();
}

}  // namespace ktl
