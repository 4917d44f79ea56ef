#include "instructions/incentive_frame.h"

#include "common/amounts.h"
#include "frame/number_fields.h"

namespace ktl {

namespace {

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

IncentiveFrame::IncentiveFrame(Screen& screen, Percent percent) : screen_(screen) {
  fmePFESI.Hold({chkPF, txtPFPer, chkESI, txtESIPer, chkPT});
  TakeAmounts({&txtPFPer, &txtESIPer});
  if (percent == Percent::Always) return;
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

TypedShares IncentiveFrame::Typed() const {
  return {.pf = chkPF.Value(),
          .pfPercent = txtPFPer.Text(),
          .esi = chkESI.Value(),
          .esiPercent = txtESIPer.Text(),
          .pt = chkPT.Value()};
}

}  // namespace ktl
