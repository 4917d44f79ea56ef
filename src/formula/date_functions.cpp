#include <algorithm>
#include <array>

#include "formula/date_intervals.h"
#include "formula/expression_functions.h"
#include "runtime/errors.h"

namespace ktl {
namespace {

using OfNull = ExpressionFunction::OfNull;

DateInterval IntervalOf(const Value& name) {
  const std::optional<DateInterval> interval = IntervalByName(name.ToText());
  if (!interval) throw RuntimeError::InvalidProcedureCall();
  return *interval;
}

template <DateInterval interval>
Value Part(const Arguments& a) {
  return static_cast<double>(PartOf(interval, a[0].ToDate()));
}

Value Difference(const Arguments& a) {
  if (a[1].IsNull() || a[2].IsNull()) return Null();
  return static_cast<double>(CountBetween(IntervalOf(a[0]), a[1].ToDate(), a[2].ToDate()));
}

Value DateAdd(const Arguments& a) {
  if (a[2].IsNull()) return Null();
  return AddInterval(IntervalOf(a[0]), a[1].ToLong(), a[2].ToDate());
}

Value DatePart(const Arguments& a) {
  if (a[1].IsNull()) return Null();
  return static_cast<double>(PartOf(IntervalOf(a[0]), a[1].ToDate()));
}

// Months and days outside their range run on: month 13 is January of the next year, day 0 the last of the
// month before.
Value DateSerial(const Arguments& a) {
  int year = a[0].ToInt();
  if (year >= 0 && year < 100) year += year < 30 ? 2000 : 1900;
  const std::optional<Date> january = Date::FromYmd(year, 1, 1);
  if (!january) throw RuntimeError::InvalidProcedureCall();
  return january->AddMonths(a[1].ToLong() - 1L).AddDays(a[2].ToLong() - 1L);
}

// An argument that says which day counts as 1, Sunday being 1; 0 is Sunday too.
long FirstDay(const Arguments& a, std::size_t index) {
  const long first = a.LongOr(index, 1);
  if (first < 0 || first > 7) throw RuntimeError::InvalidProcedureCall();
  return std::max(1L, first);
}

Value Weekday(const Arguments& a) {
  const int daysFromFirst = a[0].ToDate().weekday() - static_cast<int>(FirstDay(a, 1));
  return static_cast<double>((daysFromFirst + 7) % 7 + 1);
}

Value MonthName(const Arguments& a) {
  const std::optional<Date> date = Date::FromYmd(2000, static_cast<int>(a[0].ToLong()), 1);
  if (!date) throw RuntimeError::InvalidProcedureCall();
  const bool abbreviated = a.size() > 1 && a[1].ToBoolean();
  return FormatDate(*date, abbreviated ? "mmm" : "mmmm");
}

// WeekdayName(day, abbreviated, first): `first` as in Weekday.
Value WeekdayName(const Arguments& a) {
  const long day = a[0].ToLong();
  const long first = FirstDay(a, 2);
  if (day < 1 || day > 7) throw RuntimeError::InvalidProcedureCall();
  const Date sunday = Date::FromYmd(2000, 1, 2).value();
  const bool abbreviated = a.size() > 1 && a[1].ToBoolean();
  return FormatDate(sunday.AddDays((day + first - 2) % 7), abbreviated ? "ddd" : "dddd");
}

constexpr auto kFunctions = std::to_array<ExpressionFunction>({
    {"DATE", 0, 0, [](const Arguments& a) -> Value { return a.now().DayOnly(); }},
    {"NOW", 0, 0, [](const Arguments& a) -> Value { return a.now(); }},
    {"CDATE", 1, 1, [](const Arguments& a) -> Value { return a[0].ToDate(); }},
    {"DATEVALUE", 1, 1, [](const Arguments& a) -> Value { return a[0].ToDate().DayOnly(); }},
    {"ISDATE", 1, 1,
     [](const Arguments& a) -> Value { return a[0].IsDate() || (a[0].IsText() && IsDate(a[0].text())); }},
    {"YEAR", 1, 1, Part<DateInterval::Year>, OfNull::IsNull},
    {"MONTH", 1, 1, Part<DateInterval::Month>, OfNull::IsNull},
    {"DAY", 1, 1, Part<DateInterval::Day>, OfNull::IsNull},
    {"HOUR", 1, 1, Part<DateInterval::Hour>, OfNull::IsNull},
    {"MINUTE", 1, 1, Part<DateInterval::Minute>, OfNull::IsNull},
    {"SECOND", 1, 1, Part<DateInterval::Second>, OfNull::IsNull},
    {"WEEKDAY", 1, 2, Weekday, OfNull::IsNull},
    {"MONTHNAME", 1, 2, MonthName},
    {"WEEKDAYNAME", 1, 3, WeekdayName},
    {"DATEDIFF", 3, 3, Difference},
    {"DATEADD", 3, 3, DateAdd},
    {"DATEPART", 2, 2, DatePart},
    {"DATESERIAL", 3, 3, DateSerial},
});

}  // namespace

std::span<const ExpressionFunction> DateFunctions() { return kFunctions; }

}  // namespace ktl
