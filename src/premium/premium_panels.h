#pragma once

#include "instructions/formula_frame.h"
#include "premium/premium_data.h"
#include "premium/premium_entry.h"

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

// How often the amount is due.
class PeriodFrame {
  Screen& screen_;

 public:
  explicit PeriodFrame(Screen& screen);

  Frame fmePeriod{screen_, "fmePeriod", "Premium Payment"};
  OptionButton optMonthly{screen_, "optMonthly", "fmePeriod", "Monthly"};
  OptionButton optQuarterly{screen_, "optQuarterly", "fmePeriod", "Quarterly"};
  OptionButton optHalfYearly{screen_, "optHalfYearly", "fmePeriod", "Half Yearly"};
  OptionButton optYearly{screen_, "optYearly", "fmePeriod", "Yearly"};

  PremiumPeriod Chosen() const;  // every month while the frame is hidden
  void Show(PremiumPeriod period);
  void Clear() { Show(PremiumPeriod::Monthly); }
};

// What an incentive counts for. A percentage is asked for where it counts.
class IncentiveFrame {
  Screen& screen_;

 public:
  explicit IncentiveFrame(Screen& screen);

  Frame fmePFESI{screen_, "fmePFESI", "Counts for"};
  CheckBox chkPF{screen_, "chkPF", "PF"};
  Label lblPFPer{screen_, "lblPFPer", "%"};
  TextBox txtPFPer{screen_, "txtPFPer"};
  CheckBox chkESI{screen_, "chkESI", "ESI"};
  Label lblESIPer{screen_, "lblESIPer", "%"};
  TextBox txtESIPer{screen_, "txtESIPer"};
  CheckBox chkPT{screen_, "chkPT", "PT"};

  void Allow(const FundSwitches& funds);
  void Show(const PremiumRow& premium);
  void Clear();
  void ReadInto(TypedPremium& typed) const;
};

// With the choice of the month that the formula is evaluated in.
class PremiumFormulaFrame final : public FormulaFrame {
 public:
  PremiumFormulaFrame(Session& session, Screen& screen, Frame& covered);

  OptionButton optStartMonth;
  OptionButton optEndMonth;
};

}  // namespace ktl
