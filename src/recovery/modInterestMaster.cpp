#include "recovery/modInterestMaster.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>

#include "common/amounts.h"
#include "common/month_year.h"
#include "common/titles.h"
#include "frame/error_box.h"
#include "frame/modExternal.h"
#include "frame/rights.h"
#include "frame/saved_box.h"
#include "frame/session.h"
#include "instructions/instruction_type.h"
#include "recovery/emi_months.h"
#include "recovery/reducing_interest.h"
#include "runtime/numbers.h"
#include "runtime/text.h"

namespace ktl {

namespace {

constexpr long kMenuNumber = 19;
constexpr const char* kAmountFormat = "0.00";

using Block = std::vector<std::vector<double>>;

// Rows by line breaks, cells by tabs; nothing when a cell is no amount or the rows differ in length.
std::optional<Block> AmountsOf(const std::string& text) {
  Block block;
  for (const std::string& line : Split(ReplaceAll(text, "\r", ""), "\n")) {
    if (line.empty()) continue;
    std::vector<double>& row = block.emplace_back();
    for (const std::string& cell : Split(line, "\t")) {
      const std::optional<double> amount = ParseNumber(Trim(cell));
      if (!amount || *amount < 0 || *amount > kAmountLimit) return std::nullopt;
      row.push_back(*amount);
    }
    if (row.size() != block.front().size()) return std::nullopt;
  }
  if (block.empty()) return std::nullopt;
  return block;
}

}  // namespace

modInterestMaster::modInterestMaster(Session& session, InstructionParent& parent)
    : Screen("modInterestMaster"), session_(session), key_(parent.Key()), name_(parent.InstructionName()) {
  caption = "Interest Editor";
  cmdUpdate.toolTip = "Copy Actual amount to Modified.";
  chkDays.toolTip = "Interest Calculation on Days basis. Cal.days/365";
  chkEffDate.toolTip = "Affect Interest Rate on Advance Date/DOL";
  for (Control* control :
       std::initializer_list<Control*>{&lblInterestRate, &txtInterestRate, &lblMonthOffSet, &txtMonthOffSet,
                                       &chkDays, &chkEffDate, &cmdUpdateRedBal, &cmdCloseRedBal}) {
    control->container = &frmReducingBal;
  }
  frmReducingBal.visible = false;
  txtInterestRate.onKeyPress = [this](int key) {
    return clsGenCmn::FnIntAllowAmtOnly(key, txtInterestRate.Text());
  };
  txtMonthOffSet.onKeyPress = [](int key) { return clsGenCmn::FnIntAllowNumbersOnly(key); };
  txtInterestRate.rightAligned = txtMonthOffSet.rightAligned = true;
  ConnectHandlers();
}

void modInterestMaster::ConnectHandlers() {
  const auto on = [this](void (modInterestMaster::*handler)()) {
    return WithErrorBox(session_, [this, handler] { (this->*handler)(); });
  };
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
  fpgSIMaster.columns = {
      {"Month/Year", CellType::Text, 100},
      {"Actual Principle", CellType::Number, 130, false, false},
      {"Actual Int. Amt", CellType::Number, 130, false, false},
      {"Modified Principle", CellType::Number, 140, false, false},
      {"Modified Int. Amt", CellType::Number, 140, false, false},
  };
  cmdSave.enabled = session_.EmpLockStatus != 1 && !session_.ReadOnlyUser;
  if (FillGrid()) return;
  session_.Inform("Save the record first, and then enter interest details.");
  Unload();
}

bool modInterestMaster::FillGrid() {
  fpgSIMaster.Clear();
  months_.clear();
  for (const InterestRow& month : ReadInterestRows(session_, key_, name_)) {
    const std::size_t row = fpgSIMaster.AddRow();
    months_.push_back(month.monthYear);
    fpgSIMaster.At(row, kMonth).text = FnStrFormatMonthYear(month.monthYear);
    SetAmount(row, kActualPrincipal, month.actualPrincipal);
    SetAmount(row, kActualInterest, month.actualInterest);
    SetAmount(row, kModifiedPrincipal, month.modifiedPrincipal);
    SetAmount(row, kModifiedInterest, month.modifiedInterest);
  }
  changed_ = false;
  return !months_.empty();
}

void modInterestMaster::SetAmount(std::size_t row, Column column, double amount) {
  GridCell& cell = fpgSIMaster.At(row, column);
  cell.text = FormatNumber(amount, kAmountFormat);
  cell.tag = NumberText(amount);
}

double modInterestMaster::AmountAt(std::size_t row, Column column) const {
  const GridCell& cell = fpgSIMaster.At(row, column);
  const double exact = Val(cell.tag);
  if (cell.text == FormatNumber(exact, kAmountFormat)) return exact;
  return clsGenCmn::FnDblTrimVal(cell.text);
}

std::vector<InterestRow> modInterestMaster::Rows() const {
  std::vector<InterestRow> rows;
  for (std::size_t row = 0; row < months_.size(); ++row) {
    rows.push_back({months_[row], AmountAt(row, kActualPrincipal), AmountAt(row, kActualInterest),
                    AmountAt(row, kModifiedPrincipal), AmountAt(row, kModifiedInterest)});
  }
  return rows;
}

// What is typed is kept as an amount: a text that is none counts 0, more than an amount can hold is cut.
void modInterestMaster::fpgSIMaster_CellChange(std::size_t row, std::size_t column) {
  const double typed = clsGenCmn::FnDblTrimVal(fpgSIMaster.Text(row, column));
  SetAmount(row, static_cast<Column>(column), std::clamp(typed, 0.0, kAmountLimit));
  changed_ = true;
}

void modInterestMaster::fpgSIMaster_Paste(const GridRange& selection, const std::string& block) {
  const std::optional<Block> amounts = AmountsOf(block);
  GridRange room = selection;
  if (room.Rows() == 1 && room.Columns() == 1) {  // the corner that the block starts in
    room.lastRow = months_.size() - 1;
    room.lastColumn = kModifiedInterest;
  }
  const bool fits = amounts && selection.firstColumn > kMonth && room.lastRow < months_.size() &&
                    room.lastColumn <= kModifiedInterest && amounts->size() <= room.Rows() &&
                    amounts->front().size() <= room.Columns();
  if (!fits) return session_.Inform("Selected range is invalid to paste.");
  for (std::size_t row = 0; row < amounts->size(); ++row) {
    for (std::size_t column = 0; column < amounts->front().size(); ++column) {
      SetAmount(selection.firstRow + row, static_cast<Column>(selection.firstColumn + column),
                (*amounts)[row][column]);
    }
  }
  changed_ = true;
}

void modInterestMaster::cmdUpdate_Click() {
  for (std::size_t row = 0; row < months_.size(); ++row) {
    SetAmount(row, kModifiedPrincipal, AmountAt(row, kActualPrincipal));
    SetAmount(row, kModifiedInterest, AmountAt(row, kActualInterest));
  }
  changed_ = true;
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
  InterestTerms terms = ReadInterestTerms(session_, key_);
  terms.rate = rate / 100;
  terms.firstMonths = Val(txtMonthOffSet.Text()) + 1;
  terms.daysBasis = chkDays.Value();
  terms.exactDates = chkEffDate.Value();
  std::vector<BalanceMonth> balances;
  for (std::size_t row = 0; row < months_.size(); ++row)
    balances.push_back({months_[row], AmountAt(row, kModifiedPrincipal)});
  const std::vector<double> interests = ReducingInterest(balances, terms);
  for (std::size_t row = 0; row < months_.size(); ++row) {
    SetAmount(row, kActualInterest, interests[row]);
    SetAmount(row, kModifiedInterest, interests[row]);
  }
  changed_ = true;
}

bool modInterestMaster::MaySave(const std::vector<InterestRow>& rows) {
  const long locked = CountLockedMonthsAtOnce(session_, rows.front().monthYear, rows.back().monthYear);
  if (locked > 0) {
    session_.Inform(fmt::format("{} month(s) locked.  Cannot save.", locked));
    return false;
  }
  if (IsEmployeeLocked(session_, key_.employee, rows.front().monthYear, kNoLastMonth)) {
    session_.desk.Inform("Employee has been locked. Cannot Save.", kDeniedTitle);
    return false;
  }
  return true;
}

void modInterestMaster::cmdSave_Click() {
  const std::vector<InterestRow> rows = Rows();
  if (rows.empty() || !MaySave(rows)) return;
  const std::string changes = WriteInterestRows(session_, key_, name_, rows);
  if (FnBlnAuditOn(session_)) {
    const std::string typeDesc = InstructionCaption(session_, key_.type);
    WriteAuditTrail(
        session_, kMenuNumber, key_.employee, "Standing Instructions - " + typeDesc + " Interest Updated",
        fmt::format("{0} Interest Updated:::SI Type = {0}:SI Name = {1}:Serial No. = {2}::Interest "
                    "Amount Details:Principle + Interest = EMI Amount:{3}",
                    typeDesc, name_, key_.serial, changes));
  }
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
