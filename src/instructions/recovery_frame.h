#pragma once

#include "instructions/advloan_entry.h"
#include "screen/controls.h"

namespace ktl {

struct Session;

// How a new advance or loan is recovered: not at all, by a fixed instalment, or by a number of them.
class RecoveryFrame {
  Screen& screen_;  // the controls register with it

 public:
  RecoveryFrame(Session& session, Screen& screen);

  Frame fmeInstallment{screen_, "fmeInstallment", "Recovery"};
  CheckBox chkNoRecovery{screen_, "chkNoRecovery", "No Recovery"};
  OptionButton optInstlLumpSum{screen_, "optInstlLumpSum", "installment", "Lumpsum"};
  OptionButton optInstlCount{screen_, "optInstlCount", "installment", "No. of Installments"};
  Label lblInstlAmt{screen_, "lblInstlAmt", "Instl. Amount"};
  TextBox txtInstlAmt{screen_, "txtInstlAmt"};
  TextBox txtNoOfInstlmnts{screen_, "txtNoOfInstlmnts"};
  Label lblRecvrFrom{screen_, "lblRecvrFrom", "Recover From"};
  TextBox txtRecvrFrom{screen_, "txtRecvrFrom"};
  Frame fmeInstallmentRoundOff{screen_, "fmeInstallmentRoundOff", "EMI Round Off"};
  OptionButton optNearOneRupee{screen_, "optNearOneRupee", "roundOff", "Higher 1 Rupee"};
  OptionButton optNearTenRupee{screen_, "optNearTenRupee", "roundOff", "Higher 10 Rupees"};
  OptionButton optNearFiftyRupee{screen_, "optNearFiftyRupee", "roundOff", "Higher 50 Rupees"};
  OptionButton optRoundNone{screen_, "optRoundNone", "roundOff", "None"};

  void Show(bool shown);
  void Enable(bool enabled);
  void Empty();  // the texts and "No Recovery"
  void Clear();
  // The number of instalments that a name proposes; without one the lump sum.
  void Propose(long count);
  // A number that no longer shows is none.
  std::string ShownCount() const { return txtNoOfInstlmnts.IsShown() ? txtNoOfInstlmnts.Text() : ""; }
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
