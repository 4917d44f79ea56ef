#include "instructions/overview_frame.h"

#include "common/amounts.h"

namespace ktl {

OverviewFrame::OverviewFrame(Screen& screen) : screen_(screen) {
  fmeOverview.Hold({lblAdvLoan, txtTotalAdv, lblTotInterest, txtTotalInterest, lblTotRcpt, txtTotalReceipt,
                    lblTotDedSalary, txtTotalDedSalary, lblTotDue, txtTotalDue, lblSummary});
  for (TextBox* box : {&txtTotalAdv, &txtTotalInterest, &txtTotalReceipt, &txtTotalDedSalary, &txtTotalDue}) {
    box->locked = true;
    box->rightAligned = true;
  }
}

void OverviewFrame::Show(const AdvLoanTotals& totals) {
  txtTotalAdv.SetText(ShownAmount(totals.amount));
  txtTotalInterest.SetText(ShownAmount(totals.interest));
  txtTotalReceipt.SetText(ShownAmount(totals.receipts));
  txtTotalDedSalary.SetText(ShownAmount(totals.fromSalary));
  txtTotalDue.SetText(ShownAmount(totals.Due()));
}

}  // namespace ktl
