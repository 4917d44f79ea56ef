#pragma once

#include "recovery/leaving.h"
#include "screen/controls.h"
#include "screen/grid.h"
#include "screen/grid_list.h"
#include "screen/screen.h"
#include "screen/tick_list.h"

namespace ktl {

// What is still to be recovered from one employee. Of who has left it can be recovered in the leaving month,
// or given up.
class modSIDetails final : public Screen {
 public:
  enum Column : std::size_t {
    kType,
    kSerial,
    kTick,
    kTypeText,
    kName,
    kTotal,
    kRecovered,
    kBalance,
  };

  modSIDetails(Session& session, long employee);

  Label lblID{*this, "lblID"};
  Label lblIDRef{*this, "lblIDRef"};
  Label lblEmpName{*this, "lblEmpName"};
  Label lblDOL{*this, "lblDOL", "Date of Leaving"};
  Label lblDOLVal{*this, "lblDOLVal"};
  Grid fpgGrid{*this, "fpgGrid"};
  CheckBox chkSelectAll{*this, "chkSelectAll", "Se&lect All"};
  Button cmdAdjust{*this, "cmdAdjust", "&Adjust"};
  Button cmdClear{*this, "cmdClear", "Clea&r"};
  Button cmdClose{*this, "cmdClose", "&Close"};
  Menu mnuExport{*this, "mnuExport", "E&xport to Workbook"};

  void Form_Load() override;
  void Form_Unload() override;

  void cmdAdjust_Click();
  void cmdClear_Click();

  void ShowEmployee();
  void FillPendingGrid();

 private:
  void SetColumns();
  void EnableByRights();
  void Settle(AfterLeaving deed);
  bool IsMonthRefused(long monthYear, AfterLeaving deed);

  Session& session_;
  const long employee_;
  Leaver leaver_;
  GridList<PendingInstruction> pending_{fpgGrid};
  TickList ticks_{TickRowsOf(fpgGrid, kTick), {.all = &chkSelectAll}};
};

}  // namespace ktl
