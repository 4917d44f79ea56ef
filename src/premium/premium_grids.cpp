#include "premium/premium_grids.h"

#include "common/month_year.h"
#include "instructions/list_columns.h"
#include "instructions/schedule_columns.h"

namespace ktl {

namespace {

using Premium = PremiumListRow;

std::function<std::string(const Premium&)> Counts(std::optional<FundShare> PremiumRow::*share) {
  return [share](const Premium& row) { return (row.premium.*share)->counts ? "1" : "0"; };
}

std::function<std::string(const Premium&)> Percent(std::optional<FundShare> PremiumRow::*share) {
  return [share](const Premium& row) { return ShownAmount((row.premium.*share)->percent); };
}

}  // namespace

void PremiumGrid::Describe(InstructionType type, const std::string& caption) {
  const bool other = type != InstructionType::Incentive;
  list_.SetColumns({
      {{"Sl.No.", CellType::Number, 60}, [](const Premium& row) { return std::to_string(row.serial); }},
      {{caption + " Name", CellType::Text, 170}, [](const Premium& row) { return row.premium.name; }},
      {{caption + " No.", CellType::Text, 120}, [](const Premium& row) { return row.premium.number; }},
      {{"Start Month"}, [](const Premium& row) { return FnStrExplodeMonth(row.premium.firstMonth); }},
      {{"End Month"}, [](const Premium& row) { return FnStrExplodeMonth(row.premium.lastMonth); }},
      {{"PF", CellType::Tick, 50, other}, Counts(&PremiumRow::pf)},
      {{"PF %", CellType::Number, 70, other}, Percent(&PremiumRow::pf)},
      {{"ESI", CellType::Tick, 50, other}, Counts(&PremiumRow::esi)},
      {{"ESI %", CellType::Number, 70, other}, Percent(&PremiumRow::esi)},
      {{"PT", CellType::Tick, 50, other}, [](const Premium& row) { return row.premium.pt ? "1" : "0"; }},
      {{"Remarks", CellType::Text, 220}, [](const Premium& row) { return row.premium.remarks; }},
  });
}

void PremiumGrid::Show(std::vector<Premium> rows, long serial) {
  list_.Show(std::move(rows));
  Mark(serial);
}

void PremiumGrid::Mark(long serial) { MarkSerial(grid_, list_.Rows(), serial); }

void PremiumScheduleGrid::Describe(InstructionType type) {
  using Row = ScheduleMonth;
  list_.SetColumns({
      TickColumn(),
      CounterColumn(),
      MonthColumn(),
      {{"Actual Amount", CellType::Number, 120}, Amount(&Row::EMIAMT)},
      {{"Modified Amount", CellType::Number, 125}, Amount(&Row::MDFYAMT)},
      {{"Institution", CellType::Text, 200, !HasInstitution(type)}, &Row::institution},
  });
  list_.paint = [this](std::size_t line, const Row& row) {
    grid_.PaintRow(line, row.recoveredBySalary ? kPaymentDoneColour : kNoColour);
  };
  grid_.summed = {kActualAmount, kModifiedAmount};
}

void PremiumScheduleGrid::Show(std::vector<ScheduleMonth> months) {
  list_.Show(std::move(months));
  grid_.activeRow = kNoRow;
}

void PremiumScheduleGrid::TickAll(bool ticked) {
  for (std::size_t line = 0; line < list_.Rows().size(); ++line)
    grid_.At(line, kTick).text = ticked ? "1" : "0";
}

void PremiumScheduleGrid::Tick(const std::set<long>& months) {
  for (std::size_t line = 0; line < list_.Rows().size(); ++line)
    if (months.contains(list_.Rows()[line].monthYear)) grid_.At(line, kTick).text = "1";
}

std::vector<ScheduleMonth> PremiumScheduleGrid::Ticked() const {
  std::vector<ScheduleMonth> ticked;
  for (const ScheduleMonth* month : list_.Ticked(kTick)) ticked.push_back(*month);
  return ticked;
}

std::set<long> PremiumScheduleGrid::PaidMonths() const {
  std::set<long> paid;
  for (const ScheduleMonth& month : list_.Rows())
    if (month.recoveredBySalary) paid.insert(month.monthYear);
  return paid;
}

}  // namespace ktl
