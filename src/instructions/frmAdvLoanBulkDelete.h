#pragma once

#include <string>
#include <vector>

#include "frame/employee_choice.h"
#include "instructions/bulk_delete.h"
#include "screen/grid_list.h"
#include "screen/progress.h"
#include "screen/quick_search.h"
#include "screen/screen.h"
#include "screen/tick_list.h"

namespace ktl {

struct Session;

// Lists the advances or the loans of many employees, and deletes those that are ticked.
class frmAdvLoanBulkDelete final : public Screen {
 public:
  enum Column : std::size_t {
    kTick,
    kEmpId,
    kRefNo,
    kEmpName,
    kName,
    kDate,
    kAmount,
    kCompleted,
    kLastMonth,
    kSerial,
    kType,
    kLastMonthName,
    kBalance
  };

  frmAdvLoanBulkDelete(Session& session, InstructionType type);

  Label lblFromMonth{*this, "lblFromMonth", "From Month"};
  ComboBox cmbFromMonth{*this, "cmbFromMonth"};
  Label lblToMonth{*this, "lblToMonth", "To Month"};
  ComboBox cmbToMonth{*this, "cmbToMonth"};
  EmployeeChoice employee;
  Label lblQuickSearch{*this, "lblQuickSearch", "&Quick Search"};
  QuickSearch search;
  Button cmdLoad{*this, "cmdLoad", "&Load"};
  Grid fpgBulkDelete{*this, "fpgBulkDelete"};
  CheckBox chkSelectAll{*this, "chkSelectAll", "Select &All"};
  Label lblListedCnt{*this, "lblListedCnt"};
  Label lblSelectedCnt{*this, "lblSelectedCnt"};
  Label lblLegend{*this, "lblLegend"};
  Label lblLockLegend{*this, "lblLockLegend", "Employee Lock"};
  Progress progress;
  Button cmdExport{*this, "cmdExport", "&Export"};
  Button cmdDelete{*this, "cmdDelete", "&Delete"};
  Button cmdClose{*this, "cmdClose", "&Close"};
  Menu mnuSelectAll{*this, "mnuSelectAll", "Select &All"};

  void Form_Load() override;

  void cmdLoad_Click();
  void cmdDelete_Click();

 private:
  void ConnectHandlers();
  void SetColumns();
  void FillLists();
  void PaintRow(std::size_t line, const BulkRow& row);

  // False when something chosen is not in its list, which has been told.
  bool ReadFilter();
  bool IsListed(ComboBox& combo, const char* refusal);
  void FillGrid();
  void DeleteTicked();

  Session& session_;
  const InstructionType type_;
  std::string caption_;  // the company's word for the type
  BulkFilter filter_;    // of what is listed
  GridList<BulkRow> rows_{fpgBulkDelete};
  TickList ticks_;
};

}  // namespace ktl
