#include "formula/attendance_tokens.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "common/month_year.h"
#include "formula/token_rows.h"
#include "frame/session.h"

namespace ktl {
namespace {

// In this letter case only; and the claims, the hours and the holidays do not open them by themselves.
bool OpensAttendance(const FormulaText& formula) {
  return formula.MentionsExactly("Days{") || formula.MentionsExactly("Leave{") ||
         formula.MentionsExactly("ReimAllot{");
}

}  // namespace

AttendanceTokens::AttendanceTokens(Session& session, std::shared_ptr<EmployeeReads> reads,
                                   FamilyCounts& counts)
    : session_(session),
      reads_(std::move(reads)),
      counts_(counts),
      attSetting_(session, reads_),
      attendanceDays_(session, reads_),
      periodDays_(session, attSetting_, reads_) {}

void AttendanceTokens::Fill(TokenTable& table, const FormulaRequest& request, const FormulaText& formula) {
  if (!OpensAttendance(formula)) return;
  DayRequest days{.empId = request.empId,
                  .empDetId = request.empDetId,
                  .monthYear = request.monthYear,
                  .period = request.period};
  days.attHeadId = static_cast<long>(
      reads_->Number(fmt::format("Select ATTHEADID From MAS_EMPLOYEEDET Where EMPID = {} And EMPDETID = {}",
                                 reads_->Employee(request.empId), reads_->DetailRow(request.empDetId))));
  FillOther(table, days, DaysOf(days), false, &formula);
}

// What a formula does not mention is not looked up for it.
void AttendanceTokens::FillOther(TokenTable& table, const DayRequest& request, const DayCounts& days,
                                 bool zeroLeave, const FormulaText* formula) {
  const auto wanted = [&](std::string_view leadIn) {
    return formula == nullptr || formula->Mentions(leadIn);
  };
  const bool hasReimbursements = counts_.HasReimbursements();
  if (wanted("Leave{")) FillLeave(table, request, zeroLeave);
  if (wanted("(AdjHours)")) FillHours(table, request);
  FillHolidays(table, request, formula);
  if (hasReimbursements && wanted("Reim")) FillReimbursements(table, request);
  if (wanted("Days{")) FillDays(table, request, days, wanted("Days{Total"));
}

// Live counts for a head whose attendance is kept to the day, else those of the calculated salary.
DayCounts AttendanceTokens::DaysOf(const DayRequest& request) {
  const bool tight = reads_->Number(fmt::format("SELECT ATTNTIGHTYN FROM MAS_ATTHEAD WHERE ATTHEADID = {}",
                                                request.attHeadId)) == 1;
  if (tight) {
    return PeriodLeave(request.monthYear) ? periodDays_.SetNODNDP(request)
                                          : attendanceDays_.SetNODNDP(request);
  }
  const auto stored = [&](const char* column) {
    return reads_->Number(fmt::format(
        "SELECT {} FROM SLC_SALARYCALC_E WHERE EMPID = {} AND EMPDETID = {} AND MONTHYEAR = {}", column,
        reads_->Employee(request.empId), reads_->DetailRow(request.empDetId), request.monthYear));
  };
  return {stored("SALCALDAYS"), stored("NOD"), stored("NDP")};
}

bool AttendanceTokens::PeriodLeave(long monthYear) const {
  return session_.features.On("ADVLEAVEYN") && session_.features.LVSTARTMNYEAR <= monthYear;
}

void AttendanceTokens::FillLeave(TokenTable& table, const DayRequest& request, bool zeroLeave) {
  const bool monthlyHead = reads_->Exists(fmt::format(
      "Select ATTHEADID From MAS_ATTHEAD Where ATTNTYPE = 4 And ATTHEADID = {}", request.attHeadId));
  for (Recordset kinds = reads_->Rows("Select * From ATT_DEFINITION ORDER BY LEVSHORT"); !kinds.Eof();
       kinds.MoveNext()) {
    AddNumber(table, "Leave{" + UpperCase(kinds["LEVSHORT"].TextOrEmpty()) + "}",
              zeroLeave ? 0.0 : LeaveTaken(request, kinds["LEVID"].ToLong(), monthlyHead), "leave taken");
  }
}

double AttendanceTokens::LeaveTaken(const DayRequest& request, long levId, bool monthlyHead) {
  if (PeriodLeave(request.monthYear)) {
    return periodDays_.FnDblLeaveAvailed(request.empId, levId, request.period, request.attHeadId,
                                         request.empDetId);
  }
  const std::string employee = reads_->Employee(request.empId);
  if (monthlyHead) {
    return reads_->Number(
        fmt::format("Select Sum(ML.LEVVALUE) AS NOOFLEAVE From ATT_MONTH M, ATT_MONTHLEV ML Where "
                    "M.ATTSLNO = ML.ATTSLNO And M.EMPID = {} And M.EMPDETID = {} And M.MONTHYEAR = {} And "
                    "ML.LEVID = {}",
                    employee, reads_->DetailRow(request.empDetId), request.monthYear, levId));
  }
  return reads_->Number(
      fmt::format("Select Sum(FIRSTHALFYN)/2.0 + Sum(SECONDHALFYN)/2.0 AS NOOFLEAVE From ATT_DETAIL Where "
                  "EMPID = {} And LEVDATE Between '{}' And '{}' And LEVID = {}",
                  employee, clsDateHandle::FnStrInDateDTM(request.period.first),
                  clsDateHandle::FnStrInDateDTM(request.period.last), levId));
}

void AttendanceTokens::FillHours(TokenTable& table, const DayRequest& request) {
  AddNumber(table, "(AdjHours)",
            reads_->Number(fmt::format(
                "SELECT ADJHRS FROM LEV_MONTHDET  WHERE EMPID  = {} AND EMPDETID = {} AND "
                "MONTHYEAR= {}",
                reads_->Employee(request.empId), reads_->DetailRow(request.empDetId), request.monthYear)),
            "adjusted hours of the month");
}

// Only where a formula of the employee's own salary structure mentions the token.
void AttendanceTokens::FillHolidays(TokenTable& table, const DayRequest& request,
                                    const FormulaText* formula) {
  struct HolidayToken {
    const char* token;
    DayKind kind;
    bool wholeMonth;
  };
  constexpr HolidayToken kTokens[] = {{"(GenHoliday)", DayKind::General, false},
                                      {"(TotalGenHoliday)", DayKind::General, true},
                                      {"(WeekHoliday)", DayKind::Weekly, false},
                                      {"(TotalWeekHoliday)", DayKind::Weekly, true}};
  for (const HolidayToken& holiday : kTokens) {
    if (formula != nullptr && !formula->Mentions(holiday.token)) continue;
    if (!StructureMentions(holiday.token, request)) continue;
    const DayRange range = holiday.wholeMonth ? DayRange{attSetting_.FnDteMonthCalcStart(request.monthYear),
                                                         attSetting_.FnDteMonthCalcEnd(request.monthYear)}
                                              : request.period;
    AddNumber(table, holiday.token,
              periodDays_.FnDblGetHolAndLeave(request.attHeadId, range, request.empId, holiday.kind),
              "holidays of the attendance head");
  }
}

bool AttendanceTokens::StructureMentions(const char* token, const DayRequest& request) {
  return reads_->Exists(fmt::format(
      "SELECT FORMULAID FROM MAS_FORMULA WHERE CHARINDEX('{}',FORMULA) > 0  AND FORMULAID IN (SELECT "
      "FORMULAID FROM SLC_SALSTRUCTDET WHERE FORMULAID>=1 AND  STRUCTID IN (SELECT STRUCTID FROM "
      "MAS_EMPLOYEEDET    WHERE EMPDETID = {} AND EMPID= {}))",
      token, reads_->DetailRow(request.empDetId), reads_->Employee(request.empId)));
}

void AttendanceTokens::FillReimbursements(TokenTable& table, const DayRequest& request) {
  constexpr const char* kSource = "reimbursements of the month";
  Recordset heads = reads_->Rows("Select RMBID, RMBNAME From RMB_MASTER Order By RMBNAME");
  for (; !heads.Eof(); heads.MoveNext()) {
    const long head = heads["RMBID"].ToLong();
    const std::string name = UpperCase(heads["RMBNAME"].TextOrEmpty());
    const double allotted = Allotted(request, head);
    const double claimed = Claimed(request, head);
    AddNumber(table, "ReimAllot{" + name + "}", allotted, kSource);
    AddNumber(table, "ReimClaim{" + name + "}", claimed, kSource);
    AddNumber(table, "ReimUnclaim{" + name + "}", std::max(0.0, allotted - claimed), kSource);
  }
}

double AttendanceTokens::Allotted(const DayRequest& request, long head) {
  return reads_->Number(
      fmt::format("Select AD.ALLOTAMT From RMB_ALLOT A, RMB_ALLOTDET AD Where A.RMBALLOTID = AD.RMBALLOTID "
                  "And A.EMPID = {} And AD.MONTHYEAR = {} And A.RMBID = {}",
                  reads_->Employee(request.empId), request.monthYear, head));
}

// A claim without a salary month counts in the month of its date.
double AttendanceTokens::Claimed(const DayRequest& request, long head) {
  const std::string employee = reads_->Employee(request.empId);
  return reads_->Number(
             fmt::format("Select SUM(CLAIMAMT) From RMB_CLAIM A Where A.EMPID = {} And A.SALARYMONTH = {} "
                         "And A.RMBID = {}",
                         employee, request.monthYear, head)) +
         reads_->Number(
             fmt::format("Select SUM(CLAIMAMT) From RMB_CLAIM A Where A.EMPID = {} And A.SALARYMONTH = 0  "
                         "AND (YEAR(CLAIMDATE)*12) + MONTH(CLAIMDATE)= {} And A.RMBID = {}",
                         employee, request.monthYear, head));
}

void AttendanceTokens::FillDays(TokenTable& table, const DayRequest& request, const DayCounts& days,
                                bool withTotals) {
  constexpr const char* kSource = "day counts of the month";
  constexpr const char* kTotals = "calculated salaries of the month, all detail rows";
  const auto total = [&](const char* column) {
    return reads_->Number(fmt::format(
        "SELECT SUM({}) FROM SLC_SALARYCALC_E WHERE NOT EMPDETID IS NULL  AND EMPID = {} AND MONTHYEAR = {}",
        column, reads_->Employee(request.empId), request.monthYear));
  };
  AddNumber(table, "Days{Salary Calendar Days}", days.calendar, kSource);
  AddNumber(table, "Days{Pay Days}", days.pay, kSource);
  AddNumber(table, "Days{Present Days}", days.present, kSource);
  if (!withTotals) return;
  AddNumber(table, "Days{Total Pay Days}", total("NOD"), kTotals);
  AddNumber(table, "Days{Total Present Days}", total("NDP"), kTotals);
}

}  // namespace ktl
