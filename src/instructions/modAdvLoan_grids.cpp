// What the entry of advances and loans lists: instructions, the schedule, receipts, the overview.
#include <fmt/format.h>

#include "common/amounts.h"
#include "common/month_year.h"
#include "frame/session.h"
#include "instructions/instruction_statements.h"
#include "instructions/modAdvLoan.h"
#include "instructions/receipts.h"
#include "runtime/numbers.h"

namespace ktl {

namespace {

constexpr Colour kRecoveredColour = 0xC0FFC0;  // also "Amount Paid"
constexpr Colour kRecoveryEqualColour = 0xFFC0C0;
constexpr Colour kRecoveryUnequalColour = 0xB0B0FF;
constexpr const char* kTakenBySalary = "salary";  // the tag of such a row

std::string Shown(const ScheduleMonth::Amount& amount) { return amount ? ShownAmount(*amount) : ""; }

double AsShown(double amount) { return clsGenCmn::FnDblTrimVal(ShownAmount(amount)); }

std::string DateText(const Value& date) { return date.IsDate() ? FormatDate(date.date(), "dd/mm/yyyy") : ""; }

}  // namespace

void modAdvLoan::SetGridColumns() {
  const std::string received = type_ == InstructionType::Advance ? "Receipts" : "Deposits";
  const std::string receipt = type_ == InstructionType::Advance ? "Receipt" : "Deposit";
  fpgAdvLoan.columns = {
      {"Sl.No.", CellType::Number, 60},
      {caption_ + " Name", CellType::Text, 180},
      {caption_ + " A/c No.", CellType::Text, 120, type_ == InstructionType::Advance},
      {"Date", CellType::Date, 90},
      {"Amount", CellType::Number, 110},
      {"Interest", CellType::Number, 100},
      {"EMI", CellType::Number, 110},
      {"Recovered", CellType::Number, 110},
      {received, CellType::Number, 110},
      {"Remarks", CellType::Text, 200},
  };
  fpgEMI.columns = {
      {"", CellType::Tick, 36, false, false},
      {"Counter", CellType::Number, 70},
      {"Month", CellType::Text, 90},
      {"EMI Recovered", CellType::Tick, 110, false, false},
      {"Actual Principle", CellType::Number, 120},
      {"Actual Interest", CellType::Number, 120},
      {"Actual Amount", CellType::Number, 120},
      {"Modified Principle", CellType::Number, 130},
      {"Modified Interest", CellType::Number, 120},
      {"Interest Amount", CellType::Number, 120},
      {"Modified Amount", CellType::Number, 125},
      {"Institution", CellType::Text, 180, type_ == InstructionType::Advance},
  };
  fpgReceipts.columns = {
      {"Counter", CellType::Number, 70, true},   {receipt + " Date", CellType::Date, 110},
      {"Principle Amt.", CellType::Number, 120}, {"Interest Amt.", CellType::Number, 120},
      {"Total Amount", CellType::Number, 120},   {"Remarks", CellType::Text, 220},
  };
  lblAmountPaid.backColour = kRecoveredColour;
  lblTotalEqual.backColour = kRecoveryEqualColour;
  lblTotalNotEqual.backColour = kRecoveryUnequalColour;
  ShowComponentColumns();
}

void modAdvLoan::ShowComponentColumns() {
  if (fpgEMI.columns.empty()) return;
  const bool apart = session_.SepPiYN || rules_.REDUCINGBALYN;
  for (EmiColumn column :
       {kEmiActualPrincipal, kEmiActualInterest, kEmiModifiedPrincipal, kEmiModifiedInterest}) {
    fpgEMI.columns[column].hidden = !apart;
  }
  fpgEMI.columns[kEmiInterestAmount].hidden = !rules_.REDUCINGBALYN;
}

void modAdvLoan::RefreshDetail() {
  fpgAdvLoan.Clear();
  instructions_.clear();
  if (employee_ == 0) return;
  instructions_ = ReadAdvLoanList(session_, employee_);
  for (const AdvLoanListRow& instruction : instructions_) {
    const std::size_t row = fpgAdvLoan.AddRow();
    fpgAdvLoan.At(row, kListSerial).text = std::to_string(instruction.serial);
    fpgAdvLoan.At(row, kListName).text = instruction.name;
    fpgAdvLoan.At(row, kListAccount).text = instruction.account;
    fpgAdvLoan.At(row, kListDate).text = DateText(instruction.date);
    fpgAdvLoan.At(row, kListAmount).text = ShownAmount(instruction.amount);
    fpgAdvLoan.At(row, kListInterest).text = ShownAmount(instruction.interest);
    fpgAdvLoan.At(row, kListEmi).text = ShownAmount(instruction.emi);
    fpgAdvLoan.At(row, kListEmi).tag = ShownAmount(instruction.emiInterest);
    fpgAdvLoan.At(row, kListRecovered).text = ShownAmount(instruction.recovered);
    fpgAdvLoan.At(row, kListReceipts).text = ShownAmount(instruction.receipts);
    fpgAdvLoan.At(row, kListRemarks).text = instruction.remarks;
    PaintListRow(row, instruction);
    if (instruction.serial == serial_ && !newRecord_) fpgAdvLoan.activeRow = row;
  }
}

void modAdvLoan::PaintListRow(std::size_t row, const AdvLoanListRow& instruction) {
  fpgAdvLoan.At(row, kListAmount).backColour = kRecoveredColour;
  fpgAdvLoan.At(row, kListInterest).backColour = kRecoveredColour;
  const Colour total = instruction.RecoveryEqualsPayment() ? kRecoveryEqualColour : kRecoveryUnequalColour;
  fpgAdvLoan.At(row, kListRecovered).backColour = total;
  fpgAdvLoan.At(row, kListReceipts).backColour = total;
}

InstructionTotals modAdvLoan::Totals() const {
  for (const AdvLoanListRow& row : instructions_) {
    if (row.serial != serial_) continue;
    return {AsShown(row.amount), AsShown(row.interest), AsShown(row.emi), AsShown(row.recovered),
            AsShown(row.receipts)};
  }
  return {};
}

std::set<long> modAdvLoan::RecoveredMonths() const {
  std::set<long> months;
  for (std::size_t row = 0; row < fpgEMI.rows.size(); ++row) {
    if (fpgEMI.IsTicked(row, kEmiRecovered))
      months.insert(clsDateHandle::FnLngFindMonthValue(fpgEMI.Text(row, kEmiMonth)));
  }
  return months;
}

void modAdvLoan::RefreshEMI() {
  fpgEMI.Clear();
  chkSelectAll.SetValue(false);
  if (serial_ == 0 || newRecord_) return;
  for (const ScheduleMonth& month : ReadSchedule(session_, Key())) {
    const std::size_t row = fpgEMI.AddRow();
    fpgEMI.rows[row].tag = month.recoveredBySalary ? kTakenBySalary : "";
    fpgEMI.At(row, kEmiTick).text = "0";
    fpgEMI.At(row, kEmiCounter).text = std::to_string(month.counter);
    fpgEMI.At(row, kEmiMonth).text = FnStrFormatMonthYear(month.monthYear);
    fpgEMI.At(row, kEmiRecovered).text = month.IsRecovered() ? "1" : "0";
    fpgEMI.At(row, kEmiActualPrincipal).text = Shown(month.ACTPRNAMT);
    fpgEMI.At(row, kEmiActualInterest).text = Shown(month.ACTINTAMT);
    fpgEMI.At(row, kEmiActualAmount).text = Shown(month.EMIAMT);
    fpgEMI.At(row, kEmiModifiedPrincipal).text = Shown(month.MDFPRNAMT);
    fpgEMI.At(row, kEmiModifiedInterest).text = Shown(month.MDFINTAMT);
    fpgEMI.At(row, kEmiInterestAmount).text = Shown(month.INTAMT);
    fpgEMI.At(row, kEmiModifiedAmount).text = Shown(month.MDFYAMT);
    fpgEMI.At(row, kEmiInstitution).text = month.institution;
    PaintEmiRow(row);
  }
}

bool modAdvLoan::IsRecoveredRow(std::size_t row) const {
  return fpgEMI.At(row, kEmiMonth).backColour == kRecoveredColour;
}

// A recovered month cannot be ticked for deletion; the mark of one that a salary has taken cannot be changed.
void modAdvLoan::PaintEmiRow(std::size_t row) {
  const bool recovered = fpgEMI.IsTicked(row, kEmiRecovered);
  fpgEMI.PaintRow(row, recovered ? kRecoveredColour : kNoColour);
  GridCell& tick = fpgEMI.At(row, kEmiTick);
  tick.locked = recovered ? std::optional(true) : std::nullopt;
  if (recovered) tick.text = "0";
  if (fpgEMI.rows[row].tag == kTakenBySalary) fpgEMI.At(row, kEmiRecovered).locked = true;
}

void modAdvLoan::fpgEMI_CellChange(std::size_t row, std::size_t column) {
  if (column != kEmiRecovered) return;
  const long counter = static_cast<long>(Val(fpgEMI.Text(row, kEmiCounter)));
  MarkRecovered(session_, Key(), counter, fpgEMI.IsTicked(row, kEmiRecovered));
  PaintEmiRow(row);
  UpdateOverview();
}

void modAdvLoan::chkSelectAll_Click() {
  for (std::size_t row = 0; row < fpgEMI.rows.size(); ++row) {
    if (!IsRecoveredRow(row)) fpgEMI.At(row, kEmiTick).text = chkSelectAll.Value() ? "1" : "0";
  }
}

void modAdvLoan::RefreshReceipts() {
  fpgReceipts.Clear();
  if (serial_ == 0 || newRecord_) return;
  for (const Receipt& receipt : ReadReceipts(session_, Key())) {
    const std::size_t row = fpgReceipts.AddRow();
    fpgReceipts.At(row, kReceiptCounter).text = std::to_string(receipt.counter);
    fpgReceipts.At(row, kReceiptDate).text =
        receipt.RCPTDATE ? FormatDate(*receipt.RCPTDATE, "dd/mm/yyyy") : "";
    fpgReceipts.At(row, kReceiptPrincipal).text = Shown(receipt.RCPTPRNAMT);
    fpgReceipts.At(row, kReceiptInterest).text = Shown(receipt.RCPTINTAMT);
    fpgReceipts.At(row, kReceiptTotal).text = Shown(receipt.RCPTAMT);
    fpgReceipts.At(row, kReceiptRemarks).text = receipt.remarks;
  }
}

void modAdvLoan::UpdateOverview() {
  const AdvLoanTotals totals = employee_ == 0 ? AdvLoanTotals{} : ReadTotals(session_, employee_);
  txtTotalAdv.SetText(ShownAmount(totals.amount));
  txtTotalInterest.SetText(ShownAmount(totals.interest));
  txtTotalReceipt.SetText(ShownAmount(totals.receipts));
  txtTotalDedSalary.SetText(ShownAmount(totals.fromSalary));
  txtTotalDue.SetText(ShownAmount(totals.Due()));
}

void modAdvLoan::fpgAdvLoan_Click() {
  if (fpgAdvLoan.activeRow >= fpgAdvLoan.rows.size()) return;
  const std::string serial = fpgAdvLoan.Text(fpgAdvLoan.activeRow, kListSerial);
  if (serial == txtSerialNo.Text()) {
    txtSerialNo_Change();
  } else {
    txtSerialNo.SetText(serial);
  }
}

long modAdvLoan::FnLngGetCounter() { return NextCounter(session_, Key()); }

}  // namespace ktl
