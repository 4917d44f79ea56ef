#include "recovery/modInterestMaster.h"

#include <algorithm>

#include "common/amounts.h"
#include "common/month_year.h"
#include "frame/handler_guard.h"
#include "frame/modExternal.h"
#include "frame/saved_box.h"
#include "frame/session.h"
#include "instructions/list_columns.h"
#include "recovery/reducing_interest.h"
#include "runtime/numbers.h"

namespace ktl {

namespace {

// Behind a column of amounts.
ScheduleMonth::Amount ScheduleMonth::*AmountOf(std::size_t column) {
  constexpr ScheduleMonth::Amount ScheduleMonth::*kAmounts[] = {
      &ScheduleMonth::ACTPRNAMT, &ScheduleMonth::ACTINTAMT, &ScheduleMonth::MDFPRNAMT,
      &ScheduleMonth::MDFINTAMT};
  return kAmounts[column - modInterestMaster::kActualPrincipal];
}

}  // namespace

modInterestMaster::modInterestMaster(Session& session, InstructionParent& parent)
    : Screen("modInterestMaster"), session_(session), key_(parent.Key()), name_(parent.InstructionName()) {
  caption = "Interest Editor";
  cmdUpdate.toolTip = "Copy Actual amount to Modified.";
  chkDays.toolTip = "Interest Calculation on Days basis. Cal.days/365";
  chkEffDate.toolTip = "Affect Interest Rate on Advance Date/DOL";
  frmReducingBal.Hold({lblInterestRate, txtInterestRate, lblMonthOffSet, txtMonthOffSet, chkDays, chkEffDate,
                       cmdUpdateRedBal, cmdCloseRedBal});
  frmReducingBal.visible = false;
  txtInterestRate.onKeyPress = [this](int key) {
    return clsGenCmn::FnIntAllowAmtOnly(key, txtInterestRate.Text());
  };
  txtMonthOffSet.onKeyPress = [](int key) { return clsGenCmn::FnIntAllowNumbersOnly(key); };
  txtInterestRate.rightAligned = txtMonthOffSet.rightAligned = true;
  ConnectHandlers();
}

void modInterestMaster::ConnectHandlers() {
  const HandlerGuard on(session_, *this, ErrorStyle::NumberFirst);
  cmdSave.onClick = on(&modInterestMaster::cmdSave_Click);
  cmdUndo.onClick = on(&modInterestMaster::cmdUndo_Click);
  cmdUpdate.onClick = on(&modInterestMaster::cmdUpdate_Click);
  lblCopyPaste.onClick = cmdUpdate.onClick;
  cmdRedBalance.onClick = on(&modInterestMaster::cmdRedBalance_Click);
  cmdIntCalc.onClick = on(&modInterestMaster::cmdIntCalc_Click);
  cmdUpdateRedBal.onClick = on(&modInterestMaster::cmdUpdateRedBal_Click);
  cmdCloseRedBal.onClick = on(&modInterestMaster::cmdCloseRedBal_Click);
  cmdClose.onClick = [this] { Unload(); };
  fpgSIMaster.onCellChange = [this](std::size_t row, std::size_t column) {
    fpgSIMaster_CellChange(row, column);
  };
  fpgSIMaster.onPaste = [this](const GridRange& selection, const std::string& block) {
    fpgSIMaster_Paste(selection, block);
  };
}

void modInterestMaster::Form_Load() {
  SetColumns();
  cmdSave.enabled = session_.EmpLockStatus != 1 && !session_.ReadOnlyUser;
  if (FillGrid()) return;
  session_.Inform("Save the record first, and then enter interest details.");
  Unload();
}

void modInterestMaster::SetColumns() {
  const auto amount = [](const char* heading, int width, std::size_t column) {
    return GridList<ScheduleMonth>::Column{{heading, CellType::Number, width, false, false},
                                           Amount(AmountOf(column))};
  };
  months_.SetColumns({
      {{"Month/Year", CellType::Text, 100},
       [](const ScheduleMonth& month) { return FnStrFormatMonthYear(month.monthYear); }},
      amount("Actual Principle", 130, kActualPrincipal),
      amount("Actual Int. Amt", 130, kActualInterest),
      amount("Modified Principle", 140, kModifiedPrincipal),
      amount("Modified Int. Amt", 140, kModifiedInterest),
  });
}

bool modInterestMaster::FillGrid() {
  fpgSIMaster.Clear();
  months_.Show(ReadInterestRows(session_, key_, name_));
  changed_ = false;
  return !months_.Rows().empty();
}

void modInterestMaster::SetAmount(std::size_t row, std::size_t column, double amount) {
  months_.Rows()[row].*AmountOf(column) = amount;
  months_.ShowAgain(row);
  changed_ = true;
}

// What is typed is kept as an amount: a text that is none counts 0, more than an amount can hold is cut.
void modInterestMaster::fpgSIMaster_CellChange(std::size_t row, std::size_t column) {
  const double typed = clsGenCmn::FnDblTrimVal(fpgSIMaster.Text(row, column));
  SetAmount(row, column, std::clamp(typed, 0.0, kAmountLimit));
}

void modInterestMaster::fpgSIMaster_Paste(const GridRange& selection, const std::string& block) {
  const std::optional<AmountBlock> amounts = ParseAmountBlock(block);
  GridRange room = selection;
  if (room.Rows() == 1 && room.Columns() == 1) {  // the corner that the block starts in
    room.lastRow = months_.Rows().size() - 1;
    room.lastColumn = kModifiedInterest;
  }
  const bool fits = amounts && selection.firstColumn > kMonth && room.lastRow < months_.Rows().size() &&
                    room.lastColumn <= kModifiedInterest && amounts->size() <= room.Rows() &&
                    amounts->front().size() <= room.Columns();
  if (!fits) return session_.Inform("Selected range is invalid to paste.");
  for (std::size_t row = 0; row < amounts->size(); ++row) {
    for (std::size_t column = 0; column < amounts->front().size(); ++column)
      SetAmount(selection.firstRow + row, selection.firstColumn + column, (*amounts)[row][column]);
  }
}

void modInterestMaster::cmdUpdate_Click() {
  for (std::size_t row = 0; row < months_.Rows().size(); ++row) {
    const ScheduleMonth& month = months_.Rows()[row];
    SetAmount(row, kModifiedPrincipal, *month.ACTPRNAMT);
    SetAmount(row, kModifiedInterest, *month.ACTINTAMT);
  }
}

void modInterestMaster::cmdUndo_Click() { FillGrid(); }

void modInterestMaster::cmdRedBalance_Click() {
  frmReducingBal.visible = true;
  SetFocus(txtInterestRate);
}

void modInterestMaster::cmdCloseRedBal_Click() { frmReducingBal.visible = false; }

void modInterestMaster::cmdIntCalc_Click() {
  StartExternal(session_, {"KTLIntrCalc", "Interest Calculation", ""});
  session_.machine.settings.Set("Settings", "ICPrcpl", "");
}

void modInterestMaster::cmdUpdateRedBal_Click() {
  const double rate = clsGenCmn::FnDblTrimVal(txtInterestRate.Text());
  if (rate <= 0) {
    session_.Inform("Enter Interest Rate");
    return SetFocus(txtInterestRate);
  }
  const InterestTerms chosen{.rate = rate / 100,
                             .firstMonths = Val(txtMonthOffSet.Text()) + 1,
                             .daysBasis = chkDays.Value(),
                             .exactDates = chkEffDate.Value()};
  const std::vector<double> interests =
      ReducingInterest(months_.Rows(), ReadInterestTerms(session_, key_, chosen));
  for (std::size_t row = 0; row < interests.size(); ++row) {
    SetAmount(row, kActualInterest, interests[row]);
    SetAmount(row, kModifiedInterest, interests[row]);
  }
}

void modInterestMaster::cmdSave_Click() {
  if (months_.Rows().empty()) return;
  if (const auto refusal = CheckInterestRows(session_, key_, months_.Rows())) {
    Refuse(session_, *this, *refusal, {});
    return;
  }
  WriteInterestRows(session_, key_, name_, months_.Rows());
  ShowSaved(session_);
  FillGrid();
}

// What could not be saved is not thrown away: the screen stays.
bool modInterestMaster::Form_QueryUnload() {
  if (!changed_ || !cmdSave.enabled ||
      !session_.desk.Confirm("Do you want to save the changes?", session_.title, Answer::Yes))
    return true;
  cmdSave.onClick();
  return !changed_;
}

}  // namespace ktl
