#pragma once

#include <functional>
#include <string>

#include "runtime/date.h"

namespace ktl {

class EmployeeReads;

// The days of a salary month: its figure, the days paid for and the days present.
struct DayCounts {
  double calendar = 0;
  double pay = 0;
  double present = 0;
  bool operator==(const DayCounts&) const = default;
};

// First and last day, both included.
struct DayRange {
  Date first;
  Date last;

  long Days() const { return DaysBetween(first, last) + 1; }
  bool Holds(const Date& date) const { return first <= date && date <= last; }
  bool operator==(const DayRange&) const = default;
};

// What is counted in a range of days. Leave comes with a selection of leave kinds.
enum class DayKind { None = 0, Both = 1, Weekly = 2, General = 3, Leave = 4 };

enum class LeaveSelection {
  NotPresent = 1,     // every leave but the reserved kinds 2 and 3
  AffectsSalary = 2,  // what is not paid for
  LossOfPay = 3,
  Leave = 4,
  NotLeave = 5,
  All = 6,
  Second = 7,
  Third = 8
};
std::string LeaveSelectionSql(LeaveSelection selection);

// Whose days are counted, and in which period of the month.
struct DayRequest {
  long empId = 0;
  long empDetId = 0;
  long monthYear = 0;
  long attHeadId = 0;
  DayRange period;
  bool keepPayDays = false;  // present days are the pay days, leave is not looked at
  bool capToPeriod = false;  // a fixed month figure pays no more than the days of the period
};

inline constexpr int kMonthlyHead = 4;  // ATTNTYPE of a head whose leave is entered by the month

// NODFORCALC: what the days of a month are under an attendance head.
inline constexpr int kThirtyDays = 1;
inline constexpr int kCalendarDays = 2;
inline constexpr int kHeadDays = 3;  // of SLC_ATTHEADNOD
inline constexpr int kLessHolidays = 4;
inline constexpr int kLessGeneral = 5;
inline constexpr int kLessWeekly = 6;

// How an attendance head counts.
struct DayRules {
  int nodForCalc = kCalendarDays;
  bool monthly = false;  // leave is entered by the month
  bool tight = true;     // leave is entered by the day and taken off
  double headDays = 0;   // of SLC_ATTHEADNOD, when nodForCalc asks for it
};

// Where a count finds its holidays and its leave.
struct DaySources {
  std::function<double(DayKind, const DayRange&)> holidays;
  std::function<double(LeaveSelection)> monthlyLeave;
  std::function<double(LeaveSelection)> dailyLeave;
};

// The figure of a month by NODFORCALC; 0 for a value outside 1 to 6.
double MonthFigure(const DayRules& rules, const DayRange& month, const DaySources& sources);
// All three counts. The period has been clipped by the caller where that is wanted.
DayCounts CountDays(const DayRules& rules, const DayRange& month, const DayRequest& request,
                    const DaySources& sources);

// Of SLC_ATTHEADNOD; 0 without a row.
double ReadHeadDays(EmployeeReads& reads, long attHeadId, long monthYear);

// "2026-09-14"
inline std::string IsoDay(const Date& date) { return FormatDate(date, "yyyy-MM-dd"); }

}  // namespace ktl
