#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace ktl {

// A point in time of the run-time: a calendar day from year 100 to 9999, with a time of day to the second.
class Date {
 public:
  Date() = default;

  // Nothing when there is no such day (30 February, month 13).
  static std::optional<Date> FromYmd(int year, int month, int day, int hour = 0, int minute = 0,
                                     int second = 0);
  // Days since 30/Dec/1899; the fraction is the time of day.
  static Date FromSerial(double serial);

  int year() const;
  int month() const;
  int day() const;
  int hour() const;
  int minute() const;
  int second() const;
  int weekday() const;  // Sunday is 1
  bool HasTime() const;

  Date AddDays(long days) const;
  Date AddMonths(long months) const;  // the day is lowered to the end of a shorter month
  Date DayOnly() const;
  double serial() const;

  auto operator<=>(const Date&) const = default;

 private:
  explicit Date(std::int64_t seconds) : seconds_(seconds) {}
  std::int64_t seconds_ = -2209161600;  // since 01/Jan/1970; the run-time's day 0 is 30/Dec/1899
};

// Whole days from first to last.
long DaysBetween(const Date& first, const Date& last);

// What counts as a date, the day always first: "12/3/2010", "1/Apr/2010", "01-04-2010", "2010-04-01",
// "3/2010" (the first of that month), each with an optional time. Two-digit years 00 to 29 are 2000 to 2029.
std::optional<Date> ParseDate(std::string_view text);
bool IsDate(std::string_view text);

// Patterns, letters in any case: d dd ddd dddd m mm mmm mmmm yy yyyy hh n nn ss AM/PM; "mm" right behind an
// hour is the minute; other characters stand as they are. "MMM" and "mmm" both give "Apr".
std::string FormatDate(const Date& date, std::string_view pattern);
// The text unchanged when it is no date.
std::string FormatDateText(std::string_view text, std::string_view pattern);

}  // namespace ktl
