#include "formula/day_count.h"

#include <fmt/format.h>

#include <algorithm>

#include "formula/employee_reads.h"

namespace ktl {
namespace {

constexpr double kFixedDays = 30;

DayKind HolidaysOff(int nodForCalc) {
  switch (nodForCalc) {
    case kLessHolidays:
      return DayKind::Both;
    case kLessGeneral:
      return DayKind::General;
    case kLessWeekly:
      return DayKind::Weekly;
    default:
      return DayKind::None;
  }
}

// The holidays that come off the present days a second time: 5 and 6 have changed places against the first
// time.
DayKind HolidaysOffPresent(int nodForCalc) {
  switch (nodForCalc) {
    case kLessHolidays:
      return DayKind::Both;
    case kLessGeneral:
      return DayKind::Weekly;
    case kLessWeekly:
      return DayKind::General;
    default:
      return DayKind::None;
  }
}

double DaysLessHolidays(const DayRules& rules, const DayRange& range, const DaySources& sources) {
  const DayKind kind = HolidaysOff(rules.nodForCalc);
  return static_cast<double>(range.Days()) - (kind == DayKind::None ? 0 : sources.holidays(kind, range));
}

double PayDays(const DayRules& rules, double monthFigure, const DayRequest& request,
               const DaySources& sources) {
  switch (rules.nodForCalc) {
    case kThirtyDays:
    case kHeadDays:
      return request.capToPeriod ? std::min(monthFigure, static_cast<double>(request.period.Days()))
                                 : monthFigure;
    case kCalendarDays:
    case kLessHolidays:
    case kLessGeneral:
    case kLessWeekly:
      return DaysLessHolidays(rules, request.period, sources);
    default:
      return 0;
  }
}

void TakeOffLeave(const DayRules& rules, const DaySources& sources, DayCounts& counts) {
  if (rules.monthly || rules.tight) {
    const auto& leave = rules.monthly ? sources.monthlyLeave : sources.dailyLeave;
    counts.present = counts.pay - leave(LeaveSelection::NotPresent);
    counts.pay -= leave(LeaveSelection::AffectsSalary);
  } else {
    counts.pay -= sources.dailyLeave(LeaveSelection::LossOfPay);
    counts.present = counts.pay;
  }
}

}  // namespace

std::string LeaveSelectionSql(LeaveSelection selection) {
  switch (selection) {
    case LeaveSelection::NotPresent:
      return "Select LEVID From ATT_DEFINITION Where LEVID Not In (2,3) And LEAVEYN = 1";
    case LeaveSelection::AffectsSalary:
      return "Select LEVID From ATT_DEFINITION Where AFFECTSALARYYN = 1";
    case LeaveSelection::LossOfPay:
      return "Select LEVID From ATT_DEFINITION Where LEVID = 1";
    case LeaveSelection::Leave:
      return "SELECT LEVID FROM ATT_DEFINITION WHERE LEAVEYN=1";
    case LeaveSelection::NotLeave:
      return "SELECT LEVID FROM ATT_DEFINITION WHERE LEAVEYN<>1";
    case LeaveSelection::Second:
      return "SELECT LEVID FROM ATT_DEFINITION WHERE LEVID = 2";
    case LeaveSelection::Third:
      return "SELECT LEVID FROM ATT_DEFINITION WHERE LEVID = 3";
    case LeaveSelection::All:
      break;
  }
  return "SELECT LEVID FROM ATT_DEFINITION";
}

double MonthFigure(const DayRules& rules, const DayRange& month, const DaySources& sources) {
  switch (rules.nodForCalc) {
    case kThirtyDays:
      return kFixedDays;
    case kHeadDays:
      return rules.headDays;
    case kCalendarDays:
    case kLessHolidays:
    case kLessGeneral:
    case kLessWeekly:
      return DaysLessHolidays(rules, month, sources);
    default:
      return 0;
  }
}

DayCounts CountDays(const DayRules& rules, const DayRange& month, const DayRequest& request,
                    const DaySources& sources) {
  DayCounts counts;
  counts.calendar = MonthFigure(rules, month, sources);
  counts.pay = PayDays(rules, counts.calendar, request, sources);
  if (request.keepPayDays) {
    counts.present = counts.pay;
    return counts;
  }
  TakeOffLeave(rules, sources, counts);
  const DayKind again = HolidaysOffPresent(rules.nodForCalc);
  if (again != DayKind::None) counts.present -= sources.holidays(again, request.period);
  return counts;
}

double ReadHeadDays(EmployeeReads& reads, long attHeadId, long monthYear) {
  return reads
      .Read(fmt::format("SELECT NOD FROM SLC_ATTHEADNOD WHERE ATTHEADID = {} AND MONTHYEAR = {}", attHeadId,
                        monthYear),
            0)
      .ToDouble();
}

}  // namespace ktl
