#include "recovery/modLockMonth.h"

#include <utility>

#include "frame/handler_guard.h"
#include "frame/rights.h"
#include "frame/saved_box.h"
#include "frame/session.h"
#include "frame/top_level.h"
#include "frame/writing_buttons.h"
#include "frame/writing_turn.h"
#include "recovery/working.h"
#include "workbook/export_menu.h"

namespace ktl {

namespace {

constexpr long kFormId = 80;

}  // namespace

modLockMonth::modLockMonth(Session& session) : Screen("modLockMonth"), session_(session) {
  caption = "Lock Month";
  fpgHistory.visible = false;
  const HandlerGuard on(session_, *this, ErrorStyle::NumberFirst);
  fpgLockMonth.onCellChange = on(&modLockMonth::fpgLockMonth_CellChange);
  cmdSave.onClick = on(&modLockMonth::cmdSave_Click);
  cmdHistory.onClick = on(&modLockMonth::cmdHistory_Click);
  cmdClose.onClick = [this] { Unload(); };
  BindExport(session_, mnuExport, fpgHistory, [] {
    return ExportWords{"Month Lock history", "The history"};
  });
  mnuExport.onClick = on([this, exportHistory = mnuExport.onClick] {
    FillHistory();  // it may not have been shown yet
    exportHistory();
  });
}

void modLockMonth::Form_Load() {
  EnterTopLevel(session_, *this);
  SetColumns();
  cmdSave.enabled = false;
  RunGuarded(session_, ErrorStyle::NumberFirst, "", [this] {
    ApplyButtonRights(session_, *this, kFormId);
    Repair();
    FillMonths();
    EnableWriting(session_, {&cmdSave}, WriteLock::OfUser);
  });
}

// Not by a user who may only read: opening writes nothing then.
void modLockMonth::Repair() {
  if (!session_.ReadOnlyUser) RepairLeaveLocks(session_);
}

void modLockMonth::SetColumns() {
  const auto tick = [](bool on) { return on ? "1" : "0"; };
  using Month = LockMonthRow;
  months_.SetColumns({
      {{"MonthYear", CellType::Number, 60, true},
       [](const Month& month) { return std::to_string(month.monthYear); }},
      {{"Month/Year", CellType::Text, 90}, &Month::name},
      {{"Month Lock", CellType::Tick, 90, false, session_.ReadOnlyUser},
       [tick](const Month& month) { return tick(month.now.month); }},
      {{"Lock Lev.Track", CellType::Tick, 110, false, session_.ReadOnlyUser},
       [tick](const Month& month) { return tick(month.now.leave); }},
  });
  using Change = LockHistoryRow;
  history_.SetColumns({
      {{"Month/Year", CellType::Text, 100}, &Change::month},
      {{"User Name", CellType::Text, 130}, &Change::userName},
      {{"System Name", CellType::Text, 130}, &Change::systemName},
      {{"Lock", CellType::Text, 90},
       [](const Change& change) { return change.locked ? "Locked" : "Unlocked"; }},
      {{"Date Time", CellType::Text, 220},
       [](const Change& change) {
         return change.changed ? FormatDate(*change.changed, "DD/MMM/YYYY HH:MM:SS AM/PM") : "";
       }},
  });
}

void modLockMonth::FillMonths() {
  shown_ = LockMonthsText(session_);
  months_.Show(ReadLockMonths(session_));
}

void modLockMonth::FillHistory() { history_.Show(ReadLockHistory(session_)); }

void modLockMonth::fpgLockMonth_CellChange(std::size_t row, std::size_t column) {
  MonthSwitches& now = months_.Rows()[row].now;
  const bool on = fpgLockMonth.IsTicked(row, column);
  now = column == kMonthLock ? TiedToMonth({on, now.leave}) : TiedToLeave({now.month, on});
  months_.ShowAgain(row);
}

void modLockMonth::cmdSave_Click() {
  if (FnBlnPermitted(session_, cmdSave)) return;
  const Working working(session_, cmdClose);
  const bool written = WriteInTurn(
      session_, [this] { return LockMonthsText(session_); }, shown_,
      [this] { SaveLockMonths(session_, months_.Rows()); }, [this] { FillMonths(); });
  if (!written) return;
  ShowSaved(session_);
  FillMonths();
  if (fpgHistory.visible) FillHistory();
}

void modLockMonth::cmdHistory_Click() {
  FillHistory();
  fpgHistory.visible = true;
}

void modLockMonth::Form_Unload() {
  RunGuarded(session_, ErrorStyle::NumberFirst, "", [this] { Repair(); });
  LeaveTopLevel(session_);
}

}  // namespace ktl
