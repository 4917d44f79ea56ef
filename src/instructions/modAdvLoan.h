#pragma once

#include <optional>
#include <string>
#include <vector>

#include "instructions/advloan_write.h"
#include "instructions/instruction_parent.h"
#include "screen/screen.h"

namespace ktl {

struct Session;

// Entry of advances (type 1) and loans (type 2): an employee's instructions, the schedule of one, its
// receipts.
class modAdvLoan final : public Screen, public InstructionParent {
 public:
  // The columns of fpgAdvLoan.
  enum ListColumn : std::size_t {
    kListSerial,
    kListName,
    kListAccount,  // loans only
    kListDate,
    kListAmount,
    kListInterest,
    kListEmi,
    kListRecovered,
    kListReceipts,
    kListRemarks,
  };
  // The columns of fpgEMI.
  enum EmiColumn : std::size_t {
    kEmiTick,
    kEmiCounter,
    kEmiMonth,
    kEmiRecovered,
    kEmiActualPrincipal,
    kEmiActualInterest,
    kEmiActualAmount,
    kEmiModifiedPrincipal,
    kEmiModifiedInterest,
    kEmiInterestAmount,
    kEmiModifiedAmount,
    kEmiInstitution,  // loans only
  };
  // The columns of fpgReceipts.
  enum ReceiptColumn : std::size_t {
    kReceiptCounter,
    kReceiptDate,
    kReceiptPrincipal,
    kReceiptInterest,
    kReceiptTotal,
    kReceiptRemarks,
  };

  modAdvLoan(Session& session, InstructionType type);

  // Employee
  Label lblEmpName{*this, "lblEmpName", "Employee Name"};
  ComboBox cmbEmpName{*this, "cmbEmpName"};
  Label lblEmpIDRef{*this, "lblEmpIDRef"};
  ComboBox cmbEmpIDRef{*this, "cmbEmpIDRef"};
  CheckBox chkCurrEMIEmp{*this, "chkCurrEMIEmp", "List Current Running EMI Employees"};

  // The instruction
  Frame fmeTransaction{*this, "fmeTransaction"};
  Label lblALName{*this, "lblALName"};
  ComboBox cmbALName{*this, "cmbALName"};
  Button cmdMaster{*this, "cmdMaster", "..."};
  Label lblInstitution{*this, "lblInstitution", "Institution"};
  ComboBox cmbInstitution{*this, "cmbInstitution"};
  Button cmdInstitution{*this, "cmdInstitution", "..."};
  Label lblLoanAccNo{*this, "lblLoanAccNo"};
  TextBox txtLoanAccNo{*this, "txtLoanAccNo"};
  Label lblSerialNo{*this, "lblSerialNo", "Serial No."};
  TextBox txtSerialNo{*this, "txtSerialNo"};
  Label lblAdvDate{*this, "lblAdvDate", "Date"};
  TextBox txtAdvDate{*this, "txtAdvDate"};
  Label lblAdvAmount{*this, "lblAdvAmount", "Amount"};
  TextBox txtAdvAmount{*this, "txtAdvAmount"};
  Button cmdFmeFormula{*this, "cmdFmeFormula", "&Formula"};
  Label lblInterestAmt{*this, "lblInterestAmt", "Interest Amount"};
  TextBox txtInterestAmt{*this, "txtInterestAmt"};
  Button cmdIntrCalc{*this, "cmdIntrCalc", "&Interest"};
  Label lblRemarks{*this, "lblRemarks", "Remarks"};
  TextBox txtRemarks{*this, "txtRemarks"};
  Button cmdTDSDet{*this, "cmdTDSDet", "&House Loan"};

  // How it is recovered
  Frame fmeInstallment{*this, "fmeInstallment", "Recovery"};
  CheckBox chkNoRecovery{*this, "chkNoRecovery", "No Recovery"};
  OptionButton optInstlLumpSum{*this, "optInstlLumpSum", "installment", "Lumpsum"};
  OptionButton optInstlCount{*this, "optInstlCount", "installment", "No. of Installments"};
  Label lblInstlAmt{*this, "lblInstlAmt", "Instl. Amount"};
  TextBox txtInstlAmt{*this, "txtInstlAmt"};
  TextBox txtNoOfInstlmnts{*this, "txtNoOfInstlmnts"};
  Label lblRecvrFrom{*this, "lblRecvrFrom", "Recover From"};
  TextBox txtRecvrFrom{*this, "txtRecvrFrom"};
  Frame fmeInstallmentRoundOff{*this, "fmeInstallmentRoundOff", "EMI Round Off"};
  OptionButton optNearOneRupee{*this, "optNearOneRupee", "roundOff", "Higher 1 Rupee"};
  OptionButton optNearTenRupee{*this, "optNearTenRupee", "roundOff", "Higher 10 Rupees"};
  OptionButton optNearFiftyRupee{*this, "optNearFiftyRupee", "roundOff", "Higher 50 Rupees"};
  OptionButton optRoundNone{*this, "optRoundNone", "roundOff", "None"};

  // The amount by formula
  Frame fmeFormula{*this, "fmeFormula", "Amount by Formula"};
  Label lblFormula{*this, "lblFormula", "Formula"};
  ComboBox cmbFormula{*this, "cmbFormula"};
  Button cmdAdvFormulate{*this, "cmdAdvFormulate", "..."};
  Label lblMonths{*this, "lblMonths", "Number of Months"};
  TextBox txtMonths{*this, "txtMonths"};
  Button cmdAccept{*this, "cmdAccept", "&Accept"};
  Button cmdFrmlaClose{*this, "cmdFrmlaClose", "Cl&ose"};

  // Overview
  Frame fmeOverview{*this, "fmeOverview", "Overview on Calculated Salary"};
  Label lblAdvLoan{*this, "lblAdvLoan"};
  TextBox txtTotalAdv{*this, "txtTotalAdv"};
  Label lblTotInterest{*this, "lblTotInterest", "Total Interest"};
  TextBox txtTotalInterest{*this, "txtTotalInterest"};
  Label lblTotRcpt{*this, "lblTotRcpt"};
  TextBox txtTotalReceipt{*this, "txtTotalReceipt"};
  Label lblTotDedSalary{*this, "lblTotDedSalary", "Deducted in Salary"};
  TextBox txtTotalDedSalary{*this, "txtTotalDedSalary"};
  Label lblTotDue{*this, "lblTotDue", "Total Due"};
  TextBox txtTotalDue{*this, "txtTotalDue"};
  Label lblSummary{*this, "lblSummary", "Summary"};

  // Lists
  Tabs tabDetails{*this, "tabDetails"};
  Grid fpgAdvLoan{*this, "fpgAdvLoan"};
  Grid fpgEMI{*this, "fpgEMI"};
  Grid fpgReceipts{*this, "fpgReceipts"};
  CheckBox chkSelectAll{*this, "chkSelectAll", "Select All"};
  Button cmdEMIDelete{*this, "cmdEMIDelete", "De&lete EMI"};
  Label lblAmountPaid{*this, "lblAmountPaid", "Amount Paid"};
  Label lblTotalEqual{*this, "lblTotalEqual", "Total Recovery equal to Amount Paid"};
  Label lblTotalNotEqual{*this, "lblTotalNotEqual", "Total Recovery not equal to Amount Paid"};

  // Commands
  Button cmdNew{*this, "cmdNew", "&New"};
  Button cmdSave{*this, "cmdSave", "&Save"};
  Button cmdDelete{*this, "cmdDelete", "&Delete"};
  Button cmdEmi{*this, "cmdEmi", "E&MI"};
  Button cmdReceipts{*this, "cmdReceipts", "&Receipts"};
  Button cmdMonthly{*this, "cmdMonthly", "Mon&thly"};
  Button cmdMultiAllot{*this, "cmdMultiAllot", "M&ultiple Allotment"};
  Button cmdReport{*this, "cmdReport", "Re&port"};
  Button cmdClose{*this, "cmdClose", "&Close"};
  Menu mnuExport{*this, "mnuExport", "E&xport to Workbook"};
  Menu mnuBulkDelete{*this, "mnuBulkDelete", "&Bulk Delete"};

  void Form_Load() override;
  bool Form_QueryUnload() override;
  void Form_Unload() override;

  void cmbEmpName_Change();
  void cmbEmpIDRef_Change();
  void chkCurrEMIEmp_Click();
  void cmbALName_Change();
  void txtSerialNo_Change();
  void txtAdvDate_LostFocus();
  void txtAdvAmount_LostFocus();
  void txtInstlAmt_LostFocus();
  void txtRecvrFrom_LostFocus();
  void optInstallment_Click();
  void cmdNew_Click();
  void cmdSave_Click();
  void cmdDelete_Click();
  void cmdEMIDelete_Click();
  void cmdFmeFormula_Click();
  void cmdAccept_Click();
  void cmdAdvFormulate_Click();
  void cmdMaster_Click();
  void cmdInstitution_Click();
  void cmdMonthly_Click();
  void cmdMultiAllot_Click();
  void cmdIntrCalc_Click();
  void cmdTDSDet_Click();
  void cmdEmi_Click();
  void cmdReceipts_Click();
  void cmdReport_Click();
  void lblSummary_Click();
  void mnuExport_Click();
  void chkSelectAll_Click();
  void fpgAdvLoan_Click();
  void fpgEMI_CellChange(std::size_t row, std::size_t column);

  InstructionKey Key() const override { return {employee_, type_, serial_}; }
  std::string InstructionName() const override { return cmbALName.Text(); }
  InstructionTotals Totals() const override;
  std::set<long> RecoveredMonths() const override;
  bool ComponentsApart() const override { return rules_.REDUCINGBALYN; }
  void RefreshDetail() override;
  void RefreshEMI() override;
  void RefreshReceipts() override;
  void UpdateOverview() override;
  long FnLngGetCounter() override;

 private:
  void ConnectHandlers();
  void PlaceInFrames();
  void SetCaptions();
  void SetGridColumns();
  void ShowComponentColumns();
  void SetKeyFilters();
  void ShowForType();
  void FillEmployeeLists();
  void FillLists();
  void FillNames();
  // Buttons by the rights of the user and the lock of the employee.
  void EnableCommands();
  void EnableInputs();

  void ShowInstruction(const AdvLoanDetail& detail);
  void ClearInstruction();
  void ShowScheduleInputs(bool shown);
  void ShowInterestLock();
  void ForgetFormula();
  void ShowFormulaFrame(bool shown);

  AdvLoanEntry Entry() const;
  bool ValidateAndSave();
  void AfterSave();
  bool Refuse(const Refusal& refusal);
  Control* FieldOf(EntryField field);
  bool FnBlnChkEMIDeducted() const;

  bool ConfirmCascades(const InstructionKey& key);
  bool AreMonthsFree(const InstructionKey& key);
  std::optional<std::vector<InstalmentToDelete>> UnlockedTickedInstalments();
  double SumOfTicked(EmiColumn column) const;
  std::vector<OpenMonth> OpenMonths() const;
  std::string_view AdjustAfterDelete();
  void PaintListRow(std::size_t row, const AdvLoanListRow& instruction);
  void PaintEmiRow(std::size_t row);
  bool IsRecoveredRow(std::size_t row) const;

  void CalculateInterest();
  // Opens a screen on the current instruction, or says what to select.
  void OpenOnInstruction(const char* screenName);

  Session& session_;
  InstructionType type_;
  std::string caption_;  // the company's word for the type
  long employee_ = 0;
  long serial_ = 0;
  bool newRecord_ = false;  // from the moment an unknown serial number is typed until it is saved
  NameRules rules_;
  std::vector<AdvLoanListRow> instructions_;  // the rows of fpgAdvLoan
  double formulaMonths_ = 0;                  // of the accepted formula, 0 for none
};

}  // namespace ktl
