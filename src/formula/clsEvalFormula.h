#pragma once

#include <string_view>

#include "runtime/date.h"

namespace ktl {

struct Session;

// The amount of a formula of MAS_FORMULA for one employee and one month.
class clsEvalFormula {
 public:
  explicit clsEvalFormula(Session& session) : session_(session) {}

  // The period is that of the month. Nothing is thrown: what fails gives 0.
  double FnDblEvalFormula(long lngFormulaID, long lngEmpID, long lngEmpDetID, long lngMonthYear, const Date& dteFrom,
                          const Date& dteTo, bool blnAddArrears = false, std::string_view strGrossFromCalc = "");

 private:
  Session& session_;
};

}  // namespace ktl
