#pragma once

#include <string>

#include "frame/doors.h"
#include "recovery/month_view.h"
#include "screen/controls.h"
#include "screen/grid.h"
#include "screen/grid_list.h"
#include "screen/screen.h"

namespace ktl {

// The instalments of one employee in one month, over all instructions; a changed amount stays in its month.
// On its own it shows all types, opened by an entry screen those of that screen's type.
class modEMIEmp final : public Screen {
 public:
  enum Column : std::size_t {
    kType,
    kName,
    kActual,
    kModified,
    kRemarks,
    kSiType,
    kSerialNo,
    kCounter,
    kChanged,
  };

  modEMIEmp(Session& session, const MonthViewRequest& request);

  Label lblEmpIDRef{*this, "lblEmpIDRef"};
  Label lblEmpNameVal{*this, "lblEmpNameVal"};
  Label lblMonthYear{*this, "lblMonthYear", "Month/Year"};
  ComboBox cmbMonthYear{*this, "cmbMonthYear"};
  Label lblMonthLocked{*this, "lblMonthLocked", "Month Locked"};
  Grid fpgEMIDetail{*this, "fpgEMIDetail"};
  Button cmdUpdate{*this, "cmdUpdate", "&Update"};
  Button cmdUndo{*this, "cmdUndo", "U&ndo"};
  Button cmdClose{*this, "cmdClose", "&Close"};
  Menu mnuExport{*this, "mnuExport", "E&xport to Workbook"};

  ktl::Subject Subject() const override;

  void Form_Load() override;
  bool Form_QueryUnload() override;
  void Form_Unload() override;

  void cmbMonthYear_Change();
  void fpgEMIDetail_CellChange(std::size_t row, std::size_t column);
  void cmdUpdate_Click();
  void cmdUndo_Click();

  bool ShowEmployeeHeader();  // false when there is no such employee, which has been told
  void FillMonthList();
  void FillMonthGrid();

 private:
  void SetColumns();
  void Open();
  void ShowStartingMonth();
  void ShowMonth(long monthYear);
  void ChangeAmount(MonthViewRow& row, const std::string& typed);
  bool Update();           // false when nothing was written
  bool MayLeaveChanges();  // asks when a cell was changed
  bool IsTop() const { return scope_.type == InstructionType::None; }

  Session& session_;
  const MonthViewScope scope_;
  const std::string startingMonth_;
  InstructionLists* const lists_;
  std::string employee_;
  long monthYear_ = 0;  // that is shown, 0 for none
  bool monthLocked_ = false;
  std::string shown_;  // the rows as they were read
  GridList<MonthViewRow> rows_{fpgEMIDetail};
};

}  // namespace ktl
