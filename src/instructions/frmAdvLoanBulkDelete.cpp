#include "instructions/frmAdvLoanBulkDelete.h"

#include <fmt/format.h>

#include "common/amounts.h"
#include "common/month_year.h"
#include "frame/handler_guard.h"
#include "frame/pickers.h"
#include "frame/rights.h"
#include "frame/session.h"
#include "frame/writing_buttons.h"
#include "frame/writing_turn.h"
#include "instructions/entry_grids.h"
#include "instructions/list_columns.h"
#include "instructions/type_rights.h"
#include "runtime/errors.h"
#include "runtime/numbers.h"
#include "runtime/text.h"
#include "workbook/export_menu.h"

namespace ktl {

namespace {

constexpr Colour kLockColour = 0xD0D0D0;

long MonthOf(const ComboBox& combo) { return static_cast<long>(Val(combo.BoundText())); }

}  // namespace

frmAdvLoanBulkDelete::frmAdvLoanBulkDelete(Session& session, InstructionType type)
    : Screen("frmAdvLoanBulkDelete"),
      employee(session, *this, "cmbEmpIdRef"),
      search(*this, "txtQuickSearch", "tmrSearch",
             [this](const std::string&) {
               RunGuarded(session_, ErrorStyle::NumberFirst, "", [this] { cmdLoad_Click(); });
             }),
      progress(session.desk, *this),
      session_(session),
      type_(type),
      ticks_(TickRowsOf(fpgBulkDelete, kTick), {.all = &chkSelectAll,
                                                .tickAll = &mnuSelectAll,
                                                .listed = &lblListedCnt,
                                                .selected = &lblSelectedCnt}) {
  filter_.type = type;
  ConnectHandlers();
}

void frmAdvLoanBulkDelete::ConnectHandlers() {
  const HandlerGuard on(session_, *this, ErrorStyle::NumberFirst);
  AskForMonth(session_, cmbFromMonth);
  AskForMonth(session_, cmbToMonth);
  cmdLoad.onClick = on(&frmAdvLoanBulkDelete::cmdLoad_Click);
  cmdDelete.onClick = on(&frmAdvLoanBulkDelete::cmdDelete_Click);
  fpgBulkDelete.onCellChange = [this](std::size_t, std::size_t) { ticks_.Count(); };
  fpgBulkDelete.popup = {&mnuSelectAll};
  BindExport(session_, cmdExport, fpgBulkDelete, [] { return ExportWords{"Bulk Delete", "The list"}; });
  cmdExport.toolTip = "Export to Excel";
  cmdClose.onClick = [this] { Unload(); };
}

void frmAdvLoanBulkDelete::Form_Load() {
  caption_ = InstructionCaption(session_, type_);
  caption = caption_ + " Bulk Delete";
  lblLegend.caption = "Recovered " + caption_;
  lblLegend.backColour = kRecoveredColour;
  lblLockLegend.backColour = kLockColour;
  employee.lblEmpIDRef.caption = session_.options.REFNOCAP;
  SetColumns();
  ticks_.Count();
  RunGuarded(session_, ErrorStyle::NumberFirst, "", [this] { FillLists(); });
  ApplyTypeRights(session_, *this, type_);
  EnableWriting(session_, {&cmdDelete}, WriteLock::OfUser);
}

void frmAdvLoanBulkDelete::FillLists() {
  const std::vector<ListRow> months = ReadCompanyMonths(session_);
  cmbFromMonth.SetRows(months);
  cmbToMonth.SetRows(months);
  std::vector<ListRow> byName = ReadInstructedEmployees(session_, type_, "EMPNAME");
  employee.SetPeople(std::move(byName), ReadInstructedEmployees(session_, type_, "REFNO"));
}

void frmAdvLoanBulkDelete::SetColumns() {
  using Row = BulkRow;
  rows_.paint = [this](std::size_t line, const Row& row) { PaintRow(line, row); };
  rows_.SetColumns({
      {{" ", CellType::Tick, 32, false, false}, [](const Row&) { return "0"; }},
      {{session_.options.EMPIDCAP, CellType::Text, 70},
       [](const Row& row) { return std::to_string(row.key.employee); }},
      {{session_.options.REFNOCAP, CellType::Text, 80}, &Row::reference},
      {{"Employee Name", CellType::Text, 180}, &Row::employeeName},
      {{caption_ + " Name", CellType::Text, 170}, &Row::name},
      {{caption_ + " Date", CellType::Date, 100}, [](const Row& row) { return ShownDate(row.date); }},
      {{caption_ + " Amt.", CellType::Number, 110}, Amount(&Row::amount)},
      {{"No. of EMI Completed", CellType::Number, 150},
       [](const Row& row) { return row.completed ? std::to_string(*row.completed) : ""; }},
      {{"Last EMI Month", CellType::Text, 120},
       [](const Row& row) { return FnStrFormatMonthYear(row.lastMonth); }},
      {{"SERIALNO", CellType::Number, 60, true},
       [](const Row& row) { return std::to_string(row.key.serial); }},
      {{"SITYPE", CellType::Number, 60, true},
       [](const Row& row) { return std::to_string(NumberOf(row.key.type)); }},
      {{"LastMonthName", CellType::Text, 60, true}, &Row::lastMonthName},
      {{"Balance Amt.", CellType::Number, 110}, [](const Row& row) { return ShownAmount(row.Balance()); }},
  });
  fpgBulkDelete.summed = {kAmount, kBalance};
}

void frmAdvLoanBulkDelete::PaintRow(std::size_t line, const BulkRow& row) {
  fpgBulkDelete.PaintRow(line, row.employeeLocked  ? kLockColour
                               : row.IsRecovered() ? kRecoveredColour
                                                   : kWhite);
  if (row.employeeLocked) fpgBulkDelete.At(line, kTick).locked = true;
}

bool frmAdvLoanBulkDelete::IsListed(ComboBox& combo, const char* refusal) {
  if (combo.Text().empty() || combo.MatchesList()) return true;
  session_.Inform(refusal);
  SetFocus(combo);
  return false;
}

bool frmAdvLoanBulkDelete::ReadFilter() {
  // A filter that is not understood must not list everybody.
  if (!IsListed(cmbFromMonth, "Select 'From Month'.") || !IsListed(cmbToMonth, "Select 'To Month'.") ||
      !IsListed(employee.cmbEmpName, "Select employee.") ||
      !IsListed(employee.cmbEmpIDRef, "Select employee."))
    return false;
  BulkFilter filter{.type = type_,
                    .fromMonth = MonthOf(cmbFromMonth),
                    .toMonth = MonthOf(cmbToMonth),
                    .employee = employee.Employee(),
                    .search = Trim(search.txtSearch.Text())};
  if (const auto refusal = CheckBulkFilter(filter))
    return Refuse(session_, *this, *refusal, {{BulkField::FromMonth, &cmbFromMonth}});
  filter_ = std::move(filter);
  return true;
}

void frmAdvLoanBulkDelete::cmdLoad_Click() {
  if (ReadFilter()) FillGrid();
}

void frmAdvLoanBulkDelete::FillGrid() {
  rows_.Show(ReadBulkRows(session_, filter_));
  fpgBulkDelete.activeRow = kNoRow;
  ticks_.Count();
}

void frmAdvLoanBulkDelete::cmdDelete_Click() {
  if (FnBlnPermitted(session_, cmdDelete)) return;
  if (ticks_.Ticked().empty()) return session_.Inform("Select Employee");
  if (const auto refusal = CheckBulkDelete(session_, MonthOf(cmbFromMonth))) {
    Refuse(session_, *this, *refusal, {{BulkField::FromMonth, &cmbFromMonth}});
    return;
  }
  if (!session_.desk.Confirm("Do you want to delete selected " + caption_, session_.title)) return;
  const auto showAnew = [this] { FillGrid(); };
  try {
    if (!UnlessChanged(
            session_, [this] { DeleteTicked(); }, showAnew))
      return;
  } catch (const RuntimeError&) {
    FillGrid();  // the rows before the failure are gone
    throw;
  }
  session_.Inform("Deleted");
  FillGrid();
}

void frmAdvLoanBulkDelete::DeleteTicked() {
  const std::vector<const BulkRow*> ticked = rows_.Ticked(kTick);
  Progress::Work work(progress, static_cast<int>(ticked.size()));
  int deleted = 0;
  for (const BulkRow* row : ticked) {
    DeleteBulkRow(session_, filter_, *row);
    work.Advance(fmt::format("{} deleted: {}", caption_, ++deleted));
  }
}

}  // namespace ktl
