#pragma once

#include <map>
#include <memory>
#include <set>
#include <string>

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
  PeriodHolidays(EmployeeReads& reads, const HolidayOwner& owner, const DayRange& range);

  // By the row of the date (the employee's before that of his head, and that before everybody's), and without
  // one by the pattern.
  HolidayHalves Weekly(const Date& date) const;
  bool IsGeneral(const Date& date) const { return general_->contains(date); }

  // A day that is both counts once under both kinds. With priority for the general holiday such a day is no
  // weekly one either; without it each kind counts the day for itself.
  double Count(DayKind kind, const DayRange& range, bool generalFirst) const;

 private:
  using Rotation = std::map<Date, HolidayHalves>;
  using Pattern = std::map<int, HolidayHalves>;  // by weekday key
  using Dates = std::set<Date>;

  static Rotation ReadRotation(EmployeeReads& reads, const std::string& ofOwner, const DayRange& range);
  static Pattern ReadPattern(EmployeeReads& reads, const HolidayOwner& owner, long monthYear);
  static Dates ReadGeneral(EmployeeReads& reads, const HolidayOwner& owner, const DayRange& range);

  Rotation ofEmployee_;
  std::shared_ptr<const Rotation> ofHead_;
  std::shared_ptr<const Rotation> ofAll_;
  std::shared_ptr<const Pattern> pattern_;
  std::shared_ptr<const Dates> general_;
};

}  // namespace ktl
