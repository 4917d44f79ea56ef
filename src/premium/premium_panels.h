#pragma once

#include "instructions/formula_frame.h"
#include "premium/premium_data.h"

namespace ktl {

// What an employee's premiums of the type come to, and what salaries have taken of them.
class PremiumOverview {
  Screen& screen_;  // the controls register with it

 public:
  explicit PremiumOverview(Screen& screen);

  Frame fmeOverview{screen_, "fmeOverview", "Overview on Calculated Salary"};
  Label lblOthTotal{screen_, "lblOthTotal"};
  TextBox txtOthTotal{screen_, "txtOthTotal"};
  Label lblTotalDedSalary{screen_, "lblTotalDedSalary"};
  TextBox txtTotalDedSalary{screen_, "txtTotalDedSalary"};
  Label lblTotalDue{screen_, "lblTotalDue", "Total Due"};
  TextBox txtTotalDue{screen_, "txtTotalDue"};
  Label lblSummary{screen_, "lblSummary", "Dbl Click For Employee Summary"};

  void Show(const PremiumTotals& totals);
};

// With the choice of the month that the formula is evaluated in.
class PremiumFormulaFrame final : public FormulaFrame {
 public:
  PremiumFormulaFrame(Session& session, Screen& screen, Frame& covered);

  OptionButton optStartMonth;
  OptionButton optEndMonth;
};

}  // namespace ktl
