#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "formula/day_count.h"
#include "formula/period_holidays.h"

namespace ktl {

// The holidays of one employee under one attendance head in a range of days. A day of leave is no holiday.
class AttendanceHolidays final {
 public:
  AttendanceHolidays(EmployeeReads& reads, long attHeadId, long empId, const DayRange& range)
      : reads_(reads), attHeadId_(attHeadId), empId_(empId), range_(range) {}

  // Weekly, general, or both; under both a day counts once.
  double Count(DayKind kind);

 private:
  // One day off of every week.
  struct PatternDay {
    int weekday = 0;
    HolidayHalves halves;
  };

  double WeeklyDays(DayKind kind);
  double GeneralDays(DayKind kind);
  double PatternDays(DayKind kind);
  std::optional<double> RotationDays(const std::string& owner, const DayRange& range);
  std::vector<PatternDay> ReadPattern();
  std::map<Date, HolidayHalves> LeaveHalves();
  std::set<Date> GeneralDates();
  void AddDates(const std::string& sql, std::set<Date>& dates);
  std::string LeaveDates() const;

  EmployeeReads& reads_;
  long attHeadId_;
  long empId_;
  DayRange range_;
  std::string rotation_;  // the owner whose rotation rows were counted; empty when the fixed pattern was
};

}  // namespace ktl
