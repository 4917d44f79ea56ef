#include "benefit/frmUpdateInt.h"

#include <fmt/format.h>

#include <algorithm>

#include "benefit/amount_column.h"
#include "benefit/yearly_run.h"
#include "frame/employee_number.h"
#include "frame/fin_years.h"
#include "frame/handler_guard.h"
#include "frame/session.h"
#include "frame/writing_buttons.h"
#include "frame/writing_turn.h"
#include "runtime/numbers.h"
#include "runtime/text.h"
#include "workbook/export_menu.h"

namespace ktl {

namespace {

constexpr const char* kSkipMarker = "IntFreeSkipOneMonthEMI.dat";
constexpr const char* kDetailTip = "Double click for details";

}  // namespace

frmUpdateInt::frmUpdateInt(Session& session, const YearlyBenefitRequest& opener)
    : Screen("frmUpdateInt"), progress(session.desk, *this), session_(session), opener_(opener) {
  caption = "Update Interest";
  chkRule.visible = false;
  lblNote.visible = false;
  lblNoteoneMOnth.visible = false;
  fmeDetail.Hold({lblDetailName, lblDetailId, lblX, fpgDetail});
  fmeDetail.visible = false;
  ConnectHandlers();
}

void frmUpdateInt::ConnectHandlers() {
  const HandlerGuard on(session_, *this, ErrorStyle::NumberFirst);
  cmbFinYear.onChange = on(&frmUpdateInt::cmbFinYear_Change);
  chkRule.onClick = on(&frmUpdateInt::chkRule_Click);
  lblNote.onClick = on(&frmUpdateInt::lblNote_Click);
  lblX.onClick = [this] { HideDetail(); };
  fpgUpdate.onRowClick = [this](std::size_t row, std::size_t column) { ShowTip(row, column); };
  fpgUpdate.onCellChange = on(&frmUpdateInt::fpgUpdate_CellChange);
  fpgUpdate.onDblClick = on(&frmUpdateInt::fpgUpdate_DblClick);
  fpgUpdate.popup = {&mnuSelect, &mnuAll};
  mnuSelect.onClick = on(&frmUpdateInt::mnuSelect_Click);
  mnuAll.onClick = on(&frmUpdateInt::mnuAll_Click);
  BindExport(session_, mnuExcel, fpgUpdate, [] { return ExportWords{"Update Details", "The list"}; });
  cmdPort.onClick = on(&frmUpdateInt::cmdPort_Click);
  Command1.onClick = [this] {
    HideDetail();
    Unload();
  };
}

void frmUpdateInt::Form_Load() {
  blnSkipOneMonth_ = session_.machine.folder.HasFile(kSkipMarker);
  lblNoteoneMOnth.visible = blnSkipOneMonth_;
  session_.ActiveForm = this;
  SetColumns();
  mnuSelect.enabled = mnuAll.enabled = EnableWriting(session_, {&cmdPort});
  RunGuarded(session_, ErrorStyle::NumberFirst, "", [this] {
    INTFRLNRULE_ = FirstYearOfRule(session_);
    cmbFinYear.SetRows(ReadFinYears(session_));
    search.txtSearch.SetText(opener_.search);
    search.tmrSearch.enabled = false;  // the year lists by it
    cmbFinYear.SetText(opener_.year);
  });
}

// Escape closes the detail first.
bool frmUpdateInt::Form_QueryUnload() {
  if (!fmeDetail.visible) return true;
  HideDetail();
  return false;
}

void frmUpdateInt::SetColumns() {
  using Row = BenefitRow;
  rows_.paint = [this](std::size_t line, const Row& row) {
    fpgUpdate.At(line, kBenefit).backColour = row.IsEdited() ? kToolTipColour : kNoColour;
  };
  rows_.SetColumns({
      {{"", CellType::Tick, 32, false, false}, {}},
      {{NumberingOf(session_).caption, CellType::Text, 60}, &Row::number},
      {{"Employee Name", CellType::Text, 130}, &Row::name},
      {{"Opening Balance", CellType::Number, 112}, TwoPlaces(&Row::opening)},
      {{"Principle Amount", CellType::Number, 114}, TwoPlaces(&Row::principal)},
      {{"Int. from Loan module", CellType::Number, 144}, TwoPlaces(&Row::interest)},
      {{"Interest", CellType::Number, 84}, TwoPlaces(&Row::benchmark)},
      {{"Int. Benefit Amount", CellType::Number, 132, false, session_.ReadOnlyUser}, TwoPlaces(&Row::edited)},
      {{"Original Interest", CellType::Number, 114}, TwoPlaces(&Row::original)},
      {{"Int. Benefit Amount From Module", CellType::Number, 212}, TwoPlaces(&Row::fromTax)},
  });
  fpgUpdate.summed = {kPrincipal, kInterest, kBenchmark, kBenefit, kOriginal};
  fpgUpdate.toolTip = kDetailTip;
  using Loan = BenefitLoan;
  loans_.SetColumns({
      {{"Loan Name", CellType::Text, 240}, &Loan::Title},
      {{"Opening Balance", CellType::Number, 120}, TwoPlaces(&Loan::opening)},
      {{"Principle", CellType::Number, 110}, TwoPlaces(&Loan::principal)},
      {{"Int. from Loan Module", CellType::Number, 145}, TwoPlaces(&Loan::interest)},
      {{"Interest", CellType::Number, 105}, TwoPlaces(&Loan::benchmark)},
      {{"Actual Difference Interest", CellType::Number, 170}, TwoPlaces(&Loan::difference)},
  });
}

void frmUpdateInt::cmbFinYear_Change() {
  HideDetail();
  rows_.Show({});
  ticks_.Count();
  if (Year().empty()) return;
  ApplyRule();
  Recalculate();
  LoadBenefitGrid();
}

// The rule is forced on from its year and off before it.
void frmUpdateInt::ApplyRule() {
  const bool forced = BenefitYearOf(session_, Year()).closingYear >= INTFRLNRULE_;
  ruling_ = true;
  chkRule.SetValue(forced);
  ruling_ = false;
  chkRule.enabled = !forced;
  chkRule.visible = forced;
  lblNote.visible = forced;
}

void frmUpdateInt::chkRule_Click() {
  if (ruling_ || Year().empty()) return;
  Recalculate();
  LoadBenefitGrid();
}

// Who may write nothing sees what was stored.
void frmUpdateInt::Recalculate() {
  if (opener_.year.empty() || session_.ReadOnlyUser) return;
  const LoanRule rule = chkRule.Value()    ? LoanRule::PaidMoreThan20000
                        : blnSkipOneMonth_ ? LoanRule::SeveralMonths
                                           : LoanRule::EveryLoan;
  RecalculateBenefit(session_, progress, BenefitYearOf(session_, Year()), rule);
}

void frmUpdateInt::LoadBenefitGrid() {
  rows_.Show(Year().empty()
                 ? std::vector<BenefitRow>()
                 : ReadBenefitRows(session_, BenefitYearOf(session_, Year()), Trim(search.txtSearch.Text())));
  ticks_.Count();
}

void frmUpdateInt::Search() {
  if (search.txtSearch.locked) return;
  RunGuarded(session_, ErrorStyle::NumberFirst, "", [this] { LoadBenefitGrid(); });
}

void frmUpdateInt::lblNote_Click() {
  session_.Inform(
      " Interest free loan benifit calculation.  \r\n applies only for paid principle is more than Rs "
      "20000/year  \r\n Loan EMI/balance carry over to next financial year \r\n ");
}

void frmUpdateInt::fpgUpdate_CellChange(std::size_t row, std::size_t column) {
  if (column == kTick) return ticks_.Count();
  if (column == kBenefit) EditBenefit(row, fpgUpdate.Text(row, column));
}

void frmUpdateInt::EditBenefit(std::size_t row, const std::string& typed) {
  if (Year().empty()) {
    session_.Inform("Select " + lblFinancialYear.caption);
    cmbFinYear.SetText("");
    return SetFocus(fpgUpdate);
  }
  BenefitRow& shown = rows_.Rows()[row];
  std::string refused;
  const std::optional<double> benefit = TypedBenefit(typed, refused);
  if (!benefit) {
    session_.Inform(refused);
    return rows_.ShowAgain(row);
  }
  const bool written = WriteInTurn(
      session_, [] { return std::string(); }, std::nullopt,
      [&] { StoreEdited(session_, BenefitYearOf(session_, Year()), shown, *benefit); },
      [this] { LoadBenefitGrid(); });
  if (!written) return;
  shown.edited = *benefit;
  rows_.ShowAgain(row);
  ShowTip(row, kBenefit);
}

void frmUpdateInt::ShowTip(std::size_t row, std::size_t column) {
  const BenefitRow* const shown = rows_.At(row);
  const bool edited = column == kBenefit && shown != nullptr && shown->IsEdited();
  fpgUpdate.toolTip = edited ? "Previous Value: " + fpgUpdate.Text(row, kOriginal)
                      : column == kTick || column == kBenefit ? ""
                                                              : kDetailTip;
}

void frmUpdateInt::mnuSelect_Click() {
  if (const BenefitRow* const row = rows_.Active()) PortPrevious({*row});
}

void frmUpdateInt::mnuAll_Click() { PortPrevious(rows_.Rows()); }

// Shown anew afterwards; the view stays on its row.
void frmUpdateInt::PortPrevious(const std::vector<BenefitRow>& rows) {
  WriteInTurn(
      session_, [] { return std::string(); }, std::nullopt,
      [&] { StorePrevious(session_, BenefitYearOf(session_, Year()), rows); }, [] {});
  LoadBenefitGrid();
}

void frmUpdateInt::fpgUpdate_DblClick(std::size_t row, std::size_t column) {
  const BenefitRow* const shown = rows_.At(row);
  if (shown == nullptr || column == kBenefit || column == kOriginal) return;
  loans_.Show(ReadLoansOfEmployee(session_, BenefitYearOf(session_, Year()), shown->employee));
  lblDetailName.caption = "Employee Name: " + shown->name;
  lblDetailId.caption = "EmpID: " + std::to_string(shown->employee);
  ShowDetail(true);
}

void frmUpdateInt::HideDetail() {
  if (fmeDetail.visible) ShowDetail(false);
}

void frmUpdateInt::ShowDetail(bool shown) {
  fmeDetail.visible = shown;
  search.txtSearch.locked = shown;
  chkAll.enabled = !shown;
  cmdPort.enabled = !shown && cmdPort.whyDisabled.empty();
}

void frmUpdateInt::cmdPort_Click() {
  const std::vector<const BenefitRow*> ticked = rows_.Ticked(kTick);
  if (ticked.empty()) {
    session_.Inform("Select Employee to Port.");
    return SetFocus(fpgUpdate);
  }
  UnlessChanged(
      session_, [&] { Port(ticked); }, [this] { LoadBenefitGrid(); });
}

// All are looked at first: nobody would take back what is ported for a row that a newer run has dropped.
void frmUpdateInt::Port(const std::vector<const BenefitRow*>& rows) {
  const BenefitYear year = BenefitYearOf(session_, Year());
  RequireAsShown(session_, year, rows);
  Progress::Work work(progress, static_cast<int>(rows.size()));
  int ported = 0;
  for (const BenefitRow* row : rows) {
    PortBenefitAudited(session_, year, row->employee, Val(FormatNumber(row->edited, "0.00")));
    work.Advance(fmt::format("Employees ported: {}", ++ported));
  }
  session_.desk.NoteSaved();
}

}  // namespace ktl
