#pragma once

#include <string>

#include "recovery/interest_rows.h"
#include "screen/controls.h"
#include "screen/grid.h"
#include "screen/grid_list.h"
#include "screen/screen.h"

namespace ktl {

// The interest editor: principal and interest of every month of one instruction, typed, pasted or computed on
// the falling balance, and written back together.
class modInterestMaster final : public Screen {
 public:
  enum Column : std::size_t {
    kMonth,
    kActualPrincipal,
    kActualInterest,
    kModifiedPrincipal,
    kModifiedInterest,
  };

  modInterestMaster(Session& session, InstructionParent& parent);

  Label lblEmpIDRef{*this, "lblEmpIDRef"};
  Label lblEmpName{*this, "lblEmpName"};
  Grid fpgSIMaster{*this, "fpgSIMaster"};
  Label lblCopyPaste{*this, "lblCopyPaste", "Click here to copy Actual Amounts to Modified Amounts."};
  Button cmdSave{*this, "cmdSave", "&Save"};
  Button cmdUndo{*this, "cmdUndo", "&Undo"};
  Button cmdUpdate{*this, "cmdUpdate", "Co&py"};
  Button cmdRedBalance{*this, "cmdRedBalance", "&Red. Balance"};
  Button cmdIntCalc{*this, "cmdIntCalc", "&Int. Calc"};
  Button cmdClose{*this, "cmdClose", "&Close"};

  Frame frmReducingBal{*this, "frmReducingBal", "Reducing Balance"};
  Label lblInterestRate{*this, "lblInterestRate", "Interest Rate"};
  TextBox txtInterestRate{*this, "txtInterestRate"};
  Label lblMonthOffSet{*this, "lblMonthOffSet", "Month Offset"};
  TextBox txtMonthOffSet{*this, "txtMonthOffSet"};
  CheckBox chkDays{*this, "chkDays", "Cal. Days"};
  CheckBox chkEffDate{*this, "chkEffDate", "Eff. Date/DOL"};
  Button cmdUpdateRedBal{*this, "cmdUpdateRedBal", "Up&date"};
  Button cmdCloseRedBal{*this, "cmdCloseRedBal", "Clos&e"};

  ktl::Subject Subject() const override;

  void Form_Load() override;
  bool Form_QueryUnload() override;

  void cmdSave_Click();
  void cmdUndo_Click();
  void cmdUpdate_Click();
  void cmdRedBalance_Click();
  void cmdIntCalc_Click();
  void cmdUpdateRedBal_Click();
  void cmdCloseRedBal_Click();
  void fpgSIMaster_CellChange(std::size_t row, std::size_t column);
  void fpgSIMaster_Paste(const GridRange& selection, const std::string& block);

 private:
  void ConnectHandlers();
  void SetColumns();
  bool FillGrid();  // false when the instruction has no month
  void SetAmount(std::size_t row, std::size_t column, double amount);

  Session& session_;
  const InstructionParent& parent_;
  InstructionKey key_;
  std::string name_;
  bool reducing_;
  GridList<ScheduleMonth> months_{fpgSIMaster};  // the exact amounts: the cells show two decimals
  bool changed_ = false;
  std::string shown_;  // the instruction and its months, as the grid shows them
};

}  // namespace ktl
