#include "premium/modInsGInsSSS.h"

#include <fmt/format.h>

#include <utility>

#include "common/amounts.h"
#include "common/month_year.h"
#include "frame/captions.h"
#include "frame/employee_number.h"
#include "frame/modExternal.h"
#include "frame/number_fields.h"
#include "frame/pickers.h"
#include "frame/rights.h"
#include "frame/saved_box.h"
#include "frame/session.h"
#include "frame/top_level.h"
#include "frame/writing_buttons.h"
#include "frame/writing_turn.h"
#include "instructions/advloan_data.h"
#include "instructions/advloan_entry.h"
#include "instructions/advloan_fields.h"
#include "instructions/entry_lists.h"
#include "instructions/entry_questions.h"
#include "instructions/instruction_statements.h"
#include "instructions/shown_rows.h"
#include "instructions/type_rights.h"
#include "premium/premium_write.h"
#include "runtime/numbers.h"
#include "workbook/export_menu.h"

namespace ktl {

namespace {

constexpr const char* kMonthFormat = "Jan/2005(mmm/yyyy)";
constexpr const char* kScheduleStands =
    "The schedule is made already. Its months are changed in EMI Details.";

}  // namespace

modInsGInsSSS::modInsGInsSSS(Session& session, InstructionType type)
    : Screen("modInsGInsSSS"),
      employee(session, *this),
      period(*this),
      incentive(*this, IncentiveFrame::Percent::OfWhatIsTicked),
      formula(session, *this, fmeTransaction),
      overview(*this),
      session_(session),
      type_(type),
      facts_(PremiumFactsOf(type)),
      on_(session, *this, ErrorStyle::DescriptionOnly) {
  caption = "Insurance/SSS/Group Insurance";
  PlaceInFrames();
  ConnectFields();
  ConnectButtons();
  ConnectFormula();
}

void modInsGInsSSS::PlaceInFrames() {
  fmeTransaction.Hold({lblSerialNo,       txtSerialNo,     lblPolicyName,   cmbPolicyName, cmdMaster,
                       lblPolicyNo,       txtPolicyNo,     lblStartMonth,   txtStartMonth, lblEndMonth,
                       txtEndMonth,       lblPolicyAmount, txtPolicyAmount, cmdFmeFormula, lblInstitution,
                       cmbInstitution,    cmdInstitution,  lblRemarks,      txtRemarks,    period.fmePeriod,
                       incentive.fmePFESI});
  incentive.fmePFESI.Hold({lblPFPer, lblESIPer});
}

void modInsGInsSSS::ConnectFields() {
  employee.onChosen = on_(&modInsGInsSSS::cmbEmpName_Change);
  txtSerialNo.onChange = on_(&modInsGInsSSS::txtSerialNo_Change);
  TakeCounts({&txtSerialNo});
  TakeAmounts({&txtPolicyAmount});
  for (TextBox* box : {&txtStartMonth, &txtEndMonth}) {
    box->toolTip = kMonthFormat;
    box->onKeyPress = clsGenCmn::DateKeyWithAlpha;
    box->onLeave = on_([box] { box->SetText(FnStrCorrectMonth(box->Text())); });
    AskForMonth(session_, *box);
  }
  txtPolicyAmount.onLeave = on_([this] {
    const std::string typed = txtPolicyAmount.Text();
    // More than the limit is refused by a save, as it was typed.
    if (FnBlnWithinLimit(typed, kAmountLimit) && clsGenCmn::FnDblTrimVal(typed) != 0)
      txtPolicyAmount.SetText(clsGenCmn::FnStrConvertToCommaNumber(typed, 2));
  });
  for (TextBox* box : {&incentive.txtPFPer, &incentive.txtESIPer})
    box->onLeave = on_([box] { LeavePercent(*box); });
  chkSelectAll.onClick = on_([this] { schedule_.TickAll(chkSelectAll.Value()); });
  fpgOtherDetail.onRowClick = on_(&modInsGInsSSS::fpgOtherDetail_Click);
  overview.lblSummary.onClick = on_([this] { OpenEmployeeSummary(session_, employee.Employee()); });
  BindExport(session_, mnuExport, fpgEMI, [] { return ExportWords{"EMI Details", "The schedule"}; });
}

void modInsGInsSSS::ConnectButtons() {
  cmdNew.onClick = on_(&modInsGInsSSS::cmdNew_Click);
  cmdClose.onClick = [this] { Unload(); };
  on_.Permitted(cmdSave, [this] { cmdSave_Click(); });
  on_.Permitted(cmdDelete, [this] { cmdDelete_Click(); });
  on_.Permitted(cmdEMIDelete, [this] { cmdEMIDelete_Click(); });
  on_.Permitted(cmdFmeFormula, [this] { formula.Show(true); });
  on_.Permitted(cmdMaster, [this] {
    session_.doors.instructionMaster(type_);
    FillNames();
  });
  on_.Permitted(cmdInstitution, [this] {
    OpenInstitutionMaster(session_);
    FillInstitutions();
  });
  on_.Permitted(cmdEmiDet, [this] { cmdEmiDet_Click(); });
  on_.Permitted(cmdMonthly, [this] { session_.doors.monthView({employee.Employee(), type_, "", this}); });
  on_.Permitted(cmdMultiAllot, [this] { cmdMultiAllot_Click(); });
  on_.Permitted(cmdReport, [this] { cmdReport_Click(); });
}

void modInsGInsSSS::ConnectFormula() {
  formula.subject = [this]() -> std::optional<FormulaFrame::Subject> {
    const bool atStart = formula.optStartMonth.Value();
    TextBox& box = atStart ? txtStartMonth : txtEndMonth;
    if (const long month = FnLngMonthYear(FnStrCorrectMonth(box.Text())); month != 0)
      return {{employee.Employee(), month}};
    session_.Inform(atStart ? "Enter Start Month" : "Enter End Month");
    fmeTransaction.enabled = true;  // beside the formula, for the month to be typed
    SetFocus(box);
    return std::nullopt;
  };
  formula.accepted = [this](double amount) {
    txtPolicyAmount.SetText(clsGenCmn::FnStrConvertToCommaNumber(NumberText(amount), 2));
  };
  formula.done = [this] { SetFocus(txtPolicyAmount); };
}

void modInsGInsSSS::Form_Load() {
  EnterTopLevel(session_, *this);
  ApplyTypeRights(session_, *this, type_);
  SetCaptions();
  ShowForType();
  on_.Run([this] { FillLists(); });
  ClearInstruction();
  EnableCommands();
  SetFocus(employee.cmbEmpName);
}

void modInsGInsSSS::SetCaptions() {
  LoadTypeCaptions(session_);
  caption_ = session_.captions.types[NumberOf(type_)];
  caption = caption_;
  fmeTransaction.caption = caption_ + " Details";
  lblPolicyName.caption = caption_ + " Name";
  lblPolicyNo.caption = caption_ + " No.";
  overview.lblOthTotal.caption = facts_.totalsByWord ? "Total \r\n" + caption_ : "Total Premium";
  overview.lblTotalDedSalary.caption = IsIncentive() ? "Paid in Salary" : "Deducted in Salary";
  employee.lblEmpIDRef.caption = NumberingOf(session_).caption;
  lblPaymentDone.backColour = kPaymentDoneColour;
}

void modInsGInsSSS::ShowForType() {
  for (Control* control : std::initializer_list<Control*>{&lblPolicyNo, &txtPolicyNo, &lblInstitution,
                                                          &cmbInstitution, &cmdInstitution})
    control->visible = !IsIncentive();
  incentive.fmePFESI.visible = IsIncentive();
  period.fmePeriod.visible = facts_.hasPeriod;
  premiums_.Describe(type_, caption_);
  schedule_.Describe(type_);
}

void modInsGInsSSS::FillLists() {
  FillNames();
  FillInstitutions();
  formula.FillList();
  std::vector<ListRow> byName = ReadEmployees(session_, "EMPNAME", "EMPNAME, EMPID");
  employee.SetPeople(std::move(byName), ReadEmployees(session_, NumberingOf(session_).column));
}

void modInsGInsSSS::FillNames() { cmbPolicyName.SetRows(ReadNames(session_, type_)); }

void modInsGInsSSS::FillInstitutions() {
  if (!IsIncentive()) cmbInstitution.SetRows(ReadInstitutions(session_, type_));
}

// Buttons by the rights of the user and the lock of the employee; without an employee nothing can be typed.
void modInsGInsSSS::EnableCommands() {
  schedule_.Lock(!EnableWriting(session_, {&cmdSave, &cmdDelete, &cmdEMIDelete}));
  EnableWriting(session_, {&cmdMultiAllot}, WriteLock::OfUser);
  if (!facts_.mayAllot) {
    cmdMultiAllot.enabled = false;
    cmdMultiAllot.whyDisabled = caption_ + " is given to one employee at a time.";
  }
  const bool chosen = employee.Employee() != 0;
  for (Control* input : std::initializer_list<Control*>{
           &txtSerialNo, &cmbPolicyName, &txtPolicyNo, &txtStartMonth, &txtEndMonth, &txtPolicyAmount,
           &cmdFmeFormula, &cmbInstitution, &txtRemarks, &period.fmePeriod, &incentive.fmePFESI})
    input->enabled = chosen;
}

void modInsGInsSSS::cmbEmpName_Change() {
  const long person = employee.Employee();
  session_.EmpLockStatus = 0;
  txtSerialNo.SetText("");
  ClearInstruction();
  if (person != 0) {
    ReadEmpLockStatus(session_, person);
    if (IsIncentive()) incentive.Allow(ReadFundSwitches(session_, person));
  }
  EnableCommands();
  RefreshAll();
  if (person != 0) txtSerialNo.SetText(std::to_string(NextSerial(session_, person, type_)));
}

void modInsGInsSSS::txtSerialNo_Change() {
  serial_ = employee.Employee() == 0 ? 0 : TypedSerial(txtSerialNo.Text());
  shownRow_ = serial_ == 0 ? "" : InstructionRow(session_, Key());
  const auto premium = serial_ == 0 ? std::nullopt : ReadPremium(session_, Key());
  const bool wasStored = std::exchange(stored_, premium.has_value());
  RefreshEMI();
  if (premium) {
    ShowInstruction(*premium);
  } else if (wasStored) {
    ClearInstruction();
  }
  TellScheduleStands();
  premiums_.Mark(stored_ ? serial_ : 0);
}

void modInsGInsSSS::ShowInstruction(const PremiumRow& premium) {
  cmbPolicyName.SetText(premium.name);
  txtPolicyNo.SetText(premium.number);
  txtStartMonth.SetText(FnStrFormatMonthYear(premium.firstMonth));
  txtEndMonth.SetText(FnStrFormatMonthYear(premium.lastMonth));
  txtPolicyAmount.SetText("");
  cmbInstitution.SetText(schedule_.Months().empty() ? "" : schedule_.Months().front().institution);
  txtRemarks.SetText(premium.remarks);
  period.Show(PeriodOf(ReadScheduleMonths(session_, Key())));
  incentive.Show(premium);
  CloseFormula();
  shownFields_ = Typed();
}

// Everything but the serial number.
void modInsGInsSSS::ClearInstruction() {
  for (TextBox* box : {&txtPolicyNo, &txtStartMonth, &txtEndMonth, &txtPolicyAmount, &txtRemarks})
    box->SetText("");
  cmbPolicyName.SetText("");
  cmbInstitution.SetText("");
  period.Clear();
  incentive.Clear();
  CloseFormula();
  shownFields_ = Typed();
}

void modInsGInsSSS::CloseFormula() {
  formula.Forget();
  formula.Show(false);
}

// What makes a schedule can be typed for a stored instruction too, and changes nothing there.
void modInsGInsSSS::TellScheduleStands() {
  for (Control* control :
       std::initializer_list<Control*>{&txtPolicyAmount, &cmbInstitution, &period.fmePeriod})
    control->toolTip = stored_ ? kScheduleStands : "";
}

TypedPremium modInsGInsSSS::Typed() const {
  return {.name = cmbPolicyName.Text(),
          .number = txtPolicyNo.Text(),
          .startMonth = txtStartMonth.Text(),
          .endMonth = txtEndMonth.Text(),
          .amount = txtPolicyAmount.Text(),
          .institution = cmbInstitution.Text(),
          .remarks = txtRemarks.Text(),
          .period = period.Chosen(),
          .shares = incentive.Typed()};
}

void modInsGInsSSS::RefreshAll() {
  RefreshDetail();
  RefreshEMI();
  UpdateOverview();
}

void modInsGInsSSS::RefreshDetail() {
  const long person = employee.Employee();
  premiums_.Show(person == 0 ? std::vector<PremiumListRow>() : ReadPremiumList(session_, person, type_),
                 stored_ ? serial_ : 0);
}

void modInsGInsSSS::RefreshEMI() {
  chkSelectAll.SetValue(false);
  shownSchedule_ = stored_ ? ScheduleRows(session_, Key()) : "";
  schedule_.Show(stored_ ? ReadPremiumSchedule(session_, Key()) : std::vector<ScheduleMonth>());
}

void modInsGInsSSS::UpdateOverview() {
  const long person = employee.Employee();
  overview.Show(person == 0 ? PremiumTotals{} : ReadPremiumTotals(session_, person, type_));
}

long modInsGInsSSS::FnLngGetCounter() { return NextCounter(session_, Key()); }

InstructionTotals modInsGInsSSS::Totals() const {
  InstructionTotals totals;
  for (const ScheduleMonth& month : schedule_.Months()) {
    totals.emi += month.MDFYAMT.value_or(0);
    if (month.recoveredBySalary) totals.recovered += month.MDFYAMT.value_or(0);
  }
  totals.amount = totals.emi;
  return totals;
}

Subject modInsGInsSSS::Subject() const {
  if (!stored_) return {.employee = employee.Words()};
  return {employee.Words(), fmt::format("{} {}", cmbPolicyName.Text(), serial_), AmountWords(Totals())};
}

void modInsGInsSSS::fpgOtherDetail_Click(std::size_t, std::size_t) {
  const PremiumListRow* const clicked = premiums_.Active();
  if (clicked == nullptr) return;
  const std::string serial = std::to_string(clicked->serial);
  if (serial == txtSerialNo.Text())
    txtSerialNo_Change();
  else
    txtSerialNo.SetText(serial);
}

bool modInsGInsSSS::MayLeave() {
  return !HasChanged() ||
         MayLeaveNewRecord(session_, "Do you want to Save entered details?", cmdSave, [this] {
           bool saved = false;  // a failure is shown and keeps what was typed
           on_.Run([&] { saved = ValidateAndSave(); });
           return saved;
         });
}

void modInsGInsSSS::cmdNew_Click() {
  if (!MayLeave()) return;
  if (employee.Employee() == 0) {
    session_.Inform("Select employee.");
    SetFocus(employee.cmbEmpName);
    return;
  }
  BeginNew();
  SetFocus(cmbPolicyName);
}

void modInsGInsSSS::BeginNew() {
  txtSerialNo.SetText("");
  ClearInstruction();
  txtSerialNo.SetText(std::to_string(NextSerial(session_, employee.Employee(), type_)));
}

PremiumEntry modInsGInsSSS::Entry() const {
  PremiumEntry entry{
      .key = Key(), .isNew = !stored_, .caption = caption_, .institution = ChosenInstitution(cmbInstitution)};
  entry.ReadTyped(Typed());
  return entry;
}

void modInsGInsSSS::cmdSave_Click() { ValidateAndSave(); }

bool modInsGInsSSS::ValidateAndSave() {
  PremiumEntry entry = Entry();
  if (const auto refusal = ValidatePremium(session_, entry)) {
    return Refuse(session_, *this, *refusal,
                  {{PremiumField::EmployeeName, &employee.cmbEmpName},
                   {PremiumField::Serial, &txtSerialNo},
                   {PremiumField::Name, &cmbPolicyName},
                   {PremiumField::Number, &txtPolicyNo},
                   {PremiumField::StartMonth, &txtStartMonth},
                   {PremiumField::EndMonth, &txtEndMonth},
                   {PremiumField::PfPercent, &incentive.txtPFPer},
                   {PremiumField::EsiPercent, &incentive.txtESIPer},
                   {PremiumField::Amount, &txtPolicyAmount},
                   {PremiumField::Institution, &cmbInstitution},
                   {PremiumField::Remarks, &txtRemarks}});
  }
  if (!WriteEntry(entry)) return false;
  ShowSaved(session_);
  BeginNew();
  RefreshAll();
  return true;
}

bool modInsGInsSSS::WriteEntry(PremiumEntry& entry) {
  const auto row = [this] { return InstructionRow(session_, Key()); };
  const auto write = [&] {
    // A number that was taken meanwhile becomes the next free one.
    if (!stored_ && row() != shownRow_) entry.key.serial = NextSerial(session_, entry.key.employee, type_);
    WritePremium(session_, entry);
  };
  try {
    return WriteInTurn(
        session_, row, stored_ ? std::optional(shownRow_) : std::nullopt, write, [this] { ShowAnew(); },
        TurnFailed::TakesAllBack);
  } catch (const DatabaseError& error) {
    if (error.number() != kWrongTypeError) throw;
    session_.desk.ShowError("Specified amount is too large.", session_.title);
    return false;
  }
}

void modInsGInsSSS::ShowAnew() {
  RefreshDetail();
  UpdateOverview();
  txtSerialNo_Change();
}

void modInsGInsSSS::cmdDelete_Click() {
  if (fpgOtherDetail.rows.empty()) return session_.Inform("No records to delete.");
  if (employee.Employee() == 0) {
    session_.Inform("Select employee.");
    return SetFocus(employee.cmbEmpName);
  }
  const PremiumListRow* const picked = premiums_.Active();
  if (picked == nullptr || !stored_) return session_.Inform("Select " + caption_ + " record to delete.");
  if (!session_.desk.Confirm("Delete selected " + caption_ + "?", session_.title)) return;
  if (const auto refusal = FindDeleteRefusal(session_, Key(), caption_)) {
    std::set<long> locked;
    for (const ScheduleMonth& month : schedule_.Months())
      if (IsMonthLocked(session_, month.monthYear)) locked.insert(month.monthYear);
    schedule_.Tick(locked);
    Refuse(session_, *this, *refusal, {});
    return;
  }
  const bool deleted = WriteInTurn(
      session_, [this] { return InstructionAndSchedule(session_, Key()); }, shownRow_ + shownSchedule_,
      [&] { DeletePremium(session_, Key(), caption_); }, [this] { ShowAnew(); });
  if (!deleted) return;
  BeginNew();
  RefreshAll();
}

void modInsGInsSSS::cmdEMIDelete_Click() {
  const std::vector<ScheduleMonth> ticked = schedule_.Ticked();
  if (ticked.empty()) return session_.Inform("Select payment to delete.");
  if (!session_.desk.Confirm("Do you want to delete selected " + caption_ + " payment detail?",
                             session_.title))
    return;
  DeletedMonths outcome;
  const bool written = WriteInTurn(
      session_, [this] { return ScheduleRows(session_, Key()); }, shownSchedule_,
      [&] { outcome = DeletePremiumMonths(session_, Key(), caption_, ticked); }, [this] { ShowAnew(); });
  if (!written) return;
  RefreshAll();
  if (outcome.employeeLocked) {
    session_.desk.MsgBox({.text = "Employee has been locked. Cannot Delete.",
                          .icon = Icon::Exclamation,
                          .title = kDeniedTitle});
  }
  if (!outcome.locked.empty()) {
    session_.Inform(outcome.locked +
                    " month(s) are locked.\r\nEMI details for these months will not be deleted.");
  }
}

void modInsGInsSSS::cmdEmiDet_Click() {
  if (premiums_.Active() == nullptr || !stored_) return session_.Inform("Select a " + caption_ + " record.");
  session_.doors.emiEditor(*this);
  RefreshAll();
}

void modInsGInsSSS::cmdMultiAllot_Click() {
  session_.doors.multipleAllotment(type_);
  RegisterWindow(session_);
  if (employee.Employee() == 0) return;
  RefreshAll();
  // The number proposed may have been taken there.
  if (!stored_ && !HasChanged()) BeginNew();
}

void modInsGInsSSS::cmdReport_Click() {
  StartExternal(session_, {"KTLSIRep", "KestrelLedger - Reports",
                           fmt::format("{}#{}#{}#0", FactsOf(type_).report,
                                       Value(session_.ReportFlag).ToText(), session_.ReportNumber)});
}

bool modInsGInsSSS::Form_QueryUnload() { return MayLeave(); }

void modInsGInsSSS::Form_Unload() { LeaveTopLevel(session_); }

}  // namespace ktl
