#include "premium/premium_panels.h"

#include "common/amounts.h"
#include "runtime/numbers.h"

namespace ktl {

namespace {

std::string ShownTotal(double total) {
  const std::string text = clsGenCmn::FnStrConvertToCommaNumber(NumberText(total), 2);
  return text.empty() ? "0.00" : text;
}

}  // namespace

PremiumOverview::PremiumOverview(Screen& screen) : screen_(screen) {
  fmeOverview.Hold(
      {lblOthTotal, txtOthTotal, lblTotalDedSalary, txtTotalDedSalary, lblTotalDue, txtTotalDue, lblSummary});
  for (TextBox* box : {&txtOthTotal, &txtTotalDedSalary, &txtTotalDue}) {
    box->locked = true;
    box->rightAligned = true;
  }
}

void PremiumOverview::Show(const PremiumTotals& totals) {
  txtOthTotal.SetText(ShownTotal(totals.scheduled));
  txtTotalDedSalary.SetText(ShownTotal(totals.fromSalary));
  txtTotalDue.SetText(ShownTotal(totals.Due()));
}

PremiumFormulaFrame::PremiumFormulaFrame(Session& session, Screen& screen, Frame& covered)
    : FormulaFrame(session, screen, covered, {ErrorStyle::DescriptionOnly, DetailRowRule::HighestNumber}),
      optStartMonth(screen, "optStartMonth", "fmeFormula", "Start Month"),
      optEndMonth(screen, "optEndMonth", "fmeFormula", "End Month") {
  fmeFormula.Hold({optStartMonth, optEndMonth});
  optStartMonth.SetValue(true);
}

}  // namespace ktl
