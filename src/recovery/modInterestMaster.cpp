#include "recovery/modInterestMaster.h"

#include "common/amounts.h"
#include "common/month_year.h"
#include "frame/handler_guard.h"
#include "frame/modExternal.h"
#include "frame/number_fields.h"
#include "frame/saved_box.h"
#include "frame/session.h"
#include "frame/writing_buttons.h"
#include "frame/writing_turn.h"
#include "instructions/components.h"
#include "instructions/list_columns.h"
#include "instructions/shown_rows.h"
#include "recovery/reducing_interest.h"
#include "runtime/numbers.h"

namespace ktl {

namespace {

constexpr const char* kAmountFormat = "0.00";  // what is typed or computed has two places

// Behind a column of amounts.
ScheduleMonth::Amount ScheduleMonth::*AmountOf(std::size_t column) {
  constexpr ScheduleMonth::Amount ScheduleMonth::*kAmounts[] = {
      &ScheduleMonth::ACTPRNAMT, &ScheduleMonth::ACTINTAMT, &ScheduleMonth::MDFPRNAMT,
      &ScheduleMonth::MDFINTAMT};
  return kAmounts[column - modInterestMaster::kActualPrincipal];
}

}  // namespace

modInterestMaster::modInterestMaster(Session& session, InstructionParent& parent)
    : Screen("modInterestMaster"),
      session_(session),
      parent_(parent),
      key_(parent.Key()),
      name_(parent.InstructionName()),
      reducing_(parent.ComponentsApart()) {
  caption = "Interest Editor";
  cmdUpdate.toolTip = "Copy Actual amount to Modified.";
  chkDays.toolTip = "Interest Calculation on Days basis. Cal.days/365";
  chkEffDate.toolTip = "Affect Interest Rate on Advance Date/DOL";
  frmReducingBal.Hold({lblInterestRate, txtInterestRate, lblMonthOffSet, txtMonthOffSet, chkDays, chkEffDate,
                       cmdUpdateRedBal, cmdCloseRedBal});
  frmReducingBal.visible = false;
  TakeAmounts({&txtInterestRate});
  TakeCounts({&txtMonthOffSet});
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
  const EmployeeLabels employee = ReadEmployeeLabels(session_, key_.employee);
  lblEmpIDRef.caption = employee.reference;
  lblEmpName.caption = employee.name;
  EnableWriting(session_, {&cmdSave});
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
  fpgSIMaster.summed = {kActualPrincipal, kActualInterest, kModifiedPrincipal, kModifiedInterest};
}

Subject modInterestMaster::Subject() const { return parent_.Subject(); }

bool modInterestMaster::FillGrid() {
  shown_ = InstructionAndSchedule(session_, key_);
  std::vector<ScheduleMonth> months = ReadInterestRows(session_, key_, name_);
  if (reducing_) CountComponents(session_, key_, months);
  fpgSIMaster.Clear();
  months_.Show(std::move(months));
  changed_ = false;
  return !months_.Rows().empty();
}

void modInterestMaster::SetAmount(std::size_t row, std::size_t column, double amount) {
  months_.Rows()[row].*AmountOf(column) = RoundByPattern(amount, kAmountFormat);
  months_.ShowAgain(row);
  changed_ = true;
}

// What is no amount leaves the old one.
void modInterestMaster::fpgSIMaster_CellChange(std::size_t row, std::size_t column) {
  const std::string typed = fpgSIMaster.Text(row, column);
  const std::string refused = RefusedAmount(typed);
  if (refused.empty()) return SetAmount(row, column, clsGenCmn::FnDblTrimVal(typed));
  months_.ShowAgain(row);
  session_.Inform(refused);
}

void modInterestMaster::fpgSIMaster_Paste(const GridRange& selection, const std::string& block) {
  const auto amounts = PlaceBlock(block, selection, fpgSIMaster);
  if (!amounts) return session_.Inform("Selected range is invalid to paste.");
  for (const PlacedAmount& each : *amounts) SetAmount(each.row, each.column, each.amount);
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
  const bool written = WriteInTurn(
      session_, [this] { return InstructionAndSchedule(session_, key_); }, shown_,
      [this] {
        if (reducing_) StoreComponents(session_, key_);
        WriteInterestRows(session_, key_, name_, months_.Rows());
      },
      [this] { FillGrid(); });
  if (!written) return;
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
