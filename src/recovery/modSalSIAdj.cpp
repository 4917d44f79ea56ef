#include "recovery/modSalSIAdj.h"

#include <fmt/format.h>

#include "common/amounts.h"
#include "common/month_year.h"
#include "frame/handler_guard.h"
#include "frame/number_fields.h"
#include "frame/session.h"
#include "frame/top_level.h"
#include "frame/writing_buttons.h"
#include "instructions/instruction_statements.h"
#include "instructions/list_columns.h"
#include "recovery/put_off.h"
#include "runtime/errors.h"
#include "runtime/numbers.h"
#include "workbook/export_menu.h"

namespace ktl {

namespace {

constexpr const char* kSection = "DedPrefSet";
constexpr Colour kLockedFieldColour = 0xE0E0E0;
constexpr double kWhole = 100;

}  // namespace

modSalSIAdj::modSalSIAdj(Session& session, long monthYear)
    : Screen("modSalSIAdj"), progress(session.desk, *this), lngMonthYear(monthYear), session_(session) {
  caption = "Apply Deduction Preference";
  fmeLoanAdv.caption = "Recoveries of " + FnStrFormatMonthYear(lngMonthYear);
  fmeLoanAdv.Hold({optLoanAdv_0, optLoanAdv_1});
  fmeSalaryOpt.Hold({optSalaryOpt_0, optSalaryOpt_1, txtPer, lblPer});
  fmeAdjust.Hold({optAdjust_0, optAdjust_1});
  TakeAmounts({&txtPer});
  ConnectHandlers();
}

void modSalSIAdj::ConnectHandlers() {
  const HandlerGuard on(session_, *this, ErrorStyle::DescriptionFirst);
  for (OptionButton* option : {&optLoanAdv_0, &optLoanAdv_1}) option->onClick = [this] { SetColumns(); };
  for (OptionButton* option : {&optSalaryOpt_0, &optSalaryOpt_1}) {
    option->onClick = [this] {
      ShowFloorChoice();
      EmptyList();
    };
  }
  chkPartialAdj.onClick = [this] { EmptyList(); };
  txtPer.onChange = [this] { EmptyList(); };
  txtPer.onLeave = on(&modSalSIAdj::txtPer_LostFocus);
  fpgDedPref.onCellChange = on(&modSalSIAdj::fpgDedPref_CellChange);
  cmdDisplay.onClick = on(&modSalSIAdj::cmdDisplay_Click);
  cmdAdjust.onClick = on(&modSalSIAdj::cmdAdjust_Click);
  cmdClose.onClick = [this] { Unload(); };
  BindExport(session_, mnuExport, fpgDedPref, [this] { return ExportWords{caption, "The list"}; });
}

Subject modSalSIAdj::Subject() const { return {.instruction = FnStrFormatMonthYear(lngMonthYear)}; }

void modSalSIAdj::Form_Load() {
  EnterTopLevel(session_, *this);
  optLoanAdv_0.caption = session_.captions.types[NumberOf(InstructionType::Loan)];
  optLoanAdv_1.caption = session_.captions.types[NumberOf(InstructionType::Advance)];
  optLoanAdv_0.SetValue(true);
  optSalaryOpt_0.SetValue(true);
  optAdjust_0.SetValue(true);
  optLoanAdv_0.enabled = session_.features.On("LOANYN");
  if (!optLoanAdv_0.enabled) optLoanAdv_1.SetValue(true);
  optLoanAdv_1.enabled = session_.features.On("ADVANCEYN");
  if (!optLoanAdv_1.enabled) optLoanAdv_0.SetValue(true);
  EnableWriting(session_, {&cmdAdjust});
}

void modSalSIAdj::Form_Activate() { LoadSettings(); }

void modSalSIAdj::Form_Unload() { LeaveTopLevel(session_); }

void modSalSIAdj::LoadSettings() {
  const auto setting = [this](const char* key) { return session_.machine.settings.Get(kSection, key); };
  const auto isOne = [&](const char* key) { return Val(setting(key)) == 1; };
  OptionButton& kind = isOne("AdvLoan") ? optLoanAdv_1 : optLoanAdv_0;
  if (kind.enabled) kind.SetValue(true);
  const double percent = clsGenCmn::FnDblTrimVal(setting("SalaryPerc"));
  if (percent > 0 && percent <= kWhole) txtPer.SetText(setting("SalaryPerc"));
  (isOne("SalaryOpt") ? optSalaryOpt_1 : optSalaryOpt_0).SetValue(true);
  chkPartialAdj.SetValue(isOne("AllowPartial"));
  (isOne("Adjust") ? optAdjust_1 : optAdjust_0).SetValue(true);
  ShowFloorChoice();
}

void modSalSIAdj::SaveSettings() {
  const auto save = [this](const char* key, const std::string& value) {
    SettingsStore& settings = session_.machine.settings;
    if (settings.Get(kSection, key) != value) settings.Set(kSection, key, value);  // a file is written
  };
  save("AdvLoan", optLoanAdv_0.Value() ? "0" : "1");
  save("SalaryOpt", optSalaryOpt_0.Value() ? "0" : "1");
  save("SalaryPerc", txtPer.Text());
  save("AllowPartial", chkPartialAdj.Value() ? "1" : "0");
}

void modSalSIAdj::ShowFloorChoice() {
  txtPer.locked = optSalaryOpt_0.Value();
  txtPer.backColour = txtPer.locked ? kLockedFieldColour : kWhite;
}

void modSalSIAdj::SetColumns() {
  using Row = PreferenceRow;
  const bool byReference = session_.options.EMPREFNOYN;
  const std::string kind = Kind().caption;
  const auto amount = [](std::string heading, int width, double Row::*value) {
    return GridList<Row>::Column{{std::move(heading), CellType::Number, width}, Amount(value)};
  };
  rows_.paint = [this](std::size_t line, const Row& row) { PaintHeld(line, row); };
  rows_.SetColumns({
      {{" ", CellType::Tick, 32, false, false}, [](const Row& row) { return row.ticked ? "1" : "0"; }},
      {{session_.options.EMPIDCAP, CellType::Text, 80, byReference},
       [](const Row& row) { return std::to_string(row.employee); }},
      {{session_.options.REFNOCAP, CellType::Text, 80, !byReference}, &Row::reference},
      {{"Name", CellType::Text, 170}, &Row::employeeName},
      {{kind + " Name ", CellType::Text, 150}, &Row::instruction},
      amount(kind + " EMI Amount", 120, &Row::emi),
      amount("Adjusted Amount", 120, &Row::moved),
      amount("Net Amount Before Adjustment", 190, &Row::before),
      amount("Net Amount After Adjustment", 180, &Row::after),
      amount("Expected amount", 120, &Row::floor),
      {{"", CellType::Number, 60, true}, [](const Row& row) { return std::to_string(row.serial); }},
  });
  fpgDedPref.summed = {kEmi, kAdjusted};
}

void modSalSIAdj::EmptyList() { rows_.Show({}); }

void modSalSIAdj::txtPer_LostFocus() {
  if (IsPercentRefused()) return;
  txtPer.SetText(clsGenCmn::FnStrConvertToNumber(txtPer.Text(), 2));
}

bool modSalSIAdj::IsPercentRefused() {
  if (FnBlnWithinLimit(txtPer.Text(), kWhole)) return false;
  session_.Inform("Amount should be less than 100.00");
  txtPer.SetText("");
  SetFocus(txtPer);
  return true;
}

PreferenceTerms modSalSIAdj::Terms() const {
  PreferenceTerms terms{.type = optLoanAdv_0.Value() ? InstructionType::Loan : InstructionType::Advance,
                        .monthYear = lngMonthYear,
                        .partial = chkPartialAdj.Value()};
  if (optSalaryOpt_1.Value()) terms.percent = clsGenCmn::FnDblTrimVal(txtPer.Text());
  return terms;
}

void modSalSIAdj::cmdDisplay_Click() {
  if (optSalaryOpt_1.Value()) {
    if (IsPercentRefused()) return;
    if (clsGenCmn::FnDblTrimVal(txtPer.Text()) == 0) {
      session_.Inform("Enter Percent on Gross");
      return SetFocus(txtPer);
    }
  }
  SaveSettings();
  FillList();
  if (rows_.Rows().empty()) session_.Inform("No data available to adjust.");
}

void modSalSIAdj::FillList() {
  const PreferenceTerms terms = Terms();
  std::vector<PreferenceRow> rows = ReadShortRecoveries(session_, terms);
  EmptyList();
  if (rows.empty()) return;
  ReadLocks(rows);
  FillPreference(rows, terms, static_cast<int>(session_.options.ROUNDTYPE));
  rows_.Show(std::move(rows));
}

void modSalSIAdj::ReadLocks(std::vector<PreferenceRow>& rows) {
  Progress::Work work(progress, static_cast<int>(rows.size()));
  const PreferenceRow* previous = nullptr;
  int processed = 0;
  for (PreferenceRow& row : rows) {
    const bool known = previous != nullptr && previous->employee == row.employee;
    row.held = known ? previous->held : IsHeld(session_, row.employee, lngMonthYear);
    previous = &row;
    work.Advance(fmt::format("Employees + {} processed: {}", Kind().caption, ++processed));
  }
}

void modSalSIAdj::PaintHeld(std::size_t line, const PreferenceRow& row) {
  if (!row.held) return;
  fpgDedPref.At(line, kTick).locked = true;
  for (std::size_t column = kEmi; column <= kSerial; ++column) {
    GridCell& cell = fpgDedPref.At(line, column);
    cell.locked = true;
    cell.backColour = kButtonFaceColour;
  }
}

void modSalSIAdj::fpgDedPref_CellChange(std::size_t lngRow, std::size_t column) {
  if (column == kTick) RecalcEmployee(lngRow);
}

void modSalSIAdj::RecalcEmployee(std::size_t lngRow) {
  std::vector<PreferenceRow>& rows = rows_.Rows();
  rows[lngRow].ticked = fpgDedPref.IsTicked(lngRow, kTick);
  for (const std::size_t line : ktl::RecalcEmployee(rows, lngRow, chkPartialAdj.Value()))
    rows_.ShowAgain(line);
}

void modSalSIAdj::cmdAdjust_Click() {
  if (rows_.Ticked(kTick).empty()) return session_.Inform("No data found to adjust.");
  if (IsMonthLocked(session_, lngMonthYear)) return session_.Inform("Month is locked.  Cannot update.");
  session_.machine.settings.Set(kSection, "Adjust", optAdjust_0.Value() ? "0" : "1");
  AdjustTicked();
}

// A failure leaves the rows before it adjusted: the list is read again, so that they are not adjusted twice.
void modSalSIAdj::AdjustTicked() {
  const PreferenceTerms terms = Terms();
  const PutOffTo to = optAdjust_0.Value() ? PutOffTo::NextMonth : PutOffTo::AllLaterMonths;
  const std::vector<const PreferenceRow*> ticked = rows_.Ticked(kTick);
  const PreferenceRow* current = nullptr;
  try {
    Progress::Work work(progress, static_cast<int>(ticked.size()));
    int adjusted = 0;
    for (const PreferenceRow* row : ticked) {
      current = row;
      PutOff(session_, *row, terms, to);
      work.Advance(fmt::format("{} adjusted: {}", Kind().caption, ++adjusted));
    }
  } catch (const RuntimeError& error) {
    session_.desk.ShowError(fmt::format("{} : {}", error.description(), current->employee), session_.title);
    return FillList();
  }
  Unload();
}

}  // namespace ktl
