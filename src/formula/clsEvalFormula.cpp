#include "formula/clsEvalFormula.h"

#include <fmt/format.h>

#include <utility>

#include "formula/token_rows.h"
#include "frame/session.h"
#include "runtime/numbers.h"

namespace ktl {

clsEvalFormula::clsEvalFormula(Session& session)
    : clsEvalFormula(session, std::make_shared<EmployeeReads>(session.data)) {}

clsEvalFormula::clsEvalFormula(Session& session, std::shared_ptr<EmployeeReads> reads)
    : session_(session),
      reads_(std::move(reads)),
      counts_(reads_),
      salary_(reads_),
      attendance_(session, reads_, counts_),
      employee_(session, reads_, counts_) {}

double clsEvalFormula::FnDblEvalFormula(long lngFormulaID, long lngEmpID, long lngEmpDetID, long lngMonthYear,
                                        const Date& dteFrom, const Date& dteTo, bool blnAddArrears,
                                        std::string_view strGrossFromCalc) {
  return FnDblEvalFormula({lngFormulaID,
                           lngEmpID,
                           lngEmpDetID,
                           lngMonthYear,
                           {dteFrom, dteTo},
                           blnAddArrears,
                           std::string(strGrossFromCalc)});
}

double clsEvalFormula::FnDblEvalFormula(const FormulaRequest& request) {
  try {
    return Amount(request);
  } catch (const RuntimeError& error) {
    session_.Inform(error.description());
    return 0;
  }
}

double clsEvalFormula::FnDblEvalSalFormula(long lngFormulaID, long lngEmpID, long lngMonthYear) {
  const DayRange month = attendance_.MonthOf(lngMonthYear);
  const long detail =
      reads_
          ->Fetch(
              fmt::format("Select MAX(EmpDetID) From SLC_SALARYCALC_E Where EMPID = {} And MONTHYEAR = {}",
                          reads_->Employee(lngEmpID), lngMonthYear),
              0)
          .ToLong();
  if (detail <= 0) return 0;
  return FnDblEvalFormula(lngFormulaID, lngEmpID, detail, lngMonthYear, month.first, month.last);
}

void clsEvalFormula::FillOtherData(TokenTable& arrTokens, const DayRequest& request, const DayCounts& days,
                                   bool blnZeroLeave, const FormulaText* formula) {
  attendance_.FillOther(arrTokens, request, days, blnZeroLeave, formula);
}

double clsEvalFormula::Amount(const FormulaRequest& request) { return AmountOf(Evaluate(Prepare(request))); }

PreparedFormula clsEvalFormula::Prepare(const FormulaRequest& request) {
  // A formula that is not there is the formula 0.
  PreparedFormula prepared{
      reads_->Text(fmt::format("Select FORMULA From MAS_FORMULA Where FORMULAID = {}", request.formulaId),
                   "0"),
      {},
      {}};
  const FormulaText formula(prepared.text);
  FillFirstTable(prepared.first, request, formula);
  attendance_.Fill(prepared.second, request, formula);
  employee_.Fill(prepared.second, request, formula);
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

void clsEvalFormula::FillFirstTable(TokenTable& table, const FormulaRequest& request,
                                    const FormulaText& formula) {
  salary_.Fill(table, request, formula);
  if (formula.Mentions("(PTGroup)")) {
    AddText(table, "(PTGroup)",
            reads_->Text(
                fmt::format(
                    "Select PTGRPNAME From MAS_PTGRP PTG, MAS_BRANCH B Where PTG.PTGRPID = B.PTGROUPID And "
                    "B.BRANCHID = (Select BRANCHID From MAS_EMPLOYEEDET Where EMPID = {} And EMPDETID = {})",
                    reads_->Employee(request.empId), reads_->DetailRow(request.empDetId)),
                ""),
            "profession tax group of the branch");
  }
  AddNumber(table, "(SalaryMonth)", request.monthYear, "the month asked for");
}

}  // namespace ktl
