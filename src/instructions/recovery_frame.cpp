#include "instructions/recovery_frame.h"

#include "common/amounts.h"
#include "common/month_year.h"
#include "frame/handler_guard.h"
#include "frame/number_fields.h"
#include "frame/pickers.h"
#include "frame/session.h"
#include "runtime/numbers.h"

namespace ktl {

RecoveryFrame::RecoveryFrame(Session& session, Screen& screen) : screen_(screen), session_(session) {
  fmeInstallment.Hold({chkNoRecovery, optInstlLumpSum, optInstlCount, lblInstlAmt, txtInstlAmt,
                       txtNoOfInstlmnts, lblRecvrFrom, txtRecvrFrom});
  fmeInstallmentRoundOff.Hold({optNearOneRupee, optNearTenRupee, optNearFiftyRupee, optRoundNone});
  optRoundNone.visible = MayRoundToNone();
  TakeAmounts({&txtInstlAmt});
  TakeCounts({&txtNoOfInstlmnts});
  txtRecvrFrom.onKeyPress = clsGenCmn::DateKeyWithAlpha;
  const HandlerGuard on(session, *this, ErrorStyle::NumberFirst);
  optInstlLumpSum.onClick = optInstlCount.onClick = on(&RecoveryFrame::optInstallment_Click);
  txtInstlAmt.onLeave = txtNoOfInstlmnts.onLeave = on(&RecoveryFrame::txtInstlAmt_LostFocus);
  AskForMonth(session, txtRecvrFrom);
  txtRecvrFrom.onLeave = on(&RecoveryFrame::txtRecvrFrom_LostFocus);
}

bool RecoveryFrame::MayRoundToNone() const { return session_.machine.folder.HasFile("SIRoundNone.dat"); }

void RecoveryFrame::Show(bool shown) {
  fmeInstallment.visible = shown;
  optInstallment_Click();
}

void RecoveryFrame::Enable(bool enabled) {
  fmeInstallment.enabled = fmeInstallmentRoundOff.enabled = enabled;
}

void RecoveryFrame::Empty() {
  for (TextBox* box : {&txtInstlAmt, &txtNoOfInstlmnts, &txtRecvrFrom}) box->SetText("");
  chkNoRecovery.SetValue(false);
}

void RecoveryFrame::Clear() {
  Empty();
  (MayRoundToNone() ? optRoundNone : optNearOneRupee).SetValue(true);
  optInstlLumpSum.SetValue(true);
}

void RecoveryFrame::Propose(long count) {
  txtNoOfInstlmnts.enabled = true;
  if (count <= 0) return optInstlLumpSum.SetValue(true);
  optInstlCount.SetValue(true);
  txtNoOfInstlmnts.SetText(std::to_string(count));
}

void RecoveryFrame::ReadChoices(AdvLoanEntry& entry) const {
  entry.noRecovery = chkNoRecovery.Value();
  entry.lumpSum = optInstlLumpSum.Value();
  entry.rounding = optNearTenRupee.Value()     ? InstalmentRounding::NearTenRupee
                   : optNearFiftyRupee.Value() ? InstalmentRounding::NearFiftyRupee
                   : optRoundNone.Value()      ? InstalmentRounding::None
                                               : InstalmentRounding::NearOneRupee;
}

void RecoveryFrame::optInstallment_Click() {
  const bool byCount = optInstlCount.Value();
  lblInstlAmt.caption = byCount ? "No. of Instl." : "Instl. Amount";
  txtInstlAmt.visible = !byCount;
  txtNoOfInstlmnts.visible = byCount;
  fmeInstallmentRoundOff.visible = byCount && fmeInstallment.visible;
}

void RecoveryFrame::txtInstlAmt_LostFocus() {
  const bool byCount = optInstlCount.Value();
  TextBox& box = byCount ? txtNoOfInstlmnts : txtInstlAmt;
  if (box.Text().empty()) return;
  box.SetText(FormatNumber(clsGenCmn::FnDblTrimVal(box.Text()), byCount ? "0" : "0.00"));
}

void RecoveryFrame::txtRecvrFrom_LostFocus() { txtRecvrFrom.SetText(FnStrCorrectMonth(txtRecvrFrom.Text())); }

}  // namespace ktl
