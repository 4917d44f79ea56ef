// The token families of attendance: leave, hours, holidays, reimbursements and days.

#include <fmt/format.h>

#include <algorithm>

#include "common/month_year.h"
#include "database/recordset.h"
#include "formula/clsEvalFormula.h"
#include "formula/token_rows.h"
#include "frame/session.h"

namespace ktl {

void clsEvalFormula::FillAttendance(TokenTable& table, const FormulaRequest& request,
                                    const FormulaText& formula) {
  DayRequest days{.empId = request.empId,
                  .empDetId = request.empDetId,
                  .monthYear = request.monthYear,
                  .period = request.period};
  days.attHeadId = static_cast<long>(
      NumberOf(fmt::format("Select ATTHEADID From MAS_EMPLOYEEDET Where EMPID = {} And EMPDETID = {}",
                           request.empId, request.empDetId)));
  FillOtherData(table, days, DaysOf(days), false, &formula);
}

// What a formula does not mention is not looked up for it.
void clsEvalFormula::FillOtherData(TokenTable& arrTokens, const DayRequest& request, const DayCounts& days,
                                   bool blnZeroLeave, const FormulaText* formula) {
  const auto wanted = [&](std::string_view leadIn) {
    return formula == nullptr || formula->Mentions(leadIn);
  };
  const Counts& counts = CountCache();
  if (wanted("Leave{")) FillLeave(arrTokens, request, blnZeroLeave);
  if (wanted("(AdjHours)")) {
    AddNumber(arrTokens, "(AdjHours)",
              NumberOf(fmt::format(
                  "SELECT ADJHRS FROM LEV_MONTHDET  WHERE EMPID  = {} AND EMPDETID = {} AND MONTHYEAR= "
                  "{}",
                  request.empId, request.empDetId, request.monthYear)),
              "adjusted hours of the month");
  }
  FillHolidays(arrTokens, request, formula);
  if (counts.reimbursements > 0 && wanted("Reim")) FillReimbursements(arrTokens, request);
  if (wanted("Days{")) FillDays(arrTokens, request, days, wanted("Days{Total"));
}

void clsEvalFormula::FillLeave(TokenTable& table, const DayRequest& request, bool zeroLeave) {
  const bool monthlyHead = session_.data.FnBlnRecExists(fmt::format(
      "Select ATTHEADID From MAS_ATTHEAD Where ATTNTYPE = 4 And ATTHEADID = {}", request.attHeadId));
  for (Recordset kinds(session_.Cn, "Select * From ATT_DEFINITION ORDER BY LEVSHORT"); !kinds.Eof();
       kinds.MoveNext()) {
    AddNumber(table, "Leave{" + UpperCase(kinds["LEVSHORT"].TextOrEmpty()) + "}",
              zeroLeave ? 0.0 : LeaveTaken(request, kinds["LEVID"].ToLong(), monthlyHead), "leave taken");
  }
}

double clsEvalFormula::LeaveTaken(const DayRequest& request, long levId, bool monthlyHead) {
  if (PeriodLeave(request.monthYear)) {
    return periodDays_.FnDblLeaveAvailed(request.empId, levId, request.period, request.attHeadId,
                                         request.empDetId);
  }
  if (monthlyHead) {
    return NumberOf(
        fmt::format("Select Sum(ML.LEVVALUE) AS NOOFLEAVE From ATT_MONTH M, ATT_MONTHLEV ML Where "
                    "M.ATTSLNO = ML.ATTSLNO And M.EMPID = {} And M.EMPDETID = {} And M.MONTHYEAR = {} And "
                    "ML.LEVID = {}",
                    request.empId, request.empDetId, request.monthYear, levId));
  }
  return NumberOf(
      fmt::format("Select Sum(FIRSTHALFYN)/2.0 + Sum(SECONDHALFYN)/2.0 AS NOOFLEAVE From ATT_DETAIL Where "
                  "EMPID = {} And LEVDATE Between '{}' And '{}' And LEVID = {}",
                  request.empId, clsDateHandle::FnStrInDateDTM(request.period.first),
                  clsDateHandle::FnStrInDateDTM(request.period.last), levId));
}

// Only where a formula of the employee's own salary structure mentions the token.
void clsEvalFormula::FillHolidays(TokenTable& table, const DayRequest& request, const FormulaText* formula) {
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
    if (!session_.data.FnBlnRecExists(fmt::format(
            "SELECT FORMULAID FROM MAS_FORMULA WHERE CHARINDEX('{}',FORMULA) > 0  AND FORMULAID IN (SELECT "
            "FORMULAID FROM SLC_SALSTRUCTDET WHERE FORMULAID>=1 AND  STRUCTID IN (SELECT STRUCTID FROM "
            "MAS_EMPLOYEEDET    WHERE EMPDETID = {} AND EMPID= {}))",
            holiday.token, request.empDetId, request.empId)))
      continue;
    const DayRange range = holiday.wholeMonth ? DayRange{attSetting_.FnDteMonthCalcStart(request.monthYear),
                                                         attSetting_.FnDteMonthCalcEnd(request.monthYear)}
                                              : request.period;
    AddNumber(table, holiday.token,
              periodDays_.FnDblGetHolAndLeave(request.attHeadId, range, request.empId, holiday.kind),
              "holidays of the attendance head");
  }
}

void clsEvalFormula::FillReimbursements(TokenTable& table, const DayRequest& request) {
  constexpr const char* kSource = "reimbursements of the month";
  Recordset heads(session_.Cn, "Select RMBID, RMBNAME From RMB_MASTER Order By RMBNAME");
  for (; !heads.Eof(); heads.MoveNext()) {
    const long head = heads["RMBID"].ToLong();
    const std::string name = UpperCase(heads["RMBNAME"].TextOrEmpty());
    const double allotted = NumberOf(
        fmt::format("Select AD.ALLOTAMT From RMB_ALLOT A, RMB_ALLOTDET AD Where A.RMBALLOTID = AD.RMBALLOTID "
                    "And A.EMPID = {} And AD.MONTHYEAR = {} And A.RMBID = {}",
                    request.empId, request.monthYear, head));
    // A claim without a salary month counts in the month of its date.
    const double claimed =
        NumberOf(
            fmt::format("Select SUM(CLAIMAMT) From RMB_CLAIM A Where A.EMPID = {} And A.SALARYMONTH = {} And "
                        "A.RMBID = {}",
                        request.empId, request.monthYear, head)) +
        NumberOf(
            fmt::format("Select SUM(CLAIMAMT) From RMB_CLAIM A Where A.EMPID = {} And A.SALARYMONTH = 0  AND "
                        "(YEAR(CLAIMDATE)*12) + MONTH(CLAIMDATE)= {} And A.RMBID = {}",
                        request.empId, request.monthYear, head));
    AddNumber(table, "ReimAllot{" + name + "}", allotted, kSource);
    AddNumber(table, "ReimClaim{" + name + "}", claimed, kSource);
    AddNumber(table, "ReimUnclaim{" + name + "}", std::max(0.0, allotted - claimed), kSource);
  }
}

void clsEvalFormula::FillDays(TokenTable& table, const DayRequest& request, const DayCounts& days,
                              bool withTotals) {
  constexpr const char* kSource = "day counts of the month";
  constexpr const char* kTotals = "calculated salaries of the month, all detail rows";
  const auto total = [&](const char* column) {
    return NumberOf(
        fmt::format("SELECT SUM({}) FROM SLC_SALARYCALC_E WHERE NOT EMPDETID IS NULL  AND EMPID = {} AND "
                    "MONTHYEAR = {}",
                    column, request.empId, request.monthYear));
  };
  AddNumber(table, "Days{Salary Calendar Days}", days.calendar, kSource);
  AddNumber(table, "Days{Pay Days}", days.pay, kSource);
  AddNumber(table, "Days{Present Days}", days.present, kSource);
  if (!withTotals) return;
  AddNumber(table, "Days{Total Pay Days}", total("NOD"), kTotals);
  AddNumber(table, "Days{Total Present Days}", total("NDP"), kTotals);
}

}  // namespace ktl
