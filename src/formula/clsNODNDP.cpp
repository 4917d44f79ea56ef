#include "formula/clsNODNDP.h"

#include <fmt/format.h>

#include <utility>

#include "common/month_year.h"
#include "formula/attendance_holidays.h"
#include "formula/employee_reads.h"
#include "frame/session.h"

namespace ktl {

clsNODNDP::clsNODNDP(Session& session) : clsNODNDP(session, std::make_shared<EmployeeReads>(session.data)) {}

clsNODNDP::clsNODNDP(Session& session, std::shared_ptr<EmployeeReads> reads)
    : session_(session), reads_(std::move(reads)) {}

DayCounts clsNODNDP::SetNODNDP(const DayRequest& request) {
  const DayRange month = SetMonthCalcDates(request.monthYear);
  return CountDays(RulesOf(request.attHeadId, request.monthYear), month, request, SourcesOf(request));
}

double clsNODNDP::FnDblGetNWD(long lngAttHeadID, long lngMonthYear, long lngEmpID) {
  const DayRequest request{.empId = lngEmpID, .monthYear = lngMonthYear, .attHeadId = lngAttHeadID};
  return MonthFigure(RulesOf(lngAttHeadID, lngMonthYear), SetMonthCalcDates(lngMonthYear),
                     SourcesOf(request));
}

double clsNODNDP::FnDblGetHoliday(long lngAttHeadID, const DayRange& range, DayKind kind, long lngEmpID) {
  return AttendanceHolidays(*reads_, lngAttHeadID, lngEmpID, range).Count(kind);
}

double clsNODNDP::FnDblGetLeave(long lngEmpID, const DayRange& range, LeaveSelection selection) {
  double days = 0;
  for (Recordset kinds = reads_->Rows(LeaveSelectionSql(selection)); !kinds.Eof(); kinds.MoveNext()) {
    days +=
        reads_
            ->Read(fmt::format("Select Sum(FIRSTHALFYN)/2.0 + Sum(SECONDHALFYN)/2.0 AS NOOFLEAVE From "
                               "ATT_DETAIL Where EMPID = {} And LEVDATE Between '{}' And '{}' And LEVID = {}",
                               reads_->Employee(lngEmpID), clsDateHandle::FnStrInDateDTM(range.first),
                               clsDateHandle::FnStrInDateDTM(range.last), kinds[0].ToLong()),
                   0)
            .ToDouble();
  }
  return days;
}

double clsNODNDP::FnDblGetLeaveMnthly(long lngEmpID, long lngEmpDetID, long lngMonthYear,
                                      LeaveSelection selection) {
  const std::string employee = reads_->Employee(lngEmpID);
  const std::string months =
      lngEmpDetID == 0
          ? fmt::format("And ATTSLNO IN (Select ATTSLNO From ATT_MONTH Where EMPID={} And MONTHYEAR={})",
                        employee, lngMonthYear)
          : fmt::format(
                "And ATTSLNO =(Select ATTSLNO From ATT_MONTH Where EMPID={} And EMPDETID={} And "
                "MONTHYEAR={})",
                employee, reads_->DetailRow(lngEmpDetID), lngMonthYear);
  double days = 0;
  for (Recordset kinds = reads_->Rows(LeaveSelectionSql(selection)); !kinds.Eof(); kinds.MoveNext()) {
    Recordset rows = reads_->Rows(
        fmt::format("Select LEVVALUE From ATT_MONTHLEV Where LEVID={} {}", kinds[0].ToLong(), months));
    for (; !rows.Eof(); rows.MoveNext()) days += rows[0].NumberOr0();
  }
  return days;
}

DayRange clsNODNDP::SetMonthCalcDates(long lngMonthYear) {
  return *reads_->Once<DayRange>(fmt::format("attendance month {}", lngMonthYear), [&] {
    DayRange month;
    GetMonthDates({reads_->data(), session_.features.On("CALCINMIDYN")}, lngMonthYear, month.first,
                  month.last);
    return month;
  });
}

std::string clsNODNDP::FnStrGetMonthStartDate(long lngMonthYear) {
  return clsDateHandle::FnStrInDateDTM(SetMonthCalcDates(lngMonthYear).first);
}

std::string clsNODNDP::FnStrGetMonthEndDate(long lngMonthYear) {
  return clsDateHandle::FnStrInDateDTM(SetMonthCalcDates(lngMonthYear).last);
}

DayRules clsNODNDP::RulesOf(long attHeadId, long monthYear) {
  const Recordset row = reads_->Rows(
      fmt::format("SELECT ISNULL(NODFORCALC, 2), ISNULL(ATTNTYPE, 1), ISNULL(ATTNTIGHTYN, 1) FROM "
                  "MAS_ATTHEAD WHERE ATTHEADID = {}",
                  attHeadId));
  DayRules rules;
  if (!row.Eof()) {
    rules.nodForCalc = row[0].ToInt();
    rules.monthly = row[1].ToInt() == kMonthlyHead;
    rules.tight = row[2].ToInt() == 1;
  }
  if (rules.nodForCalc == kHeadDays) rules.headDays = ReadHeadDays(*reads_, attHeadId, monthYear);
  return rules;
}

DaySources clsNODNDP::SourcesOf(const DayRequest& request) {
  return {.holidays =
              [this, request](DayKind kind, const DayRange& range) {
                return FnDblGetHoliday(request.attHeadId, range, kind, request.empId);
              },
          .monthlyLeave =
              [this, request](LeaveSelection selection) {
                return FnDblGetLeaveMnthly(request.empId, request.empDetId, request.monthYear, selection);
              },
          .dailyLeave =
              [this, request](LeaveSelection selection) {
                return FnDblGetLeave(request.empId, request.period, selection);
              }};
}

}  // namespace ktl
