#pragma once

#include <string>

#include "recovery/month_lock.h"
#include "screen/controls.h"
#include "screen/grid.h"
#include "screen/grid_list.h"
#include "screen/screen.h"

namespace ktl {

// All months of the company with their two locks, and who turned them when.
class modLockMonth final : public Screen {
 public:
  enum Column : std::size_t { kMonthYear, kMonth, kMonthLock, kLeaveLock };
  enum HistoryColumn : std::size_t { kOfMonth, kUserName, kSystemName, kLock, kDateTime };

  explicit modLockMonth(Session& session);

  Grid fpgLockMonth{*this, "fpgLockMonth"};
  Grid fpgHistory{*this, "fpgHistory"};
  Button cmdSave{*this, "cmdSave", "&Save"};
  Button cmdHistory{*this, "cmdHistory", "&History"};
  Button cmdClose{*this, "cmdClose", "&Close"};
  Menu mnuExport{*this, "mnuExport", "E&xport to Workbook"};

  void Form_Load() override;
  void Form_Unload() override;

  void fpgLockMonth_CellChange(std::size_t row, std::size_t column);
  void cmdSave_Click();
  void cmdHistory_Click();

 private:
  void Repair();
  void SetColumns();
  void FillMonths();
  void FillHistory();

  Session& session_;
  std::string shown_;  // the months as they were read
  GridList<LockMonthRow> months_{fpgLockMonth};
  GridList<LockHistoryRow> history_{fpgHistory};
};

}  // namespace ktl
