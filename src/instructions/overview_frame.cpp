#include "instructions/overview_frame.h"

#include "common/amounts.h"

namespace ktl {

OverviewFrame::OverviewFrame(Screen& screen)
    : fmeOverview(screen, "fmeOverview", "Overview on Calculated Salary"),
      lblAdvLoan(screen, "lblAdvLoan"),
      txtTotalAdv(screen, "txtTotalAdv"),
      lblTotInterest(screen, "lblTotInterest", "Total Interest"),
      txtTotalInterest(screen, "txtTotalInterest"),
      lblTotRcpt(screen, "lblTotRcpt"),
      txtTotalReceipt(screen, "txtTotalReceipt"),
      lblTotDedSalary(screen, "lblTotDedSalary", "Deducted in Salary"),
      txtTotalDedSalary(screen, "txtTotalDedSalary"),
      lblTotDue(screen, "lblTotDue", "Total Due"),
      txtTotalDue(screen, "txtTotalDue"),
      lblSummary(screen, "lblSummary", "Summary") {
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
