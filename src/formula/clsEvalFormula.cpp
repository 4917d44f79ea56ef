#include "formula/clsEvalFormula.h"

#include <fmt/format.h>

#include "common/month_year.h"
#include "common/sql_text.h"
#include "database/recordset.h"
#include "formula/token_rows.h"
#include "frame/session.h"
#include "runtime/numbers.h"

namespace ktl {
namespace {

constexpr long kHeads = 30;  // columns ECOMPnn and DCOMPnn of an ordinary company

bool OpensAttendance(const FormulaText& formula) {
  // In this letter case only; and the claims, the hours and the holidays do not open it by themselves.
  return formula.MentionsExactly("Days{") || formula.MentionsExactly("Leave{") ||
         formula.MentionsExactly("ReimAllot{");
}

}  // namespace

clsEvalFormula::clsEvalFormula(Session& session)
    : session_(session),
      highestHead_(kHeads),
      attSetting_(session),
      attendanceDays_(session),
      periodDays_(session, attSetting_) {
  const auto wider = [&](int level) {
    return session.data.FnBlnRecExists(
        fmt::format("Select * From MAS_PULLDOWNVALUES Where REFID = 2000 And PDID = {}", level));
  };
  if (wider(1)) highestHead_ = 2 * kHeads;
  if (wider(2)) highestHead_ = 3 * kHeads;
}

double clsEvalFormula::FnDblEvalFormula(long lngFormulaID, long lngEmpID, long lngEmpDetID, long lngMonthYear,
                                        const Date& dteFrom, const Date& dteTo, bool blnAddArrears,
                                        std::string_view strGrossFromCalc) {
  try {
    return AmountOf(Evaluate(Prepare({lngFormulaID,
                                      lngEmpID,
                                      lngEmpDetID,
                                      lngMonthYear,
                                      {dteFrom, dteTo},
                                      blnAddArrears,
                                      std::string(strGrossFromCalc)})));
  } catch (const RuntimeError& error) {
    session_.Inform(error.description());
    return 0;
  }
}

double clsEvalFormula::FnDblEvalSalFormula(long lngFormulaID, long lngEmpID, long lngMonthYear) {
  const DayRange month = attendanceDays_.SetMonthCalcDates(lngMonthYear);
  const long detail =
      session_.data
          .FnVarGetDbValue(fmt::format("Select MAX(EmpDetID) From SLC_SALARYCALC_E Where EMPID = {} And "
                                       "MONTHYEAR = {}",
                                       lngEmpID, lngMonthYear),
                           0)
          .ToLong();
  if (detail <= 0) return 0;
  return FnDblEvalFormula(lngFormulaID, lngEmpID, detail, lngMonthYear, month.first, month.last);
}

PreparedFormula clsEvalFormula::Prepare(const FormulaRequest& request) {
  // A formula that is not there is the formula 0.
  PreparedFormula prepared{
      TextOf(fmt::format("Select FORMULA From MAS_FORMULA Where FORMULAID = {}", request.formulaId), "0"),
      {},
      {}};
  const FormulaText formula(prepared.text);
  FillFirstTable(prepared.first, request, formula);
  if (OpensAttendance(formula)) FillAttendance(prepared.second, request, formula);
  FillSecondTable(prepared.second, request, formula);
  return prepared;
}

Value clsEvalFormula::Evaluate(const PreparedFormula& formula) const {
  const clsExprEval evaluator([this] { return session_.machine.clock.Now(); });
  return evaluator.EvaluateExpression(formula.text, formula.first, formula.second);
}

double clsEvalFormula::AmountOf(const Value& result) {
  const std::string text = result.TextOrEmpty();
  return text.starts_with("ERROR:") ? 0 : Val(text);
}

// Live counts for a head whose attendance is kept to the day, else those of the calculated salary.
DayCounts clsEvalFormula::DaysOf(const DayRequest& request) {
  const bool tight = NumberOf(fmt::format("SELECT ATTNTIGHTYN FROM MAS_ATTHEAD WHERE ATTHEADID = {}",
                                          request.attHeadId)) == 1;
  if (tight) {
    return PeriodLeave(request.monthYear) ? periodDays_.SetNODNDP(request)
                                          : attendanceDays_.SetNODNDP(request);
  }
  const auto stored = [&](const char* column) {
    return NumberOf(
        fmt::format("SELECT {} FROM SLC_SALARYCALC_E WHERE EMPID = {} AND EMPDETID = {} AND MONTHYEAR = {}",
                    column, request.empId, request.empDetId, request.monthYear));
  };
  return {stored("SALCALDAYS"), stored("NOD"), stored("NDP")};
}

bool clsEvalFormula::PeriodLeave(long monthYear) const {
  return session_.features.On("ADVLEAVEYN") && session_.features.LVSTARTMNYEAR <= monthYear;
}

void clsEvalFormula::FillFirstTable(TokenTable& table, const FormulaRequest& request,
                                    const FormulaText& formula) {
  const bool wantsGross = formula.Mentions("(GrossSalary)");
  const bool grossFromCalc = !request.grossFromCalc.empty();
  if (formula.MentionsExactly("Component{") || (wantsGross && !grossFromCalc)) FillSalaryRate(table, request);
  if (formula.MentionsExactly("CV{") || (wantsGross && grossFromCalc))
    FillCalculated(table, request, formula);
  if (formula.Mentions("(PTGroup)")) {
    AddText(
        table, "(PTGroup)",
        TextOf(fmt::format(
                   "Select PTGRPNAME From MAS_PTGRP PTG, MAS_BRANCH B Where PTG.PTGRPID = B.PTGROUPID And "
                   "B.BRANCHID = (Select BRANCHID From MAS_EMPLOYEEDET Where EMPID = {} And EMPDETID = {})",
                   request.empId, request.empDetId),
               ""),
        "profession tax group of the branch");
  }
  AddNumber(table, "(SalaryMonth)", request.monthYear, "the month asked for");
}

// Only the columns of the heads are read: these tables are the widest of the company.
void clsEvalFormula::FillSalaryRate(TokenTable& table, const FormulaRequest& request) {
  const auto heads = SalaryHeads("");
  const Recordset rate(
      session_.Cn,
      fmt::format(
          "Select TOTALENTERED{3} From SLC_SALARYRATE_E E LEFT JOIN SLC_SALARYRATE_D D ON E.SalRateID = "
          "D.SalRateID Where E.EMPID = {0} And E.EMPDETID = {1} And E.MONTHYEAR = (Select MAX(MONTHYEAR) "
          "From SLC_SALARYRATE_E Where EMPID = {0} And EMPDETID = {1} And MONTHYEAR <= {2})",
          request.empId, request.empDetId, request.monthYear, ColumnsOf(heads)));
  if (rate.Eof()) return;
  FillSalaryHeads(table, rate, heads, "Component", false);
  if (request.grossFromCalc.empty())
    AddNumber(table, "(GrossSalary)", rate["TOTALENTERED"], "TOTALENTERED of the salary rate");
}

void clsEvalFormula::FillCalculated(TokenTable& table, const FormulaRequest& request,
                                    const FormulaText& formula) {
  const auto heads = SalaryHeads(formula.text());
  const Recordset salary(
      session_.Cn,
      fmt::format("Select EMPID, EMPDETID, MONTHYEAR, ETOTAL{} From SLC_SALARYCALC_E E INNER JOIN "
                  "SLC_SALARYCALC_D D ON E.SALID = D.SALID Where E.EMPID = {} And E.EMPDETID = {} "
                  "And E.MONTHYEAR = {}",
                  ColumnsOf(heads), request.empId, request.empDetId, request.monthYear));
  if (salary.Eof()) return;
  FillSalaryHeads(table, salary, heads, "CV", request.addArrears);
  if (!request.grossFromCalc.empty())
    AddNumber(table, "(GrossSalary)", salary["ETOTAL"], "ETOTAL of the calculated salary");
}

// All heads, or those that a formula names.
std::vector<clsEvalFormula::SalaryHead> clsEvalFormula::SalaryHeads(const std::string& formula) {
  Recordset rows(
      session_.Cn,
      formula.empty()
          ? "Select * From MAS_SALARYHEAD ORDER BY SALHEADING"
          : fmt::format("Select * From MAS_SALARYHEAD WHERE CHARINDEX('{{'+SALHEADING+'}}','{}')>0 ORDER BY "
                        "SALHEADING ",
                        DoubleQuotes(formula)));
  std::vector<SalaryHead> heads;
  for (; !rows.Eof(); rows.MoveNext()) {
    const bool earning = rows["PAYTYPEYN"].NumberOr0() == 0;
    heads.push_back({UpperCase(rows["SALHEADING"].TextOrEmpty()), earning,
                     SalaryField(earning, rows["SALHEADROWID"].ToLong(), highestHead_)});
  }
  return heads;
}

std::string clsEvalFormula::ColumnsOf(const std::vector<SalaryHead>& heads) {
  std::string columns;
  for (const SalaryHead& head : heads)
    if (!head.field.empty()) columns += ", " + head.field;
  return columns;
}

// A head beyond the highest one has no row in the table: error 9.
void clsEvalFormula::FillSalaryHeads(TokenTable& table, const Recordset& salary,
                                     const std::vector<SalaryHead>& heads, const std::string& family,
                                     bool addArrears) {
  const char* source = family == "CV" ? "calculated salary of the month" : "salary rate in force";
  for (const SalaryHead& head : heads) {
    if (head.field.empty()) throw RuntimeError::SubscriptOutOfRange();
    const double arrears = addArrears ? ArrearsOf(salary, head) : 0;
    AddNumber(table, family + "{" + head.heading + "}", salary[head.field].NumberOr0() + arrears, source);
  }
}

double clsEvalFormula::ArrearsOf(const Recordset& salary, const SalaryHead& head) {
  const std::string tables = head.earning ? "SLC_ARREARS_E ARR, MAS_ARREARS MAS Where "
                                          : "SLC_ARREARS_D ARD, SLC_ARREARS_E ARR, MAS_ARREARS MAS Where "
                                            "ARD.ARREARTRANID=ARR.ARREARTRANID AND ";
  return NumberOf(
      fmt::format("SELECT SUM(ISNULL({},0)) FROM {}MAS.ARREARID=ARR.ARREARID AND  ARRCALCTYPE <> 1 AND "
                  "EMPID = {} AND EMPDETID = {} AND PAIDFOR = {}",
                  head.field, tables, salary["EMPID"].ToLong(), salary["EMPDETID"].ToLong(),
                  salary["MONTHYEAR"].ToLong()));
}

const clsEvalFormula::Counts& clsEvalFormula::CountCache() {
  if (!counts_) {
    const auto count = [&](const char* from) {
      return static_cast<long>(NumberOf(fmt::format("SELECT COUNT(*) FROM {}", from)));
    };
    counts_ = Counts{count("MAS_SALARYHEAD WHERE CALCFLDTYPE='C'"), 3 * count("RMB_MASTER"),
                     count("MAS_EXTCAPTION WHERE EXPEDITORYN=1"), count("MAS_EMPCUSCAPTION WHERE EXPRYN=1"),
                     count("MAS_FORMULACUSTOM WHERE MODULEID = 1")};
  }
  return *counts_;
}

std::string clsEvalFormula::FnStrMonthEndDate(long monthYear) const {
  return clsDateHandle::FnStrInDateDTM(
      FnDteMonthEnd({session_.data, session_.features.On("CALCINMIDYN")}, monthYear));
}

std::string clsEvalFormula::TextOf(const std::string& sql, const char* ifNone) const {
  return session_.data.FnVarGetDbValue(sql, ifNone).ToText();
}

double clsEvalFormula::NumberOf(const std::string& sql) const {
  return session_.data.FnVarGetDbValue(sql, 0).NumberOr0();
}

std::optional<long> DetailRowOfMonth(Session& session, long empId, long monthYear) {
  const Recordset rows(
      session.Cn,
      fmt::format(
          "Select * From MAS_EMPLOYEEDET Where EMPID = {0} And MONTH(EFFFROMDATE) + (YEAR(EFFFROMDATE) * "
          "12) = (Select Max(MONTH(EFFFROMDATE) + (YEAR(EFFFROMDATE) * 12)) From MAS_EMPLOYEEDET Where "
          "EMPID = {0} And MONTH(EFFFROMDATE) + (YEAR(EFFFROMDATE) * 12) <= {1})",
          empId, monthYear));
  if (rows.Eof()) return std::nullopt;
  return rows["EMPDETID"].ToLong();
}

}  // namespace ktl
