#pragma once

#include <optional>
#include <set>
#include <string>

#include "frame/doors.h"
#include "frame/employee_choice.h"
#include "frame/handler_guard.h"
#include "instructions/incentive_frame.h"
#include "instructions/period_frame.h"
#include "premium/premium_entry.h"
#include "premium/premium_grids.h"
#include "premium/premium_panels.h"
#include "premium/premium_type.h"
#include "screen/screen.h"

namespace ktl {

struct Session;

// Entry of insurance, SSS, group insurance and periodic incentives: an employee's instructions of one type,
// and the schedule of one of them.
class modInsGInsSSS final : public Screen, public InstructionParent {
 public:
  modInsGInsSSS(Session& session, InstructionType type);

  EmployeeChoice employee;

  // The instruction
  Frame fmeTransaction{*this, "fmeTransaction"};
  Label lblSerialNo{*this, "lblSerialNo", "Serial No."};
  TextBox txtSerialNo{*this, "txtSerialNo"};
  Label lblPolicyName{*this, "lblPolicyName"};
  ComboBox cmbPolicyName{*this, "cmbPolicyName"};
  Button cmdMaster{*this, "cmdMaster", "..."};
  Label lblPolicyNo{*this, "lblPolicyNo"};
  TextBox txtPolicyNo{*this, "txtPolicyNo"};
  Label lblStartMonth{*this, "lblStartMonth", "Start Month"};
  TextBox txtStartMonth{*this, "txtStartMonth"};
  Label lblEndMonth{*this, "lblEndMonth", "End Month"};
  TextBox txtEndMonth{*this, "txtEndMonth"};
  Label lblPolicyAmount{*this, "lblPolicyAmount", "Amount"};
  TextBox txtPolicyAmount{*this, "txtPolicyAmount"};
  Button cmdFmeFormula{*this, "cmdFmeFormula", "&Formula"};
  Label lblInstitution{*this, "lblInstitution", "Institution"};
  ComboBox cmbInstitution{*this, "cmbInstitution"};
  Button cmdInstitution{*this, "cmdInstitution", "..."};
  Label lblRemarks{*this, "lblRemarks", "Remarks"};
  TextBox txtRemarks{*this, "txtRemarks"};

  PeriodFrame period;
  IncentiveFrame incentive;
  Label lblPFPer{*this, "lblPFPer", "%"};
  Label lblESIPer{*this, "lblESIPer", "%"};
  PremiumFormulaFrame formula;
  PremiumOverview overview;

  // Lists
  Grid fpgOtherDetail{*this, "fpgOtherDetail"};
  Grid fpgEMI{*this, "fpgEMI"};
  CheckBox chkSelectAll{*this, "chkSelectAll", "Select All"};
  Button cmdEMIDelete{*this, "cmdEMIDelete", "De&lete EMI"};
  Label lblPaymentDone{*this, "lblPaymentDone", "Payment done"};

  // Commands
  Button cmdNew{*this, "cmdNew", "&New"};
  Button cmdSave{*this, "cmdSave", "&Save"};
  Button cmdDelete{*this, "cmdDelete", "&Delete"};
  Button cmdEmiDet{*this, "cmdEmiDet", "E&MI Details"};
  Button cmdMonthly{*this, "cmdMonthly", "Mon&thly"};
  Button cmdMultiAllot{*this, "cmdMultiAllot", "M&ultiple Allotment"};
  Button cmdReport{*this, "cmdReport", "Re&port"};
  Button cmdClose{*this, "cmdClose", "&Close"};
  Menu mnuExport{*this, "mnuExport", "E&xport to Workbook"};

  void Form_Load() override;
  bool Form_QueryUnload() override;
  void Form_Unload() override;

  void cmbEmpName_Change();
  void txtSerialNo_Change();
  void cmdNew_Click();
  void cmdSave_Click();
  void cmdDelete_Click();
  void cmdEMIDelete_Click();
  void cmdEmiDet_Click();
  void cmdMultiAllot_Click();
  void cmdReport_Click();
  void fpgOtherDetail_Click(std::size_t row, std::size_t column);

  InstructionKey Key() const override { return {employee.Employee(), type_, serial_}; }
  std::string InstructionName() const override { return cmbPolicyName.Text(); }
  ktl::Subject Subject() const override;
  InstructionTotals Totals() const override;
  std::set<long> RecoveredMonths() const override { return schedule_.PaidMonths(); }
  bool ComponentsApart() const override { return false; }
  void RefreshDetail() override;
  void RefreshEMI() override;
  void RefreshReceipts() override {}  // a premium has none
  void UpdateOverview() override;
  long FnLngGetCounter() override;

 private:
  void PlaceInFrames();
  void ConnectFields();
  void ConnectButtons();
  void ConnectFormula();
  void SetCaptions();
  void ShowForType();
  void FillLists();
  void FillNames();
  void FillInstitutions();
  void EnableCommands();
  void RefreshAll();

  bool IsIncentive() const { return type_ == InstructionType::Incentive; }
  TypedPremium Typed() const;
  bool HasChanged() const { return cmdSave.enabled && Typed() != shownFields_; }
  void ShowInstruction(const PremiumRow& premium);
  void ClearInstruction();
  void CloseFormula();
  void TellScheduleStands();
  void BeginNew();
  // False when what was typed is to stay.
  bool MayLeave();

  PremiumEntry Entry() const;
  bool ValidateAndSave();
  bool WriteEntry(PremiumEntry& entry);
  void ShowAnew();  // what another workstation has changed

  Session& session_;
  const InstructionType type_;
  const PremiumFacts& facts_;
  const HandlerGuard<modInsGInsSSS> on_;
  std::string caption_;  // the company's word for the type
  PremiumGrid premiums_{fpgOtherDetail};
  PremiumScheduleGrid schedule_{fpgEMI};
  long serial_ = 0;
  bool stored_ = false;       // the instruction of the serial number is there
  TypedPremium shownFields_;  // as the form was filled or cleared
  std::string shownRow_, shownSchedule_;
};

}  // namespace ktl
