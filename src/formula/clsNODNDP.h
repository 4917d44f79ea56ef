#pragma once

#include <memory>
#include <string>

#include "formula/day_count.h"

namespace ktl {

struct Session;

// Day counts of an employee from the attendance tables. Nothing is caught: failing statements throw.
class clsNODNDP final {
 public:
  explicit clsNODNDP(Session& session);
  clsNODNDP(Session& session, std::shared_ptr<EmployeeReads> reads);

  DayCounts SetNODNDP(const DayRequest& request);
  // The month figure of a head: with the rotation rows of an employee, and without.
  double FnDblGetNWD(long lngAttHeadID, long lngMonthYear, long lngEmpID);
  double FnDblNODLimit(long lngAttHeadID, long lngMonthYear) {
    return FnDblGetNWD(lngAttHeadID, lngMonthYear, 0);
  }
  double FnDblGetHoliday(long lngAttHeadID, const DayRange& range, DayKind kind, long lngEmpID);
  double FnDblGetLeave(long lngEmpID, const DayRange& range, LeaveSelection selection);
  // Of all details of the employee when the detail is 0.
  double FnDblGetLeaveMnthly(long lngEmpID, long lngEmpDetID, long lngMonthYear, LeaveSelection selection);

  // First and last day of the salary month; as texts "DD/MMM/YYYY".
  DayRange SetMonthCalcDates(long lngMonthYear);
  std::string FnStrGetMonthStartDate(long lngMonthYear);
  std::string FnStrGetMonthEndDate(long lngMonthYear);

 private:
  DayRules RulesOf(long attHeadId, long monthYear);
  DaySources SourcesOf(const DayRequest& request);

  Session& session_;
  std::shared_ptr<EmployeeReads> reads_;
};

}  // namespace ktl
