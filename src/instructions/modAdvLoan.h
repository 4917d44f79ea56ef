#pragma once

#include <optional>
#include <set>
#include <string>
#include <vector>

#include "frame/doors.h"
#include "frame/employee_choice.h"
#include "frame/handler_guard.h"
#include "instructions/advloan_fields.h"
#include "instructions/advloan_write.h"
#include "instructions/components.h"
#include "instructions/entry_grids.h"
#include "instructions/formula_frame.h"
#include "instructions/overview_frame.h"
#include "instructions/receipts.h"
#include "screen/screen.h"

namespace ktl {

struct Session;

// Entry of advances and loans: an employee's instructions, the schedule of one, its receipts.
class modAdvLoan final : public Screen, public InstructionParent {
 public:
  modAdvLoan(Session& session, InstructionType type);

  EmployeeChoice employee;
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

  RecoveryFrame recovery;
  MonthsFormulaFrame formula;
  OverviewFrame overview;

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
  void chkCurrEMIEmp_Click();
  void cmbALName_Change();
  void txtSerialNo_Change();
  void txtAdvDate_LostFocus();
  void txtAdvAmount_LostFocus();
  void cmdNew_Click();
  void cmdSave_Click();
  void cmdDelete_Click();
  void cmdEMIDelete_Click();
  void cmdMaster_Click();
  void cmdInstitution_Click();
  void cmdMultiAllot_Click();
  void cmdReport_Click();
  void fpgAdvLoan_Click(std::size_t row, std::size_t column);
  void fpgEMI_CellChange(std::size_t row, std::size_t column);

  InstructionKey Key() const override { return {employee.Employee(), type_, serial_}; }
  std::string InstructionName() const override { return cmbALName.Text(); }
  ktl::Subject Subject() const override;
  InstructionTotals Totals() const override { return instructions_.TotalsOf(serial_); }
  std::set<long> RecoveredMonths() const override { return schedule_.RecoveredMonths(); }
  bool ComponentsApart() const override { return KeepsComponentsApart(session_, Key()); }
  void RefreshDetail() override;
  void RefreshEMI() override;
  void RefreshReceipts() override;
  void UpdateOverview() override;
  long FnLngGetCounter() override;

 private:
  void ConnectHandlers();
  void ConnectPermitted();
  void ConnectFormula();
  void PlaceInFrames();
  void SetKeyFilters();
  void SetCaptions();
  void ShowForType();
  void DescribeLists();
  void ShowComponentColumns();
  void RefreshAll();

  void FillLists();
  void FillEmployeeLists();
  void FillNames();
  void EnableCommands();
  void EnableInputs();

  bool HasInstruction() const { return serial_ != 0 && !newRecord_; }
  void ShowInstruction(const AdvLoanDetail& detail);
  void ClearInstruction();
  void ShowScheduleInputs(bool shown);
  void ShowInterestLock();
  void ShowStoredInterest();
  void ShowHouseLoan();

  AdvLoanEntry Entry() const;
  bool ValidateAndSave();
  void AfterSave();
  void ShowAnew();  // what another workstation has changed
  bool RefuseSave(const EntryRefusal& refusal);

  std::optional<AdvLoanDetail> DetailToDelete();
  bool ConfirmCascades();
  // The ticked months when all of them may go.
  std::vector<ScheduleMonth> MonthsToDelete();
  void DeleteInstalments(const std::vector<ScheduleMonth>& deleted);
  DeletedInstalments AdjustAfterDelete(const std::vector<ScheduleMonth>& deleted);

  void CalculateInterest();
  void OpenOnInstruction(const Door<InstructionParent&>& door);

  Session& session_;
  const InstructionType type_;
  const HandlerGuard<modAdvLoan> on_;
  std::string caption_;  // the company's word for the type
  InstructionGrid instructions_{fpgAdvLoan};
  ScheduleGrid schedule_{fpgEMI};
  GridList<Receipt> receipts_{fpgReceipts};
  const AdvLoanFields fields_{cmbALName,    cmbInstitution, txtLoanAccNo, txtAdvDate,
                              txtAdvAmount, txtInterestAmt, txtRemarks,   recovery};
  long serial_ = 0;
  bool newRecord_ = false;  // from the moment an unknown serial number is typed until it is saved
  NameRules rules_;
  // The instruction, its months and receipts as they stood when they were shown.
  std::string shownRow_, shownSchedule_, shownReceipts_;
};

}  // namespace ktl
