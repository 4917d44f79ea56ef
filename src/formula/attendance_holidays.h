#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>

#include "database/connection.h"
#include "formula/day_count.h"

namespace ktl {

// The holidays of one employee under one attendance head in a range of days. A day of leave is no holiday.
class AttendanceHolidays final {
 public:
  AttendanceHolidays(Connection& cn, long attHeadId, long empId, const DayRange& range)
      : cn_(cn), attHeadId_(attHeadId), empId_(empId), range_(range) {}

  // Weekly, general, or both; under both a day counts once.
  double Count(DayKind kind);

 private:
  struct Halves {
    bool first = false;
    bool second = false;
  };

  double WeeklyDays(DayKind kind);
  double GeneralDays(DayKind kind);
  double PatternDays(DayKind kind);
  std::optional<double> RotationDays(const std::string& owner, const DayRange& range);
  std::map<Date, Halves> LeaveHalves();
  std::set<Date> GeneralDates();
  void AddDates(const std::string& sql, std::set<Date>& dates);
  std::string Between(const char* column, const DayRange& range) const;
  std::string LeaveDates() const;

  Connection& cn_;
  long attHeadId_;
  long empId_;
  DayRange range_;
  std::string rotation_;  // the owner whose rotation rows were counted; empty when the fixed pattern was
};

}  // namespace ktl
