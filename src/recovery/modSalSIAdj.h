#pragma once

#include "recovery/deduction_preference.h"
#include "screen/controls.h"
#include "screen/grid.h"
#include "screen/grid_list.h"
#include "screen/progress.h"
#include "screen/screen.h"

namespace ktl {

// Puts off recoveries of a calculated month until the net pay of everybody stays at a floor. One run, one
// use: what was adjusted counts when the salary has been calculated again.
class modSalSIAdj final : public Screen {
 public:
  enum Column : std::size_t {
    kTick,
    kEmpId,
    kRefNo,
    kName,
    kInstruction,
    kEmi,
    kAdjusted,
    kBefore,
    kAfter,
    kExpected,
    kSerial,
  };

  modSalSIAdj(Session& session, long monthYear);

  Frame fmeLoanAdv{*this, "fmeLoanAdv"};
  OptionButton optLoanAdv_0{*this, "optLoanAdv_0", "LoanAdv", "Loan"};
  OptionButton optLoanAdv_1{*this, "optLoanAdv_1", "LoanAdv", "Advance"};
  Frame fmeSalaryOpt{*this, "fmeSalaryOpt", "Net Salary should not go beyond"};
  OptionButton optSalaryOpt_0{*this, "optSalaryOpt_0", "SalaryOpt", "Zero"};
  OptionButton optSalaryOpt_1{*this, "optSalaryOpt_1", "SalaryOpt"};
  TextBox txtPer{*this, "txtPer"};
  Label lblPer{*this, "lblPer", "% of Gross salary"};
  CheckBox chkPartialAdj{*this, "chkPartialAdj", "Last adjusted amount can be partial"};
  Button cmdDisplay{*this, "cmdDisplay", "&Display"};
  Grid fpgDedPref{*this, "fpgDedPref"};
  Frame fmeAdjust{*this, "fmeAdjust", "Adjusted amount"};
  OptionButton optAdjust_0{*this, "optAdjust_0", "Adjust", "Add to next month"};
  OptionButton optAdjust_1{*this, "optAdjust_1", "Adjust", "Equally among all EMI"};
  Progress progress;
  Button cmdAdjust{*this, "cmdAdjust", "&Adjust"};
  Button cmdClose{*this, "cmdClose", "&Close"};
  Menu mnuExport{*this, "mnuExport", "E&xport to Workbook"};

  const long lngMonthYear;

  ktl::Subject Subject() const override;

  void Form_Load() override;
  void Form_Activate() override;
  void Form_Unload() override;

  void txtPer_LostFocus();
  void cmdDisplay_Click();
  void cmdAdjust_Click();
  void fpgDedPref_CellChange(std::size_t lngRow, std::size_t column);
  void RecalcEmployee(std::size_t lngRow);

 private:
  void ConnectHandlers();
  void EmptyList();
  void SetColumns();
  void LoadSettings();
  void SaveSettings();
  void ShowFloorChoice();

  const OptionButton& Kind() const { return optLoanAdv_0.Value() ? optLoanAdv_0 : optLoanAdv_1; }
  PreferenceTerms Terms() const;
  bool IsPercentRefused();
  void FillList();
  void ReadLocks(std::vector<PreferenceRow>& rows);
  void PaintHeld(std::size_t line, const PreferenceRow& row);
  void AdjustTicked();

  Session& session_;
  GridList<PreferenceRow> rows_{fpgDedPref};
};

}  // namespace ktl
