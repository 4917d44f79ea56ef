#pragma once

#include <string>

#include "formula/day_count.h"

namespace ktl {

// What a formula is evaluated for.
struct FormulaRequest {
  long formulaId = 0;
  long empId = 0;
  long empDetId = 0;
  long monthYear = 0;
  DayRange period;
  bool addArrears = false;
  std::string grossFromCalc;
};

}  // namespace ktl
