#pragma once

#include <string>
#include <vector>

#include "frame/session.h"
#include "instructions/instruction_master.h"
#include "screen/controls.h"
#include "screen/grid.h"
#include "screen/screen.h"

namespace ktl {

// The names under which instructions of one type can be given. Works on the type that the process was started
// for.
class modSIMaster final : public Screen {
 public:
  modSIMaster(Session& session, Screen* parent);

  Label lblSIName{*this, "lblSIName", "Name"};
  TextBox txtSIName{*this, "txtSIName"};
  Label lblAccCode{*this, "lblAccCode", "Account Code"};
  TextBox txtAccCode{*this, "txtAccCode"};
  CheckBox chkTDSAppl{*this, "chkTDSAppl", "TDS Applicable"};
  Label lblSection{*this, "lblSection", "Section"};
  ComboBox cmbSection{*this, "cmbSection"};
  Label lblDedPref{*this, "lblDedPref", "Deduction Preference"};
  TextBox txtDedPref{*this, "txtDedPref"};
  CheckBox chkType{*this, "chkType", "Separate Principle/Interest Accounting."};
  CheckBox chkSBIInt{*this, "chkSBIInt", "Consider Interest Free Benefit"};

  Frame fmeConfig{*this, "fmeConfig", "Advanced Options"};
  CheckBox chkMaxAmount{*this, "chkMaxAmount", "Maximum Amount"};
  TextBox txtMaxAmount{*this, "txtMaxAmount"};
  CheckBox chkMaxAllowed{*this, "chkMaxAllowed", "Maximum Allowed"};
  TextBox txtMaxAllowed{*this, "txtMaxAllowed"};
  CheckBox chkRecEMI{*this, "chkRecEMI", "Recovery EMI"};
  TextBox txtRecEMI{*this, "txtRecEMI"};
  CheckBox chkInterestRate{*this, "chkInterestRate", "Interest Rate"};
  TextBox txtInterestRate{*this, "txtInterestRate"};
  CheckBox chkRedBal{*this, "chkRedBal", "Reducing Balance"};

  enum Column : std::size_t {
    Name,
    AccountCode,
    Tds,
    Section,
    DeductionPref,
    MaxLimit,
    MaxAllowed,
    RecoveryEMI,
    InterestRate,
    ReducingBalance,
    SeparatePI,
    IFBYN,
  };
  Grid fpgSIMaster{*this, "fpgSIMaster"};

  Button cmdNew{*this, "cmdNew", "&New"};
  Button cmdSave{*this, "cmdSave", "&Save"};
  Button cmdDelete{*this, "cmdDelete", "&Delete"};
  Button cmdClose{*this, "cmdClose", "&Close"};

  void Form_Load() override;
  void Form_Activate() override;

  void cmdNew_Click();
  void cmdSave_Click();
  void cmdDelete_Click();
  void fpgSIMaster_Click(std::size_t row);

 private:
  Session& session_;
};

}  // namespace ktl
