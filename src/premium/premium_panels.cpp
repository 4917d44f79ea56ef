#include "premium/premium_panels.h"

#include "common/amounts.h"
#include "runtime/numbers.h"

namespace ktl {

namespace {

std::string ShownTotal(double total) {
  const std::string text = clsGenCmn::FnStrConvertToCommaNumber(NumberText(total), 2);
  return text.empty() ? "0.00" : text;
}

void AskForPercent(TextBox& box) {
  box.rightAligned = true;
  box.onKeyPress = [&box](int key) { return clsGenCmn::FnIntAllowAmtOnly(key, box.Text()); };
  box.onLeave = [&box] {
    if (!box.Text().empty()) box.SetText(ShownAmount(clsGenCmn::FnDblTrimVal(box.Text())));
  };
}

void FollowTick(CheckBox& tick, TextBox& percent) {
  tick.onClick = [&tick, &percent] {
    percent.enabled = tick.enabled && tick.Value();
    if (!tick.Value()) percent.SetText("");
  };
}

void ShowShare(CheckBox& tick, TextBox& percent, const std::optional<FundShare>& share) {
  tick.SetValue(share && share->counts);
  percent.SetText(tick.Value() ? ShownAmount(share->percent) : "");
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

PeriodFrame::PeriodFrame(Screen& screen) : screen_(screen) {
  fmePeriod.Hold({optMonthly, optQuarterly, optHalfYearly, optYearly});
}

PremiumPeriod PeriodFrame::Chosen() const {
  if (!fmePeriod.visible) return PremiumPeriod::Monthly;
  if (optQuarterly.Value()) return PremiumPeriod::Quarterly;
  if (optHalfYearly.Value()) return PremiumPeriod::HalfYearly;
  return optYearly.Value() ? PremiumPeriod::Yearly : PremiumPeriod::Monthly;
}

void PeriodFrame::Show(PremiumPeriod period) {
  optMonthly.SetValue(period == PremiumPeriod::Monthly);
  optQuarterly.SetValue(period == PremiumPeriod::Quarterly);
  optHalfYearly.SetValue(period == PremiumPeriod::HalfYearly);
  optYearly.SetValue(period == PremiumPeriod::Yearly);
}

IncentiveFrame::IncentiveFrame(Screen& screen) : screen_(screen) {
  fmePFESI.Hold({chkPF, lblPFPer, txtPFPer, chkESI, lblESIPer, txtESIPer, chkPT});
  for (TextBox* box : {&txtPFPer, &txtESIPer}) AskForPercent(*box);
  FollowTick(chkPF, txtPFPer);
  FollowTick(chkESI, txtESIPer);
}

void IncentiveFrame::Allow(const FundSwitches& funds) {
  chkPF.enabled = txtPFPer.enabled = funds.pf;
  chkESI.enabled = txtESIPer.enabled = funds.esi;
  chkPT.enabled = funds.pt;
  chkPF.whyDisabled = chkESI.whyDisabled = "The employee is no member of the fund.";
  chkPT.whyDisabled = "The employee pays no profession tax.";
}

void IncentiveFrame::Show(const PremiumRow& premium) {
  ShowShare(chkPF, txtPFPer, premium.pf);
  ShowShare(chkESI, txtESIPer, premium.esi);
  chkPT.SetValue(premium.pt);
}

void IncentiveFrame::Clear() { Show({}); }

void IncentiveFrame::ReadInto(TypedPremium& typed) const {
  typed.pf = chkPF.Value();
  typed.pfPercent = txtPFPer.Text();
  typed.esi = chkESI.Value();
  typed.esiPercent = txtESIPer.Text();
  typed.pt = chkPT.Value();
}

PremiumFormulaFrame::PremiumFormulaFrame(Session& session, Screen& screen, Frame& covered)
    : FormulaFrame(session, screen, covered, {ErrorStyle::DescriptionOnly, DetailRowRule::HighestNumber}),
      optStartMonth(screen, "optStartMonth", "fmeFormula", "Start Month"),
      optEndMonth(screen, "optEndMonth", "fmeFormula", "End Month") {
  fmeFormula.Hold({optStartMonth, optEndMonth});
  optStartMonth.SetValue(true);
}

}  // namespace ktl
