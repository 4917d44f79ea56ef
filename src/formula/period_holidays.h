#pragma once

#include <map>
#include <set>
#include <string>

#include "database/connection.h"
#include "formula/day_count.h"

namespace ktl {

struct HolidayHalves {
  bool first = false;
  bool second = false;
  double Days() const { return (first ? 0.5 : 0) + (second ? 0.5 : 0); }
};

// Whose holidays they are.
struct HolidayOwner {
  long empId = 0;
  long attHeadId = 0;
  long branchId = 0;
};

// Weekday (Sunday is 1) * 10 + which such weekday of its month it is: the 8th is in week 2.
int WeekdayKey(const Date& date);

// The weekly and general holidays in a range of days, read whole when it is made.
class PeriodHolidays final {
 public:
  PeriodHolidays(Connection& cn, const HolidayOwner& owner, const DayRange& range);

  HolidayHalves Weekly(const Date& date) const;
  bool IsGeneral(const Date& date) const { return general_.contains(date); }

  // A day that is both counts once under both kinds. With priority for the general holiday such a day is no
  // weekly one either; without it each kind counts the day for itself.
  double Count(DayKind kind, const DayRange& range, bool generalFirst) const;

 private:
  void ReadRotation(Connection& cn, const HolidayOwner& owner, const DayRange& range);
  void ReadPattern(Connection& cn, const HolidayOwner& owner, long monthYear);
  void ReadGeneral(Connection& cn, const HolidayOwner& owner, const DayRange& range);
  void ReadGeneralOf(Connection& cn, const char* column, long id, const DayRange& range);

  std::map<Date, HolidayHalves> rotation_;
  std::map<int, HolidayHalves> pattern_;  // by weekday key
  std::set<Date> general_;
};

}  // namespace ktl
