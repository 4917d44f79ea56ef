#include "recovery/modSIDetails.h"

#include <fmt/format.h>

#include "common/amounts.h"
#include "frame/handler_guard.h"
#include "frame/rights.h"
#include "frame/session.h"
#include "frame/top_level.h"
#include "frame/writing_buttons.h"
#include "instructions/instruction_statements.h"
#include "instructions/list_columns.h"
#include "runtime/errors.h"
#include "workbook/export_menu.h"

namespace ktl {

modSIDetails::modSIDetails(Session& session, long employee)
    : Screen("modSIDetails"), session_(session), employee_(employee) {
  caption = "Pending Standing Instruction Details";
  const HandlerGuard on(session_, *this, ErrorStyle::DescriptionFirst);
  cmdAdjust.onClick = on(&modSIDetails::cmdAdjust_Click);
  cmdClear.onClick = on(&modSIDetails::cmdClear_Click);
  cmdClose.onClick = [this] { Unload(); };
  fpgGrid.onCellChange = [this](std::size_t, std::size_t) { ticks_.Count(); };
  BindExport(session_, mnuExport, fpgGrid, [this] { return ExportWords{caption, "The list"}; });
}

void modSIDetails::Form_Load() {
  EnterTopLevel(session_, *this);
  SetColumns();
  const HandlerGuard on(session_, *this, ErrorStyle::DescriptionFirst);
  on.Run([this] {
    ShowEmployee();
    EnableByRights();
    FillPendingGrid();
  });
}

void modSIDetails::Form_Unload() { LeaveTopLevel(session_); }

void modSIDetails::SetColumns() {
  using Row = PendingInstruction;
  const auto amount = [](const char* heading, auto value) {
    return GridList<Row>::Column{{heading, CellType::Number, 140},
                                 [value](const Row& row) { return ShownAmount(std::invoke(value, row)); }};
  };
  pending_.SetColumns({
      {{"SI Type", CellType::Number, 60, true},
       [](const Row& row) { return std::to_string(NumberOf(row.key.type)); }},
      {{"Serial No", CellType::Number, 60, true},
       [](const Row& row) { return std::to_string(row.key.serial); }},
      {{" ", CellType::Tick, 32, false, false}, [](const Row&) { return "0"; }},
      {{"S.I. Type", CellType::Text, 130}, &Row::typeText},
      {{"Name", CellType::Text, 200}, &Row::name},
      amount("Total Amount", &Row::total),
      amount("Amount Recovered", &Row::recovered),
      amount("Balance Amount", &Row::Balance),
  });
  fpgGrid.summed = {kTotal, kRecovered, kBalance};
}

void modSIDetails::ShowEmployee() {
  leaver_ = ReadLeaver(session_, employee_);
  lblID.caption = session_.options.REFNOCAP;
  lblIDRef.caption = leaver_.reference;
  lblEmpName.caption = leaver_.name;
  lblDOLVal.caption = leaver_.leavingDate;
}

void modSIDetails::EnableByRights() {
  ReadEmpLockStatus(session_, employee_);
  EnableWriting(session_, {&cmdAdjust, &cmdClear});
}

void modSIDetails::FillPendingGrid() {
  std::vector<PendingInstruction> pending = ktl::FillPendingGrid(session_, employee_);
  FillRecoveredAmounts(session_, pending);
  DropSettled(pending);
  pending_.Show(std::move(pending));
  ticks_.Count();
}

void modSIDetails::cmdAdjust_Click() {
  if (FnBlnPermitted(session_, cmdAdjust)) return;
  if (ticks_.Ticked().empty()) return session_.Inform("Select record(s) to 'Adjust'.");
  if (session_.desk.Confirm(
          "Recoveries set after 'Date of Leaving' will be adjusted for selected records.\r\nDo you want to "
          "continue?",
          session_.title)) {
    Settle(AfterLeaving::Fold);
  }
}

void modSIDetails::cmdClear_Click() {
  if (FnBlnPermitted(session_, cmdClear)) return;
  if (ticks_.Ticked().empty()) return session_.Inform("Select record(s) to 'Clear'.");
  if (session_.desk.Confirm(
          "Recoveries set after 'Date of Leaving' will be cleared for selected records.\r\nDo you want to "
          "continue?",
          session_.title)) {
    Settle(AfterLeaving::Clear);
  }
}

// Clearing leaves the leaving month itself alone, so that its lock is no hindrance.
bool modSIDetails::IsMonthRefused(long monthYear, AfterLeaving deed) {
  if (monthYear < session_.options.STARTMONTHYEAR) {
    session_.Inform("Given date cannot be before the 'Start Month' set.");
    return true;
  }
  if (deed == AfterLeaving::Clear || !IsMonthLocked(session_, monthYear)) return false;
  session_.Inform("Month is locked.  Cannot update.");
  return true;
}

// What stands in the tables is shown again, also when a row failed behind others that are settled.
void modSIDetails::Settle(AfterLeaving deed) {
  const LeavingTerms terms{leaver_, LeavingMonth(session_, leaver_.leavingDate), deed};
  if (IsMonthRefused(terms.monthYear, deed)) return;
  try {
    for (const PendingInstruction* each : pending_.Ticked(kTick)) SettleAfterLeaving(session_, *each, terms);
  } catch (const RuntimeError&) {
    ShowEmployee();
    EnableByRights();
    FillPendingGrid();
    throw;
  }
  FillPendingGrid();
}

}  // namespace ktl
