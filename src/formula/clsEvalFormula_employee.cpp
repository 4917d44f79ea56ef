// The token families of the employee: his detail row, custom fields and queries, dates, funds and units.

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <set>

#include "common/month_year.h"
#include "database/recordset.h"
#include "formula/clsEvalFormula.h"
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

std::string FundSql(const Fund& fund, long empId, long monthYear) {
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

void clsEvalFormula::FillSecondTable(TokenTable& table, const FormulaRequest& request,
                                     const FormulaText& formula) {
  const bool details = formula.Mentions("EmpDet{");
  if (details) {
    FillDetailFields(table, request);
    if (CountCache().extendedFields > 0) FillExtendedFields(table, request);
  }
  if (formula.Mentions("EmpCustDet{") && CountCache().customFields > 0) FillCustomFields(table, request);
  if (formula.Mentions("CustQry{") && CountCache().customQueries > 0) FillCustomQueries(table, request);
  if (formula.Mentions("Emp{")) FillDates(table, request);
  if (formula.Mentions("(PFYN)") || formula.Mentions("(RESPFYN)") || formula.Mentions("(ESIYN)"))
    FillFunds(table, request);
  if (formula.Mentions("OT1UNIT") || formula.Mentions("OT2UNIT") || formula.Mentions("UNIT{"))
    FillUnits(table, request);
}

void clsEvalFormula::FillDetailFields(TokenTable& table, const FormulaRequest& request) {
  LoadEmployeeDetail(session_, request.empId, request.empDetId);
  const EmployeeDetail& detail = session_.employeeDetail;
  std::set<long> transferred;
  for (Recordset rows(session_.Cn, "Select MASTERID From MAS_EXTCAPTION WHERE Transfered = 1"); !rows.Eof();
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
void clsEvalFormula::FillExtendedFields(TokenTable& table, const FormulaRequest& request) {
  const Date detailEnd =
      session_.data
          .FnVarGetDbValue(
              fmt::format("Select EFFTODATE From MAS_EMPLOYEEDET Where EMPID = {} And EMPDETID = {}",
                          request.empId, request.empDetId),
              kOpenDate)
          .ToDate();
  const Date cutOff = std::min(detailEnd, Value(FnStrMonthEndDate(request.monthYear)).ToDate());
  const Recordset values(
      session_.Cn,
      fmt::format("Select * From MAS_EMPLOYEEEXTDET EX WHERE EX.EMPID = {} AND EX.EFFFROMDATE<= '{}' "
                  "ORDER BY EMPEXTID desc",
                  request.empId, clsDateHandle::FnStrInDateDTM(cutOff)));
  Recordset captions(session_.Cn,
                     "Select CAPTION,MASTERID From MAS_EXTCAPTION WHERE EXPEDITORYN = 1 Order By MASTERID");
  for (; !captions.Eof(); captions.MoveNext()) {
    const std::string field = fmt::format("EXTCLASS{:02}", captions["MASTERID"].ToLong());
    AddText(table, "EmpDet{" + captions["CAPTION"].TextOrEmpty() + "}", values[field].TextOrEmpty(),
            "extended details of the employee");
  }
}

void clsEvalFormula::FillCustomFields(TokenTable& table, const FormulaRequest& request) {
  const Recordset values(session_.Cn,
                         fmt::format("Select * From MAS_EMPLOYEECUSTOM EX WHERE EMPID = {}", request.empId));
  Recordset captions(session_.Cn,
                     "SELECT COLNAME,COLID FROM MAS_EMPCUSCAPTION WHERE expryn=1   Order By COLID ");
  for (; !captions.Eof(); captions.MoveNext()) {
    const std::string field = fmt::format("FIEld{}", captions["COLID"].ToLong());
    AddText(table, "EmpCustDet{" + captions["COLNAME"].TextOrEmpty() + "}",
            values.Eof() ? "" : values[field].TextOrEmpty(), "custom fields of the employee");
  }
}

// All queries run as soon as the formula mentions one.
void clsEvalFormula::FillCustomQueries(TokenTable& table, const FormulaRequest& request) {
  Recordset queries(session_.Cn, "Select * From MAS_FORMULACUSTOM  EX WHERE MODULEID = 1");
  for (; !queries.Eof(); queries.MoveNext()) {
    std::string sql = queries["FQUERY"].TextOrEmpty();
    sql = ReplaceAll(sql, "$EMPID$", std::to_string(request.empId));
    sql = ReplaceAll(sql, "$EMPDETID$", std::to_string(request.empDetId));
    sql = ReplaceAll(sql, "$MONTHYEAR$", std::to_string(request.monthYear));
    sql = ReplaceAll(sql, "$HOSTNAME$", session_.hostName);
    AddText(table, "CustQry{" + queries["FNAME"].TextOrEmpty() + "}", TextOf(sql, "0"), "custom query");
  }
}

void clsEvalFormula::FillDates(TokenTable& table, const FormulaRequest& request) {
  constexpr const char* kSource = "dates of the employee";
  LoadEmployeeDates(session_, request.empId);
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
  AddText(table, "Emp{SEX}",
          TextOf(fmt::format("SELECT SEX FROM MAS_EMPLOYEE WHERE EMPID = {}", request.empId), ""),
          "SEX of the employee");
}

void clsEvalFormula::FillFunds(TokenTable& table, const FormulaRequest& request) {
  for (const Fund& fund : kFunds)
    AddText(table, fund.token, TextOf(FundSql(fund, request.empId, request.monthYear), ""),
            "fund status of the month");
}

// Units are read only where some structure has a formula with units, whoever's structure that is.
void clsEvalFormula::FillUnits(TokenTable& table, const FormulaRequest& request) {
  AddNumber(table, "OT1UNIT", 0, "always 0");
  AddNumber(table, "OT2UNIT", 0, "always 0");
  if (CountCache().unitHeads < 1 ||
      !session_.data.FnBlnRecExists("SELECT STRUCTID FROM  SLC_SALSTRUCTDET DET ,MAS_FORMULA FR WHERE "
                                    "FR.FORMULAID=DET.FORMULAID  AND CHARINDEX('UNIT{',FR.FORMULA)>0"))
    return;
  const double structure =
      NumberOf(fmt::format("Select STRUCTID From MAS_EMPLOYEEDET Where EMPID = {} And EMPDETID = {}",
                           request.empId, request.empDetId));
  for (Recordset heads(session_.Cn, "SELECT * FROM MAS_SALARYHEAD WHERE CALCFLDTYPE='C'"); !heads.Eof();
       heads.MoveNext()) {
    const double units = NumberOf(fmt::format(
        "SELECT UNIT FROM SLC_COMPCALCDET WHERE PAYTYPEYN = {} AND SALHEADROWID = {} AND STRUCTID = "
        "{} AND EMPID = {} AND MONTHYEAR = {}",
        heads["PAYTYPEYN"].ToLong(), heads["SALHEADROWID"].ToLong(), structure, request.empId,
        request.monthYear));
    AddNumber(table, "UNIT{" + heads["SALHEADING"].TextOrEmpty() + "}", units, "units of the month");
  }
}

}  // namespace ktl
