#pragma once

#include "instructions/advloan_entry.h"
#include "screen/controls.h"

namespace ktl {

struct Session;

// How a new advance or loan is recovered: not at all, by a fixed instalment, or by a number of them.
class RecoveryFrame {
 public:
  RecoveryFrame(Session& session, Screen& screen);

  Frame fmeInstallment;
  CheckBox chkNoRecovery;
  OptionButton optInstlLumpSum;
  OptionButton optInstlCount;
  Label lblInstlAmt;
  TextBox txtInstlAmt;
  TextBox txtNoOfInstlmnts;
  Label lblRecvrFrom;
  TextBox txtRecvrFrom;
  Frame fmeInstallmentRoundOff;
  OptionButton optNearOneRupee;
  OptionButton optNearTenRupee;
  OptionButton optNearFiftyRupee;
  OptionButton optRoundNone;

  void Show(bool shown);
  void Enable(bool enabled);
  void Clear();
  // The number of instalments that a name proposes; without one the lump sum.
  void Propose(long count);
  // What is ticked and chosen.
  void ReadChoices(AdvLoanEntry& entry) const;

 private:
  void optInstallment_Click();
  void txtInstlAmt_LostFocus();
  void txtRecvrFrom_LostFocus();
  bool MayRoundToNone() const;

  Session& session_;
};

}  // namespace ktl
