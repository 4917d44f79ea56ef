#pragma once

#include "instructions/advloan_data.h"
#include "screen/controls.h"

namespace ktl {

// What an employee's advances or loans come to altogether.
class OverviewFrame {
  Screen& screen_;  // the controls register with it

 public:
  explicit OverviewFrame(Screen& screen);

  Frame fmeOverview{screen_, "fmeOverview", "Overview on Calculated Salary"};
  Label lblAdvLoan{screen_, "lblAdvLoan"};
  TextBox txtTotalAdv{screen_, "txtTotalAdv"};
  Label lblTotInterest{screen_, "lblTotInterest", "Total Interest"};
  TextBox txtTotalInterest{screen_, "txtTotalInterest"};
  Label lblTotRcpt{screen_, "lblTotRcpt"};
  TextBox txtTotalReceipt{screen_, "txtTotalReceipt"};
  Label lblTotDedSalary{screen_, "lblTotDedSalary", "Deducted in Salary"};
  TextBox txtTotalDedSalary{screen_, "txtTotalDedSalary"};
  Label lblTotDue{screen_, "lblTotDue", "Total Due"};
  TextBox txtTotalDue{screen_, "txtTotalDue"};
  Label lblSummary{screen_, "lblSummary", "Summary"};

  void Show(const AdvLoanTotals& totals);
};

}  // namespace ktl
