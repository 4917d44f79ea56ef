#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "formula/attendance_tokens.h"
#include "formula/clsExprEval.h"
#include "formula/day_count.h"
#include "formula/detail_rows.h"
#include "formula/employee_tokens.h"
#include "formula/family_counts.h"
#include "formula/formula_request.h"
#include "formula/formula_text.h"
#include "formula/salary_tokens.h"
#include "runtime/date.h"

namespace ktl {

struct Session;

// A formula with all that goes into it.
struct PreparedFormula {
  std::string text;
  TokenTable first;
  TokenTable second;
};

// The amount of a formula of MAS_FORMULA for one employee and one month. An object remembers how many rows
// the token families have, and nothing else; for many employees there is FormulaRun.
class clsEvalFormula final {
 public:
  explicit clsEvalFormula(Session& session);
  clsEvalFormula(Session& session, std::shared_ptr<EmployeeReads> reads);

  // dteFrom and dteTo are the first and last day of the period. blnAddArrears adds arrears to CV{ values;
  // strGrossFromCalc, when not empty, takes (GrossSalary) from the calculated salary. Nothing is thrown: an
  // evaluation that fails gives 0, any other failure shows its description and gives 0.
  double FnDblEvalFormula(long lngFormulaID, long lngEmpID, long lngEmpDetID, long lngMonthYear,
                          const Date& dteFrom, const Date& dteTo, bool blnAddArrears = false,
                          std::string_view strGrossFromCalc = "");
  double FnDblEvalFormula(const FormulaRequest& request);
  // For the detail row that the month's salary was calculated for; 0 when there is none.
  double FnDblEvalSalFormula(long lngFormulaID, long lngEmpID, long lngMonthYear);
  // Appends the attendance families: all, or those that a formula mentions. blnZeroLeave makes all leave 0.
  void FillOtherData(TokenTable& arrTokens, const DayRequest& request, const DayCounts& days,
                     bool blnZeroLeave, const FormulaText* formula = nullptr);

  // FnDblEvalFormula and its parts, for those who want to see failures; these throw.
  double Amount(const FormulaRequest& request);
  PreparedFormula Prepare(const FormulaRequest& request);
  Value Evaluate(const PreparedFormula& formula) const;
  static double AmountOf(const Value& result);

 private:
  void FillFirstTable(TokenTable& table, const FormulaRequest& request, const FormulaText& formula);

  Session& session_;
  std::shared_ptr<EmployeeReads> reads_;
  FamilyCounts counts_;
  SalaryTokens salary_;
  AttendanceTokens attendance_;
  EmployeeTokens employee_;
};

}  // namespace ktl
