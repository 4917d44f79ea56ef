#include "formula/employee_tokens.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <set>

#include "common/month_year.h"
#include "formula/token_rows.h"
#include "frame/session.h"

namespace ktl {
namespace {

constexpr const char* kOpenDate = "31/DEC/2099";

// One of three histories of a flag by month. The employee's older settings come after it, and then the flag
// of the employee himself.
struct Fund {
  const char* token;
  const char* flag;
  const char* effective;  // month, in the history
  const char* history;
  const char* olderMonth;
};
constexpr Fund kFunds[] = {
    // The older settings have a date for this one alone.
    {"(PFYN)", "PFYN", "PFEFFFROM", "MAS_PFEFFFROMEXT", "YEAR(EX.PFEFFFROM) * 12 + MONTH(EX.PFEFFFROM)"},
    {"(RESPFYN)", "PFRESTRICTYN", "PFRESTRICTEFFFROM", "MAS_PFRESTRICTEFFFROMEXT", "EX.PFRESTRICTEFFFROM"},
    // Without parentheses: a formula keeps its own around the quoted letter.
    {"ESIYN", "ESIYN", "ESIEFFFROM", "MAS_ESIEFFFROMEXT", "EX.ESIEFFFROM"},
};

std::string FundSql(const Fund& fund, const std::string& empId, long monthYear) {
  const std::string history =
      fmt::format("(SELECT TOP 1 {0} FROM {1} WHERE EMPID = {2} AND {3} <= {4} ORDER BY {3} DESC)", fund.flag,
                  fund.history, empId, fund.effective, monthYear);
  const std::string older = fmt::format(
      "(SELECT TOP 1 EX.{0} FROM MAS_EMPLOYEEEXT EX, MAS_EMPLOYEE E WHERE EX.EMPID = E.EMPID AND "
      "EX.{0} <> E.{0} AND {1} <= {2} AND EX.EMPID = {3})",
      fund.flag, fund.olderMonth, monthYear, empId);
  return fmt::format(
      "SELECT CASE WHEN (CASE WHEN ISNULL({0},-2) = -2 THEN CASE WHEN ISNULL({1},-1) = -1 THEN (SELECT {2} "
      "FROM MAS_EMPLOYEE WHERE EMPID = {3}) ELSE {1} END ELSE {0} END) = 1 THEN 'Y' ELSE 'N' END",
      history, older, fund.flag, empId);
}

}  // namespace

void EmployeeTokens::Fill(TokenTable& table, const FormulaRequest& request, const FormulaText& formula) {
  if (formula.Mentions("EmpDet{")) {
    FillDetailFields(table, request);
    if (counts_.HasExtendedFields()) FillExtendedFields(table, request);
  }
  if (formula.Mentions("EmpCustDet{") && counts_.HasCustomFields()) FillCustomFields(table, request);
  if (formula.Mentions("CustQry{") && counts_.HasCustomQueries()) FillCustomQueries(table, request);
  if (formula.Mentions("Emp{")) FillDates(table, request);
  if (formula.Mentions("(PFYN)") || formula.Mentions("(RESPFYN)") || formula.Mentions("(ESIYN)"))
    FillFunds(table, request);
  if (formula.Mentions("OT1UNIT") || formula.Mentions("OT2UNIT") || formula.Mentions("UNIT{"))
    FillUnits(table, request);
}

void EmployeeTokens::FillDetailFields(TokenTable& table, const FormulaRequest& request) {
  LoadEmployeeDetail(session_, reads_->Employee(request.empId), reads_->DetailRow(request.empDetId),
                     [this](const std::string& sql) { return reads_->Rows(sql); });
  const EmployeeDetail& detail = session_.employeeDetail;
  std::set<long> transferred;
  for (Recordset rows = reads_->Rows("Select MASTERID From MAS_EXTCAPTION WHERE Transfered = 1"); !rows.Eof();
       rows.MoveNext())
    transferred.insert(rows[0].ToLong());
  const std::array values = {&detail.DESIGNATION, &detail.OCCUPATION, &detail.DEPARTMENT, &detail.DIVISION,
                             &detail.GRADE,       &detail.BRANCHNAME, &detail.ATTHEADNAME};
  constexpr long kTransferable = 5;
  for (std::size_t slot = 0; slot < values.size(); ++slot) {
    const long master = static_cast<long>(slot) + 1;
    if (master <= kTransferable && transferred.contains(master)) continue;
    AddText(table, "EmpDet{" + session_.captions.groups[slot] + "}", *values[slot],
            "detail row of the employee");
  }
  AddText(table, "EmpDet{" + session_.options.SALSTRUCTCAP + "}", detail.STRUCTDESC,
          "detail row of the employee");
}

// An employee without extended details fails here: there is no row to read from.
void EmployeeTokens::FillExtendedFields(TokenTable& table, const FormulaRequest& request) {
  const Date detailEnd =
      reads_
          ->Fetch(fmt::format("Select EFFTODATE From MAS_EMPLOYEEDET Where EMPID = {} And EMPDETID = {}",
                              reads_->Employee(request.empId), reads_->DetailRow(request.empDetId)),
                  kOpenDate)
          .ToDate();
  const Date monthEnd = *reads_->Once<Date>(fmt::format("month end {}", request.monthYear), [&] {
    return FnDteMonthEnd({reads_->data(), session_.features.On("CALCINMIDYN")}, request.monthYear);
  });
  // Few detail rows end by then; each of these is asked for alone.
  const std::string employee =
      detailEnd < monthEnd ? std::to_string(request.empId) : reads_->Employee(request.empId);
  const Recordset values = reads_->Rows(
      fmt::format("Select * From MAS_EMPLOYEEEXTDET EX WHERE EX.EMPID = {} AND EX.EFFFROMDATE<= '{}' "
                  "ORDER BY EMPEXTID desc",
                  employee, clsDateHandle::FnStrInDateDTM(std::min(detailEnd, monthEnd))));
  Recordset captions =
      reads_->Rows("Select CAPTION,MASTERID From MAS_EXTCAPTION WHERE EXPEDITORYN = 1 Order By MASTERID");
  for (; !captions.Eof(); captions.MoveNext()) {
    const std::string field = fmt::format("EXTCLASS{:02}", captions["MASTERID"].ToLong());
    AddText(table, "EmpDet{" + captions["CAPTION"].TextOrEmpty() + "}", values[field].TextOrEmpty(),
            "extended details of the employee");
  }
}

void EmployeeTokens::FillCustomFields(TokenTable& table, const FormulaRequest& request) {
  const Recordset values = reads_->Rows(
      fmt::format("Select * From MAS_EMPLOYEECUSTOM EX WHERE EMPID = {}", reads_->Employee(request.empId)));
  Recordset captions =
      reads_->Rows("SELECT COLNAME,COLID FROM MAS_EMPCUSCAPTION WHERE expryn=1   Order By COLID ");
  for (; !captions.Eof(); captions.MoveNext()) {
    const std::string field = fmt::format("FIEld{}", captions["COLID"].ToLong());
    AddText(table, "EmpCustDet{" + captions["COLNAME"].TextOrEmpty() + "}",
            values.Eof() ? "" : values[field].TextOrEmpty(), "custom fields of the employee");
  }
}

// All queries run as soon as the formula mentions one, and each anew: it may read what was written since.
void EmployeeTokens::FillCustomQueries(TokenTable& table, const FormulaRequest& request) {
  Recordset queries = reads_->Rows("Select * From MAS_FORMULACUSTOM  EX WHERE MODULEID = 1");
  for (; !queries.Eof(); queries.MoveNext()) {
    std::string sql = queries["FQUERY"].TextOrEmpty();
    sql = ReplaceAll(sql, "$EMPID$", std::to_string(request.empId));
    sql = ReplaceAll(sql, "$EMPDETID$", std::to_string(request.empDetId));
    sql = ReplaceAll(sql, "$MONTHYEAR$", std::to_string(request.monthYear));
    sql = ReplaceAll(sql, "$HOSTNAME$", session_.hostName);
    AddText(table, "CustQry{" + queries["FNAME"].TextOrEmpty() + "}",
            reads_->AskingAnew().FnVarGetDbValue(sql, "0").ToText(), "custom query");
  }
}

void EmployeeTokens::FillDates(TokenTable& table, const FormulaRequest& request) {
  constexpr const char* kSource = "dates of the employee";
  LoadEmployeeDates(session_, reads_->Employee(request.empId),
                    [this](const std::string& sql) { return reads_->Rows(sql); });
  const EmployeeDetail& dates = session_.employeeDetail;
  const auto orOpen = [](const std::string& date) { return date.empty() ? kOpenDate : date; };
  AddDate(table, "Emp{DOJ}", dates.DOJ, kSource);
  AddDate(table, "Emp{DOL}", orOpen(dates.DOL), kSource);
  AddDate(table, "Emp{DORes}", orOpen(dates.RESIGNATIONDATE), kSource);
  AddDate(table, "Emp{DOConf}", orOpen(dates.CONFIRMATIONDATE), kSource);
  if (dates.DOB.empty()) {
    AddText(table, "Emp{DOB}", "", kSource);
  } else {
    AddDate(table, "Emp{DOB}", dates.DOB, kSource);
  }
  AddDate(table, "Emp{SALCALCFROM}", dates.SALCALCFROM, kSource);
  AddText(
      table, "Emp{SEX}",
      reads_->Text(
          fmt::format("SELECT SEX FROM MAS_EMPLOYEE WHERE EMPID = {}", reads_->Employee(request.empId)), ""),
      "SEX of the employee");
}

void EmployeeTokens::FillFunds(TokenTable& table, const FormulaRequest& request) {
  const std::string employee = reads_->Employee(request.empId);
  for (const Fund& fund : kFunds)
    AddText(table, fund.token, reads_->Text(FundSql(fund, employee, request.monthYear), ""),
            "fund status of the month");
}

// Units are read only where some structure has a formula with units, whoever's structure that is.
void EmployeeTokens::FillUnits(TokenTable& table, const FormulaRequest& request) {
  AddNumber(table, "OT1UNIT", 0, "always 0");
  AddNumber(table, "OT2UNIT", 0, "always 0");
  if (!counts_.HasUnits() ||
      !reads_->Exists("SELECT STRUCTID FROM  SLC_SALSTRUCTDET DET ,MAS_FORMULA FR WHERE "
                      "FR.FORMULAID=DET.FORMULAID  AND CHARINDEX('UNIT{',FR.FORMULA)>0"))
    return;
  const std::string employee = reads_->Employee(request.empId);
  const auto structure = static_cast<long>(
      reads_->Number(fmt::format("Select STRUCTID From MAS_EMPLOYEEDET Where EMPID = {} And EMPDETID = {}",
                                 employee, reads_->DetailRow(request.empDetId))));
  for (Recordset heads = reads_->Rows("SELECT * FROM MAS_SALARYHEAD WHERE CALCFLDTYPE='C'"); !heads.Eof();
       heads.MoveNext()) {
    const double units = reads_->Number(fmt::format(
        "SELECT UNIT FROM SLC_COMPCALCDET WHERE PAYTYPEYN = {} AND SALHEADROWID = {} AND STRUCTID = "
        "{} AND EMPID = {} AND MONTHYEAR = {}",
        heads["PAYTYPEYN"].ToLong(), heads["SALHEADROWID"].ToLong(), reads_->Structure(structure), employee,
        request.monthYear));
    AddNumber(table, "UNIT{" + heads["SALHEADING"].TextOrEmpty() + "}", units, "units of the month");
  }
}

}  // namespace ktl
