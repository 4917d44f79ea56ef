#include "instructions/entry_grids.h"

#include "instructions/list_columns.h"
#include "instructions/schedule_columns.h"
#include "runtime/numbers.h"

namespace ktl {

double AsShown(const std::optional<double>& amount) { return RoundByPattern(amount.value_or(0), "0.00"); }

double SumAsShown(const std::vector<ScheduleMonth>& months, ScheduleMonth::Amount ScheduleMonth::*amount) {
  double sum = 0;
  for (const ScheduleMonth& month : months) sum += AsShown(month.*amount);
  return sum;
}

void InstructionGrid::Describe(InstructionType type, const std::string& caption) {
  using Row = AdvLoanListRow;
  const bool noAccount = type == InstructionType::Advance;
  list_.SetColumns({
      {{"Sl.No.", CellType::Number, 60}, [](const Row& row) { return std::to_string(row.serial); }},
      {{caption + " Name", CellType::Text, 180}, &Row::name},
      {{caption + " A/c No.", CellType::Text, 120, noAccount}, &Row::account},
      {{"Date", CellType::Date, 90}, [](const Row& row) { return ShownDate(row.date); }},
      {{"Amount", CellType::Number, 110}, Amount(&Row::amount)},
      {{"Interest", CellType::Number, 100}, Amount(&Row::interest)},
      {{"EMI", CellType::Number, 110}, Amount(&Row::emi)},
      {{"Recovered", CellType::Number, 110}, Amount(&Row::recovered)},
      {{std::string(FactsOf(type).receiptWord) + "s", CellType::Number, 110}, Amount(&Row::receipts)},
      {{"Remarks", CellType::Text, 200}, &Row::remarks},
  });
  list_.paint = [this](std::size_t line, const Row& row) { Paint(line, row); };
  grid_.summed = {kAmount, kInterest, kEmi, kRecovered, kReceipts};
}

void InstructionGrid::Show(std::vector<AdvLoanListRow> rows, long serial) {
  list_.Show(std::move(rows));
  Mark(serial);
}

void InstructionGrid::Mark(long serial) { MarkSerial(grid_, list_.Rows(), serial); }

InstructionTotals InstructionGrid::TotalsOf(long serial) const {
  for (const AdvLoanListRow& row : list_.Rows()) {
    if (row.serial != serial) continue;
    return {AsShown(row.amount), AsShown(row.interest), AsShown(row.emi), AsShown(row.recovered),
            AsShown(row.receipts)};
  }
  return {};
}

void InstructionGrid::Paint(std::size_t line, const AdvLoanListRow& row) {
  grid_.At(line, kEmi).tag = ShownAmount(row.emiInterest);
  grid_.At(line, kAmount).backColour = grid_.At(line, kInterest).backColour = kRecoveredColour;
  grid_.At(line, kRecovered).backColour = grid_.At(line, kReceipts).backColour =
      row.RecoveryEqualsPayment() ? kRecoveryEqualColour : kRecoveryUnequalColour;
}

void ScheduleGrid::Describe(InstructionType type) {
  using Row = ScheduleMonth;
  const bool noInstitution = type == InstructionType::Advance;
  list_.SetColumns({
      TickColumn(),
      CounterColumn(),
      MonthColumn(),
      {{"EMI Recovered", CellType::Tick, 110, false, false},
       [](const Row& row) { return row.IsRecovered() ? "1" : "0"; }},
      {{"Actual Principle", CellType::Number, 120}, Amount(&Row::ACTPRNAMT)},
      {{"Actual Interest", CellType::Number, 120}, Amount(&Row::ACTINTAMT)},
      {{"Actual Amount", CellType::Number, 120}, Amount(&Row::EMIAMT)},
      {{"Modified Principle", CellType::Number, 130}, Amount(&Row::MDFPRNAMT)},
      {{"Modified Interest", CellType::Number, 120}, Amount(&Row::MDFINTAMT)},
      {{"Interest Amount", CellType::Number, 120}, Amount(&Row::INTAMT)},
      {{"Modified Amount", CellType::Number, 125}, Amount(&Row::MDFYAMT)},
      {{"Institution", CellType::Text, 180, noInstitution}, &Row::institution},
  });
  list_.paint = [this](std::size_t line, const Row& row) { Paint(line, row); };
  grid_.summed = {kActualPrincipal,  kActualInterest, kActualAmount,  kModifiedPrincipal,
                  kModifiedInterest, kInterestAmount, kModifiedAmount};
}

void ScheduleGrid::ShowColumns(bool apart, bool reducing) {
  std::vector<GridColumn>& columns = grid_.columns;
  if (columns.empty()) return;
  for (Column column : {kActualPrincipal, kActualInterest, kModifiedPrincipal, kModifiedInterest})
    columns[column].hidden = !apart;
  columns[kInterestAmount].hidden = !reducing;
}

void ScheduleGrid::Lock(bool locked) {
  grid_.columns[kTick].locked = grid_.columns[kRecovered].locked = locked;
}

void ScheduleGrid::Show(std::vector<ScheduleMonth> months) {
  list_.Show(std::move(months));
  grid_.activeRow = kNoRow;
}

// A recovered month cannot be ticked for deletion. A mark can be taken away; on a month that a salary has
// taken none can be set.
void ScheduleGrid::Paint(std::size_t line, const ScheduleMonth& month) {
  const bool recovered = month.IsRecovered();
  grid_.PaintRow(line, recovered ? kRecoveredColour : kNoColour);
  grid_.At(line, kTick).locked = recovered ? std::optional(true) : std::nullopt;
  grid_.At(line, kRecovered).locked =
      month.recoveredBySalary && !month.markedRecovered ? std::optional(true) : std::nullopt;
}

void ScheduleGrid::SetRecovered(std::size_t line, bool recovered) {
  list_.Rows()[line].markedRecovered = recovered;
  list_.ShowAgain(line);
}

void ScheduleGrid::TickAllOpen(bool ticked) {
  for (std::size_t line = 0; line < list_.Rows().size(); ++line)
    if (!At(line).IsRecovered()) grid_.At(line, kTick).text = ticked ? "1" : "0";
}

std::set<long> ScheduleGrid::RecoveredMonths() const {
  std::set<long> recovered;
  for (const ScheduleMonth& month : list_.Rows())
    if (month.IsRecovered()) recovered.insert(month.monthYear);
  return recovered;
}

std::vector<ScheduleMonth> ScheduleGrid::Ticked() const {
  std::vector<ScheduleMonth> ticked;
  for (const ScheduleMonth* month : list_.Ticked(kTick)) ticked.push_back(*month);
  return ticked;
}

std::vector<OpenMonth> ScheduleGrid::OpenMonths() const {
  std::vector<OpenMonth> open;
  for (std::size_t line = 0; line < list_.Rows().size(); ++line) {
    const ScheduleMonth& month = At(line);
    if (month.IsRecovered() || grid_.IsTicked(line, kTick)) continue;
    open.push_back({month.monthYear, AsShown(month.MDFYAMT)});
  }
  return open;
}

}  // namespace ktl
