#include "instructions/modMultiAllot.h"

#include <fmt/format.h>

#include <algorithm>
#include <set>

#include "common/amounts.h"
#include "common/month_year.h"
#include "frame/handler_guard.h"
#include "frame/modExternal.h"
#include "frame/number_fields.h"
#include "frame/pickers.h"
#include "frame/saved_box.h"
#include "frame/session.h"
#include "frame/writing_buttons.h"
#include "instructions/advloan_write.h"
#include "instructions/entry_lists.h"
#include "instructions/type_rights.h"
#include "runtime/numbers.h"
#include "runtime/text.h"
#include "workbook/export_menu.h"

namespace ktl {

namespace {

constexpr std::size_t kMostNotesInBox = 15;

void LeaveMonth(TextBox& box) { box.SetText(FnStrCorrectMonth(box.Text())); }

}  // namespace

modMultiAllot::modMultiAllot(Session& session, InstructionType type)
    : Screen("modMultiAllot"),
      recovery(session, *this),
      period(*this),
      incentive(*this, IncentiveFrame::Percent::Always),
      formula(session, *this, fmeAmountDet,
              {"fmeFormula", "lblFormula", "cmbFormula", "cmdAdvFormulate", "cmdAccept", "cmdFrmlaClose"}),
      premiumFormula(session, *this, fmeGIDet,
                     {"fmePFormula", "lblPFormula", "cmbPFormula", "cmdPAdvanceFormula", "cmdPAccept",
                      "cmdPFrmlaClose"}),
      progress(session.desk, *this),
      session_(session),
      type_(type),
      ticks_(TickRowsOf(lstEmployee),
             {.all = &chkSelEmployee, .listed = &lblListed, .selected = &lblSelected}) {
  lstEmployee.withTicks = true;
  PlaceInFrames();
  SetKeyFilters();
  ConnectHandlers();
  ConnectFormulas();
  ConnectPermitted();
}

void modMultiAllot::PlaceInFrames() {
  fmeEmployee.Hold({chkSelEmployee, cmdFilter, lstEmployee, lblListed, lblSelected});
  fmeLoanDet.Hold({lblInstitution, cmbInstitution, cmdInstitution, lblLoanAccNo, txtLoanAccNo});
  fmeAmountDet.Hold({lblAdvDate, txtAdvDate, lblAdvAmount, txtAdvAmount, cmdFmeFormula, lblInterestAmt,
                     txtInterestAmt, cmdIntrCalc, recovery.fmeInstallment, recovery.fmeInstallmentRoundOff});
  fmeGIDet.Hold({lblStartMonth, txtStartMonth, lblEndMonth, txtEndMonth, lblPolicyAmount, txtPolicyAmount,
                 cmdPFormula});
  formula.frame.Hold({lblMonths, txtMonths});
  premiumFormula.frame.Hold({optStartMonth, optEndMonth});
}

void modMultiAllot::SetKeyFilters() {
  TakeAmounts({&txtAdvAmount, &txtInterestAmt, &txtPolicyAmount});
  TakeCounts({&txtMonths});
  for (TextBox* box : {&txtAdvDate, &txtStartMonth, &txtEndMonth})
    box->onKeyPress = clsGenCmn::DateKeyWithAlpha;
  for (TextBox* box : {&txtStartMonth, &txtEndMonth}) {
    AskForMonth(session_, *box);
    box->onLeave = [box] { LeaveMonth(*box); };
  }
  AskForDate(session_, txtAdvDate);
}

void modMultiAllot::ConnectHandlers() {
  const HandlerGuard on(session_, *this, ErrorStyle::NumberFirst);
  lstEmployee.onTick = [this](std::size_t) { ticks_.Count(); };
  cmbSIName.onChange = on(&modMultiAllot::cmbSIName_Change);
  txtAdvDate.onLeave = on([this] { LeaveDate(txtAdvDate, recovery.txtRecvrFrom); });
  txtAdvAmount.onLeave = on([this] { LeaveAmount(session_, rules_, txtAdvAmount, txtInterestAmt); });
  for (TextBox* box : {&txtInterestAmt, &txtPolicyAmount})
    box->onLeave = on([box] { box->SetText(clsGenCmn::FnStrConvertToNumber(box->Text(), 2)); });
  for (TextBox* box : {&incentive.txtPFPer, &incentive.txtESIPer})
    box->onLeave = on([box] { LeavePercent(*box); });
  cmdIntrCalc.onClick = on([this] {
    CalculateInterestBy(
        session_, [this] { OpenInterestCalculator(session_); }, txtAdvAmount, txtInterestAmt);
  });
  cmdClose.onClick = [this] { Unload(); };
  BindExport(session_, mnuExport, fpgNotes, [this] { return ExportWords{"Not allotted", "The list"}; });
}

void modMultiAllot::ConnectFormulas() {
  formula.further = [this](KeptFormula& kept) {
    if (txtMonths.Text().empty()) return formula.Refuse("Enter 'Number of Months'.", txtMonths);
    kept.months = clsGenCmn::FnDblTrimVal(txtMonths.Text());
    return true;
  };
  formula.done = [this] {
    ShowFormulaKept();
    SetFocus(txtInterestAmt);
  };
  premiumFormula.further = [](KeptFormula&) { return true; };
  premiumFormula.done = [this] {
    ShowFormulaKept();
    SetFocus(txtPolicyAmount);
  };
}

void modMultiAllot::ConnectPermitted() {
  const HandlerGuard on(session_, *this, ErrorStyle::NumberFirst);
  on.Permitted(cmdFilter, [this] { cmdFilter_Click(); });
  on.Permitted(cmdSave, [this] { cmdSave_Click(); });
  on.Permitted(cmdFmeFormula, [this] { formula.Show(true); });
  on.Permitted(cmdPFormula, [this] { premiumFormula.Show(true); });
  on.Permitted(cmdMaster, [this] {
    session_.doors.instructionMaster(type_);
    FillNames();
  });
  on.Permitted(cmdInstitution, [this] {
    OpenInstitutionMaster(session_);
    FillInstitutions();
  });
}

void modMultiAllot::Form_Load() {
  SetCaptions();
  ShowForType();
  notes_.SetColumns({{{"Employee", CellType::Text, 220},
                      [this](const AllotmentNote& note) { return WordsOf(note.employee); }},
                     {{"Why", CellType::Text, 420}, &AllotmentNote::why}});
  RunGuarded(session_, ErrorStyle::NumberFirst, "", [this] {
    FillEmployees();
    FillNames();
    FillInstitutions();
    formula.FillList();
    premiumFormula.FillList();
  });
  ApplyTypeRights(session_, *this, type_);
  EnableWriting(session_, {&cmdSave, &cmdMaster, &cmdInstitution}, WriteLock::OfUser);
  ClearFields();
  SetFocus(cmbSIName);
}

void modMultiAllot::SetCaptions() {
  caption_ = InstructionCaption(session_, type_);
  if (caption_.empty()) caption_ = FactsOf(type_).word;
  caption = caption_ + " - Multiple Allotment";
  lblSIName.caption = caption_ + " Name";
  fmeAmountDet.caption = fmeGIDet.caption = fmeLoanDet.caption = caption_ + " Details";
  lblLoanAccNo.caption = caption_ + (type_ == InstructionType::Loan ? " A/c No." : " No.");
  recovery.optNearOneRupee.caption = "Higher 1 Re.";
  recovery.optNearTenRupee.caption = "Higher 10 Rs.";
  recovery.optNearFiftyRupee.caption = "Higher 50 Rs.";
}

void modMultiAllot::ShowForType() {
  const bool advLoan = IsAdvanceOrLoan(type_);
  fmeLoanDet.visible = type_ == InstructionType::Loan || type_ == InstructionType::GroupInsurance;
  fmeAmountDet.visible = advLoan;
  fmeGIDet.visible = !advLoan;
  period.fmePeriod.visible = type_ == InstructionType::GroupInsurance;
  incentive.fmePFESI.visible = type_ == InstructionType::Incentive;
  formula.frame.visible = premiumFormula.frame.visible = false;
  fpgNotes.visible = false;
  recovery.Show(true);
}

// Who is listed before and after stays ticked.
void modMultiAllot::FillEmployees() {
  std::set<std::string> ticked;
  for (const TickRow& row : lstEmployee.rows)
    if (row.ticked) ticked.insert(row.value);
  lstEmployee.rows = ReadEmployeesToAllot(session_);
  for (TickRow& row : lstEmployee.rows) row.ticked = ticked.contains(row.value);
  ticks_.Count();
}

void modMultiAllot::FillNames() { cmbSIName.SetRows(ReadNamesToAllot(session_, type_)); }

void modMultiAllot::FillInstitutions() { cmbInstitution.SetRows(ReadInstitutions(session_, type_)); }

void modMultiAllot::cmdFilter_Click() {
  const bool before = session_.FilterYN;
  OpenFilter(session_, *this);
  if (before || session_.FilterYN) FillEmployees();
}

void modMultiAllot::cmbSIName_Change() {
  rules_ = {};
  if (!session_.AdvanceMgmtYN || !IsAdvanceOrLoan(type_)) return;
  rules_ = ReadNameRules(session_, type_, cmbSIName.Text());
  recovery.Propose(rules_.EMIRECCNT);
}

void modMultiAllot::ClearFields() {
  for (TextBox* box : {&txtLoanAccNo, &txtAdvDate, &txtAdvAmount, &txtInterestAmt, &txtStartMonth,
                       &txtEndMonth, &txtPolicyAmount, &txtRemarks, &txtMonths})
    box->SetText("");
  cmbSIName.SetText("");
  cmbInstitution.SetText("");
  recovery.Clear();
  period.Clear();
  incentive.Clear();
  optStartMonth.SetValue(true);
  formula.Forget();
  premiumFormula.Forget();
  ShowFormulaKept();
}

void modMultiAllot::ShowFormulaKept() {
  const KeptFormula& kept = IsAdvanceOrLoan(type_) ? formula.Kept() : premiumFormula.Kept();
  lblFormulaKept.visible = kept.IsSet();
  if (!kept.IsSet()) return;
  lblFormulaKept.caption = "Amount by the formula " + kept.name;
  if (IsAdvanceOrLoan(type_)) lblFormulaKept.caption += fmt::format(", {} month(s)", NumberText(kept.months));
}

std::vector<long> modMultiAllot::TickedEmployees() const {
  std::vector<long> employees;
  for (const std::size_t row : ticks_.Ticked())
    employees.push_back(static_cast<long>(Val(lstEmployee.rows[row].value)));
  return employees;
}

AdvLoanEntry modMultiAllot::Entry() const {
  AdvLoanEntry entry{.key = {.type = type_},
                     .caption = caption_,
                     .rules = rules_,
                     .newRecord = true,
                     .amountByFormula = formula.Kept().IsSet()};
  fields_.ReadInto(entry);
  return entry;
}

PremiumAllotment modMultiAllot::Premium() const {
  PremiumAllotment premium{.type = type_,
                           .caption = caption_,
                           .institution = ChosenInstitution(cmbInstitution),
                           .institutionName = cmbInstitution.Text(),
                           .amountByFormula = premiumFormula.Kept().IsSet(),
                           .period = period.Chosen()};
  premium.ReadTyped({.name = cmbSIName.Text(),
                     .number = txtLoanAccNo.Text(),
                     .startMonth = txtStartMonth.Text(),
                     .endMonth = txtEndMonth.Text(),
                     .amount = txtPolicyAmount.Text(),
                     .remarks = txtRemarks.Text(),
                     .shares = incentive.Typed()});
  return premium;
}

bool modMultiAllot::RefusePremium(const PremiumAllotRefusal& refusal) {
  return Refuse(session_, *this, refusal,
                {{PremiumAllotField::Name, &cmbSIName},
                 {PremiumAllotField::Number, &txtLoanAccNo},
                 {PremiumAllotField::StartMonth, &txtStartMonth},
                 {PremiumAllotField::EndMonth, &txtEndMonth},
                 {PremiumAllotField::Amount, &txtPolicyAmount},
                 {PremiumAllotField::PfPercent, &incentive.txtPFPer},
                 {PremiumAllotField::EsiPercent, &incentive.txtESIPer},
                 {PremiumAllotField::Institution, &cmbInstitution},
                 {PremiumAllotField::Remarks, &txtRemarks}});
}

void modMultiAllot::cmdSave_Click() {
  const std::vector<long> employees = TickedEmployees();
  if (employees.empty()) {
    session_.Inform("Select employee(s).");
    return SetFocus(lstEmployee);
  }
  if (IsAdvanceOrLoan(type_) ? AllotAdvLoan(employees) : AllotPremium(employees)) AfterSave();
}

bool modMultiAllot::AllotAdvLoan(const std::vector<long>& employees) {
  AdvLoanEntry entry = Entry();
  const auto ask = [this](const std::string& text, Icon icon, Answer preset) {
    return session_.desk.Confirm(text, session_.title, preset, icon);
  };
  if (const auto refusal = ValidateAllotment(session_, entry, employees, ask))
    return Refuse(session_, *this, *refusal, fields_.ByRefusal());
  const KeptFormula& kept = formula.Kept();
  const double typed = entry.amount;
  return Allot(employees, {.serviceDay = *entry.date,
                           .notInService = "is not within the Date of Join and Date of Leave.",
                           .terms = {typed, kept, kept.months, MonthYearOf(*entry.date)},
                           .give = [this, entry](long employee, double amount) mutable {
                             entry.key = {employee, type_, NextSerial(session_, employee, type_)};
                             entry.amount = amount;
                             WriteAllotted(session_, entry);
                           }});
}

bool modMultiAllot::AllotPremium(const std::vector<long>& employees) {
  const PremiumAllotment premium = Premium();
  if (const auto refusal = ValidatePremiumAllotment(session_, premium, employees))
    return RefusePremium(*refusal);
  return Allot(employees, {.serviceDay = FirstDayOf(premium.firstMonth),
                           .notInService = "is not later than the Date of Join.",
                           .terms = {premium.amount, premiumFormula.Kept(), 1,
                                     optEndMonth.Value() ? premium.lastMonth : premium.firstMonth},
                           .give =
                               [this, premium](long employee, double amount) {
                                 WriteAllottedPremium(session_, premium, employee, amount);
                               },
                           .lastCheck =
                               [this, premium] {
                                 const auto refusal = CheckPremiumInstitution(premium);
                                 return !refusal || RefusePremium(*refusal);
                               }});
}

bool modMultiAllot::AcceptsService(const std::vector<long>& employees, const std::vector<long>& accepted,
                                   const Allotment& allotment) {
  const bool premium = !IsAdvanceOrLoan(type_);
  const std::string what = LowerCase(caption_) + (premium ? " 'Start Month'" : " date");
  if (accepted.empty()) {
    session_.Inform(fmt::format("Specified {} for selected employee(s) {}", what, allotment.notInService));
    SetFocus(premium ? txtStartMonth : txtAdvDate);
    return false;
  }
  const std::size_t refused = employees.size() - accepted.size();
  return refused == 0 ||
         session_.desk.Confirm(
             fmt::format("Specified {} for {} employee(s) {}\r\n{} for these employee(s) will "
                         "not be saved.\r\nDo you want to continue?",
                         what, refused, allotment.notInService, caption_),
             session_.title);
}

bool modMultiAllot::Allot(const std::vector<long>& employees, const Allotment& allotment) {
  const std::vector<long> accepted = InService(session_, employees, allotment.serviceDay);
  if (!AcceptsService(employees, accepted, allotment)) return false;
  if (allotment.lastCheck && !allotment.lastCheck()) return false;
  Progress::Work work(progress, static_cast<int>(accepted.size()));
  AllottedAmounts amounts(session_, allotment.terms, accepted, [&](std::size_t reckoned) {
    work.Say(fmt::format("Formula: {} of {} employees", reckoned, accepted.size()));
  });
  int done = 0;
  std::vector<AllotmentNote> notes = AllotToEach(session_, accepted, amounts, allotment.give, [&] {
    work.Advance(fmt::format("{} of {} employees", ++done, accepted.size()));
  });
  const std::set<long> inService(accepted.begin(), accepted.end());
  for (const long employee : employees)
    if (!inService.contains(employee)) notes.push_back({employee, "not in service"});
  notes_.Show(std::move(notes));
  return true;
}

void modMultiAllot::AfterSave() {
  formula.Forget();
  premiumFormula.Forget();
  ShowSaved(session_);
  TellNotes();
  ClearFields();
  SetFocus(cmbSIName);
}

std::string modMultiAllot::WordsOf(long employee) const {
  const auto row = std::ranges::find(lstEmployee.rows, std::to_string(employee), &TickRow::value);
  return row == lstEmployee.rows.end() ? std::to_string(employee) : row->text;
}

// The box tells the first of them; the list, which can be exported, all.
void modMultiAllot::TellNotes() {
  const std::vector<AllotmentNote>& notes = notes_.Rows();
  fpgNotes.visible = !notes.empty();
  if (notes.empty()) return;
  std::string text = fmt::format("{} of the selected employee(s) to look at:", notes.size());
  for (std::size_t each = 0; each < std::min(notes.size(), kMostNotesInBox); ++each)
    text += fmt::format("\r\n{}: {}", WordsOf(notes[each].employee), notes[each].why);
  if (notes.size() > kMostNotesInBox) text += fmt::format("\r\nand {} more", notes.size() - kMostNotesInBox);
  session_.desk.Warn(text, session_.title);
}

}  // namespace ktl
