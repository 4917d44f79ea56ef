#include "runtime/date.h"

#include <algorithm>
#include <chrono>
#include <cmath>

#include "runtime/errors.h"

namespace ktl {
namespace {

using std::chrono::sys_days;
using std::chrono::year_month_day;

constexpr std::int64_t kSecondsPerDay = 86400;
constexpr std::int64_t kDayZero = -25569;  // 30/Dec/1899 in days since 01/Jan/1970
constexpr int kFirstYear = 100;
constexpr int kLastYear = 9999;
constexpr std::int64_t kFirstDay = -683003;  // 01/Jan/100
constexpr std::int64_t kLastDay = 2932896;   // 31/Dec/9999

std::int64_t DayNumber(std::int64_t seconds) {
  return (seconds >= 0 ? seconds : seconds - (kSecondsPerDay - 1)) / kSecondsPerDay;
}

int SecondOfDay(std::int64_t seconds) {
  return static_cast<int>(seconds - DayNumber(seconds) * kSecondsPerDay);
}

year_month_day Calendar(std::int64_t seconds) {
  return year_month_day(sys_days(std::chrono::days(static_cast<int>(DayNumber(seconds)))));
}

bool WithinRange(std::int64_t dayNumber) { return dayNumber >= kFirstDay && dayNumber <= kLastDay; }

}  // namespace

std::optional<Date> Date::FromYmd(int year, int month, int day, int hour, int minute, int second) {
  if (year < kFirstYear || year > kLastYear || month < 1 || day < 1) return std::nullopt;
  if (hour < 0 || hour > 23 || minute < 0 || minute > 59 || second < 0 || second > 59) return std::nullopt;
  const year_month_day ymd{std::chrono::year(year), std::chrono::month(static_cast<unsigned>(month)),
                           std::chrono::day(static_cast<unsigned>(day))};
  if (!ymd.ok()) return std::nullopt;
  const std::int64_t dayNumber = sys_days(ymd).time_since_epoch().count();
  return Date(dayNumber * kSecondsPerDay + hour * 3600 + minute * 60 + second);
}

// The time of day counts forward on both sides of day 0: -1.25 is 29/Dec/1899 06:00.
Date Date::FromSerial(double serial) {
  if (!(std::fabs(serial) < static_cast<double>(kLastDay - kFirstDay))) throw RuntimeError::Overflow();
  const double wholeDays = std::trunc(serial);
  const std::int64_t dayNumber = static_cast<std::int64_t>(wholeDays) + kDayZero;
  const std::int64_t seconds = std::llround(std::fabs(serial - wholeDays) * kSecondsPerDay);
  if (!WithinRange(dayNumber + seconds / kSecondsPerDay)) throw RuntimeError::Overflow();
  return Date(dayNumber * kSecondsPerDay + seconds);
}

double Date::serial() const {
  const auto wholeDays = static_cast<double>(DayNumber(seconds_) - kDayZero);
  const double timeOfDay = static_cast<double>(SecondOfDay(seconds_)) / kSecondsPerDay;
  return wholeDays < 0 ? wholeDays - timeOfDay : wholeDays + timeOfDay;
}

int Date::year() const { return static_cast<int>(Calendar(seconds_).year()); }
int Date::month() const { return static_cast<int>(static_cast<unsigned>(Calendar(seconds_).month())); }
int Date::day() const { return static_cast<int>(static_cast<unsigned>(Calendar(seconds_).day())); }
int Date::hour() const { return SecondOfDay(seconds_) / 3600; }
int Date::minute() const { return SecondOfDay(seconds_) / 60 % 60; }
int Date::second() const { return SecondOfDay(seconds_) % 60; }
bool Date::HasTime() const { return SecondOfDay(seconds_) != 0; }

int Date::weekday() const {
  const std::chrono::weekday weekday{sys_days(Calendar(seconds_))};
  return static_cast<int>(weekday.c_encoding()) + 1;
}

Date Date::AddDays(long days) const {
  if (!WithinRange(DayNumber(seconds_) + days)) throw RuntimeError::InvalidProcedureCall();
  return Date(seconds_ + days * kSecondsPerDay);
}

Date Date::AddMonths(long months) const {
  const year_month_day from = Calendar(seconds_);
  const long month = static_cast<int>(from.year()) * 12L + static_cast<unsigned>(from.month()) - 1 + months;
  if (month < kFirstYear * 12 || month >= (kLastYear + 1) * 12) throw RuntimeError::InvalidProcedureCall();
  const std::chrono::year_month_day_last monthEnd{
      std::chrono::year(static_cast<int>(month / 12)),
      std::chrono::month_day_last(std::chrono::month(static_cast<unsigned>(month % 12 + 1)))};
  const year_month_day day{monthEnd.year(), monthEnd.month(), std::min(from.day(), monthEnd.day())};
  return Date(sys_days(day).time_since_epoch().count() * kSecondsPerDay + SecondOfDay(seconds_));
}

Date Date::DayOnly() const { return Date(DayNumber(seconds_) * kSecondsPerDay); }

long DaysBetween(const Date& first, const Date& last) {
  return std::lround(last.DayOnly().serial() - first.DayOnly().serial());
}

}  // namespace ktl
