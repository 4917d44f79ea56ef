#pragma once

#include "instructions/advloan_data.h"
#include "screen/controls.h"

namespace ktl {

// What an employee's advances or loans come to altogether.
class OverviewFrame {
 public:
  explicit OverviewFrame(Screen& screen);

  Frame fmeOverview;
  Label lblAdvLoan;
  TextBox txtTotalAdv;
  Label lblTotInterest;
  TextBox txtTotalInterest;
  Label lblTotRcpt;
  TextBox txtTotalReceipt;
  Label lblTotDedSalary;
  TextBox txtTotalDedSalary;
  Label lblTotDue;
  TextBox txtTotalDue;
  Label lblSummary;

  void Show(const AdvLoanTotals& totals);
};

}  // namespace ktl
