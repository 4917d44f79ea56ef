#pragma once

#include <memory>
#include <string>
#include <vector>

#include "formula/clsNODNDP.h"
#include "formula/day_count.h"
#include "formula/modAttSetting.h"
#include "formula/period_holidays.h"

namespace ktl {

struct Session;

// The days of a range that are holidays, as days of the month joined by commas.
struct HolidayLists {
  std::string general;
  std::string weekly;
};

// Day counts under advanced leave management. Nothing is caught: failing statements throw.
class clsNODNDPCALC final {
 public:
  // Loads the head it counts by into the settings.
  clsNODNDPCALC(Session& session, modAttSetting& settings);
  clsNODNDPCALC(Session& session, modAttSetting& settings, std::shared_ptr<EmployeeReads> reads);

  DayCounts SetNODNDP(const DayRequest& request);
  double FnDblGetNWD(long lngAttHeadID, long lngMonthYear, long lngEmpID);
  // Holidays of the head in a range, or (kind Leave) the employee's leave there.
  double FnDblGetHolAndLeave(long lngAttHeadID, const DayRange& range, long lngEmpID, DayKind kind,
                             LeaveSelection selection = LeaveSelection::Leave);
  HolidayLists ListHoliday(long lngAttHeadID, const DayRange& range, long lngEmpID);
  double FnDblNODLimit(long lngAttHeadID, long lngMonthYear) {
    return FnDblGetNWD(lngAttHeadID, lngMonthYear, 0);
  }
  double FnDblWeeklyHoliday(const Date& date, long lngAttHeadID, long lngEmpID);
  bool FnBlnGenHoliday(const Date& date, long lngAttHeadID, long lngEmpID);
  bool FnBlnEmpExist(long lngEmpID, const Date& date);
  // The range cut to the days from joining to leaving, where these lie in it.
  DayRange SetValidPeriod(long lngEmpID, const DayRange& range);
  // Of one leave kind; a range goes no further than the end of the detail row. Without a head the plain sum.
  double FnDblLeaveAvailed(long lngEmpID, long lngLevID, const DayRange& range, long lngAttHeadID,
                           long lngEmpDetID);
  // Fills the ranges of months that have none, and the days of heads that have none for a month.
  void Update_MonthYear();
  // Of the detail row in force on a date; the head is 0 when there is none.
  long FnIntAttHeadID(long lngEmpID, const Date& date);
  long FnIntBranchID(long lngEmpID, const Date& date);

 private:
  struct LeaveDay;

  std::string DetailRowOnDateSql(const char* column, long empId, const Date& date) const;
  PeriodHolidays HolidaysOf(long attHeadId, long empId, const DayRange& range);
  DayRange MonthRange(long monthYear);
  DayRules LoadRules(long attHeadId, long monthYear);
  DayRange InService(long empId, const DayRange& month, const DayRange& period);
  // Of the days of the request that the employee served.
  std::vector<LeaveDay> ReadLeave(const DayRequest& request, const DayRange& served,
                                  const PeriodHolidays& holidays);
  double LeaveOnDay(const Date& date, const HolidayHalves& leave, const PeriodHolidays& holidays) const;

  Session& session_;
  modAttSetting& settings_;
  std::shared_ptr<EmployeeReads> reads_;
  clsNODNDP attendance_;
  bool monthsComplete_ = false;
};

}  // namespace ktl
