#include "recovery/modEMIEmp.h"

#include <fmt/format.h>

#include <algorithm>

#include "common/month_year.h"
#include "frame/employee_number.h"
#include "frame/handler_guard.h"
#include "frame/pickers.h"
#include "frame/rights.h"
#include "frame/saved_box.h"
#include "frame/session.h"
#include "frame/top_level.h"
#include "frame/writing_buttons.h"
#include "frame/writing_turn.h"
#include "instructions/instruction_statements.h"
#include "instructions/list_columns.h"
#include "instructions/month_list.h"
#include "instructions/type_rights.h"
#include "recovery/interest_rows.h"
#include "recovery/working.h"
#include "runtime/numbers.h"
#include "workbook/export_menu.h"

namespace ktl {

modEMIEmp::modEMIEmp(Session& session, const MonthViewRequest& request)
    : Screen("modEMIEmp"),
      session_(session),
      scope_{request.employee, request.type},
      startingMonth_(request.month),
      lists_(request.lists) {
  caption = "Update EMI Detail";
  cmbMonthYear.editable = false;
  lblMonthLocked.visible = false;
  cmdUpdate.enabled = false;  // until it is known that it may be pressed
  const HandlerGuard on(session_, *this, ErrorStyle::NumberFirst);
  cmbMonthYear.onChange = on(&modEMIEmp::cmbMonthYear_Change);
  AskForMonth(session_, cmbMonthYear);
  fpgEMIDetail.onCellChange = on(&modEMIEmp::fpgEMIDetail_CellChange);
  cmdUpdate.onClick = on(&modEMIEmp::cmdUpdate_Click);
  cmdUndo.onClick = on(&modEMIEmp::cmdUndo_Click);
  cmdClose.onClick = [this] { Unload(); };
  BindExport(session_, mnuExport, fpgEMIDetail, [this] { return ExportWords{caption, "The list"}; });
}

void modEMIEmp::Form_Load() {
  if (IsTop())
    EnterTopLevel(session_, *this);
  else
    session_.ActiveForm = this;
  SetColumns();
  RunGuarded(session_, ErrorStyle::NumberFirst, "", [this] { Open(); });
}

void modEMIEmp::SetColumns() {
  using Row = MonthViewRow;
  rows_.SetColumns({
      {{"Type", CellType::Text, 120}, &Row::type},
      {{"Name", CellType::Text, 200}, &Row::name},
      {{"Actual Amt", CellType::Number, 110}, Amount(&Row::EMIAMT)},
      {{"Modified Amt", CellType::Number, 110, false, false}, Amount(&Row::amount)},
      {{"Remarks", CellType::Text, 260, false, false}, &Row::remarks},
      {{"SITYPE", CellType::Number, 60, true},
       [](const Row& row) { return std::to_string(NumberOf(row.key.type)); }},
      {{"SERIALNO", CellType::Number, 60, true},
       [](const Row& row) { return std::to_string(row.key.serial); }},
      {{"COUNTER", CellType::Number, 60, true}, [](const Row& row) { return std::to_string(row.counter); }},
      {{"Changed", CellType::Number, 60, true}, [](const Row& row) { return row.changed ? "1" : "0"; }},
  });
  fpgEMIDetail.summed = {kActual, kModified};
  rows_.paint = [this](std::size_t line, const Row& row) {
    if (!row.ownedElsewhere) return;
    fpgEMIDetail.PaintRow(line, kButtonFaceColour);
    for (GridCell& cell : fpgEMIDetail.rows[line].cells) cell.locked = true;
  };
}

void modEMIEmp::Open() {
  if (!ShowEmployeeHeader()) return Unload();
  ReadEmpLockStatus(session_, scope_.employee);
  ApplyTypeRights(session_, *this, scope_.type);
  EnableWriting(session_, {&cmdUpdate});
  FillMonthList();
  ShowStartingMonth();
}

bool modEMIEmp::ShowEmployeeHeader() {
  const EmployeeHeader header = ReadEmployeeHeader(session_, scope_.employee);
  lblEmpIDRef.caption = header.number;
  lblEmpNameVal.caption = header.name;
  if (!header.number.empty() || !header.name.empty()) {
    employee_ = fmt::format("{} ({})", header.name, header.number);
    return true;
  }
  session_.Inform(scope_.employee == 0 ? "Select employee."
                                       : fmt::format("There is no employee {}.", scope_.employee));
  return false;
}

Subject modEMIEmp::Subject() const { return {.employee = employee_}; }

void modEMIEmp::FillMonthList() { cmbMonthYear.SetRows(ReadMonthList(session_)); }

void modEMIEmp::ShowStartingMonth() {
  if (startingMonth_.empty()) return ShowMonth(NewestMonth(session_, scope_, cmbMonthYear.Rows()));
  const long monthYear = FnLngMonthYear(FnStrCorrectMonth(startingMonth_));
  if (monthYear == 0) return session_.Inform(fmt::format("{} is no month.", startingMonth_));
  ShowMonth(monthYear);
}

void modEMIEmp::ShowMonth(long monthYear) { cmbMonthYear.SetText(FnStrFormatMonthYear(monthYear)); }

void modEMIEmp::cmbMonthYear_Change() {
  const long chosen = FnLngMonthYear(cmbMonthYear.Text());
  if (chosen == monthYear_) return;
  if (!MayLeaveChanges()) return ShowMonth(monthYear_);
  monthYear_ = chosen;
  FillMonthGrid();
}

void modEMIEmp::FillMonthGrid() {
  fpgEMIDetail.Clear();
  monthLocked_ = monthYear_ != 0 && IsMonthLocked(session_, monthYear_);
  lblMonthLocked.visible = monthLocked_;
  for (const Column column : {kModified, kRemarks})
    fpgEMIDetail.columns[column].locked = monthLocked_ || !cmdUpdate.enabled;
  shown_ = MonthRowsText(session_, scope_, monthYear_);
  rows_.Show(ReadMonthRows(session_, scope_, monthYear_));
}

void modEMIEmp::fpgEMIDetail_CellChange(std::size_t row, std::size_t column) {
  const std::string typed = fpgEMIDetail.Text(row, column);
  MonthViewRow& changed = rows_.Rows()[row];
  if (column == kRemarks) TakeRemarks(changed, typed);
  if (column == kModified) ChangeAmount(changed, typed);
  rows_.ShowAgain(row);
}

// What is no amount leaves the old one.
void modEMIEmp::ChangeAmount(MonthViewRow& row, const std::string& typed) {
  const std::string refused = RefusedAmount(typed);
  if (!refused.empty()) return session_.Inform(refused);
  TakeAmount(row, typed);
  if (RecoversTooMuch(session_, row) &&
      !session_.desk.Confirm(
          "Entered EMI results in more recovery than required.\r\nDo you want to continue?", session_.title))
    RestoreAmount(session_, row);
}

void modEMIEmp::cmdUpdate_Click() {
  if (FnBlnPermitted(session_, cmdUpdate)) return;
  const Working working(session_, cmdClose);
  Update();
}

bool modEMIEmp::Update() {
  if (const auto refusal = CheckMonthRows(session_, scope_, monthYear_, rows_.Rows()))
    return Refuse(session_, *this, *refusal, {});
  const bool written = WriteInTurn(
      session_, [this] { return MonthRowsText(session_, scope_, monthYear_); }, shown_,
      [this] { WriteMonthRows(session_, monthYear_, rows_.Rows()); }, [this] { FillMonthGrid(); });
  if (!written) return false;
  ShowSaved(session_);
  if (lists_ != nullptr) {
    lists_->RefreshDetail();
    lists_->UpdateOverview();
    lists_->RefreshEMI();
  }
  FillMonthGrid();
  return true;
}

void modEMIEmp::cmdUndo_Click() { FillMonthGrid(); }

bool modEMIEmp::MayLeaveChanges() {
  if (!cmdUpdate.enabled || std::ranges::none_of(rows_.Rows(), &MonthViewRow::changed)) return true;
  if (!session_.desk.Confirm("Do you want to Save entered details?", session_.title)) return true;
  return !FnBlnPermitted(session_, cmdUpdate) && Update();
}

bool modEMIEmp::Form_QueryUnload() {
  bool may = false;  // a failure is shown and keeps the screen
  RunGuarded(session_, ErrorStyle::NumberFirst, "", [&] { may = MayLeaveChanges(); });
  return may;
}

void modEMIEmp::Form_Unload() {
  if (IsTop()) LeaveTopLevel(session_);
}

}  // namespace ktl
