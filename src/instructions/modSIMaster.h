#pragma once

#include <string>
#include <vector>

#include "frame/handler_guard.h"
#include "frame/session.h"
#include "instructions/audit_text.h"
#include "instructions/instruction_master.h"
#include "instructions/instruction_type.h"
#include "screen/controls.h"
#include "screen/grid_list.h"
#include "screen/screen.h"

namespace ktl {

// The names under which instructions of one type can be given. Works on the type that the process was started
// for.
class modSIMaster final : public Screen {
 public:
  modSIMaster(Session& session, InstructionType type);

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

  Grid fpgSIMaster{*this, "fpgSIMaster"};

  Button cmdNew{*this, "cmdNew", "&New"};
  Button cmdSave{*this, "cmdSave", "&Save"};
  Button cmdDelete{*this, "cmdDelete", "&Delete"};
  Button cmdClose{*this, "cmdClose", "&Close"};

  void Form_Load() override;
  void Form_Activate() override;

  void chkType_Click();
  void fpgSIMaster_Click(std::size_t row);
  void cmdNew_Click();
  void cmdSave_Click();
  void cmdDelete_Click();

 private:
  void ConnectHandlers();
  void ConnectKeyFilters();
  void OpenForm();
  void ShowForType();
  void DescribeList();
  void FillList();
  void EnableByTicks();

  void Clear();
  void LoadFields(const InstructionMaster& master);
  void NoteOldValues();
  InstructionMaster FromFields() const;

  bool MayDropHouseLoan(const InstructionMaster& master);
  void DeleteName(const InstructionMaster& master);
  void ShowAnew();
  void RefuseSave(const MasterRefusal& refusal);
  void WriteAudit(const std::string& deed);
  std::vector<AuditField> AuditFields() const;
  std::vector<AuditField> AdvancedAuditFields() const;

  bool HasAdvancedOptions() const { return session_.features.On("ADVMGALYN"); }

  Session& session_;
  const InstructionType type_;
  const HandlerGuard<modSIMaster> on_;
  GridList<InstructionMaster> list_{fpgSIMaster};
  std::string caption_;      // of the instruction type
  std::string shown_;        // the names as the list shows them
  std::string oldName_;      // of the row in the fields, empty for a new one
  std::string clickedName_;  // of the row that cmdDelete works on
};

}  // namespace ktl
