#include "instructions/modAdvLoan.h"

#include <fmt/format.h>

#include "common/amounts.h"
#include "common/month_year.h"
#include "frame/modExternal.h"
#include "frame/number_fields.h"
#include "frame/pickers.h"
#include "frame/rights.h"
#include "frame/saved_box.h"
#include "frame/session.h"
#include "frame/top_level.h"
#include "frame/writing_buttons.h"
#include "frame/writing_turn.h"
#include "instructions/entry_lists.h"
#include "instructions/entry_questions.h"
#include "instructions/instruction_statements.h"
#include "instructions/list_columns.h"
#include "instructions/shown_rows.h"
#include "instructions/total_interest.h"
#include "instructions/type_rights.h"
#include "runtime/numbers.h"
#include "runtime/text.h"
#include "workbook/export_menu.h"

namespace ktl {

modAdvLoan::modAdvLoan(Session& session, InstructionType type)
    : Screen("modAdvLoan"),
      employee(session, *this),
      recovery(session, *this),
      formula(session, *this, fmeTransaction),
      overview(*this),
      session_(session),
      type_(type),
      on_(session, *this, ErrorStyle::NumberFirst) {
  caption = session.title;
  PlaceInFrames();
  SetKeyFilters();
  ConnectHandlers();
  ConnectPermitted();
  ConnectFormula();
}

void modAdvLoan::ConnectHandlers() {
  employee.onChosen = on_(&modAdvLoan::cmbEmpName_Change);
  chkCurrEMIEmp.onClick = on_(&modAdvLoan::chkCurrEMIEmp_Click);
  cmbALName.onChange = on_(&modAdvLoan::cmbALName_Change);
  txtSerialNo.onChange = on_(&modAdvLoan::txtSerialNo_Change);
  txtAdvDate.onLeave = on_(&modAdvLoan::txtAdvDate_LostFocus);
  AskForDate(session_, txtAdvDate);
  txtAdvAmount.onLeave = on_(&modAdvLoan::txtAdvAmount_LostFocus);
  chkSelectAll.onClick = on_([this] { schedule_.TickAllOpen(chkSelectAll.Value()); });
  fpgAdvLoan.onRowClick = on_(&modAdvLoan::fpgAdvLoan_Click);
  fpgEMI.onCellChange = on_(&modAdvLoan::fpgEMI_CellChange);
  overview.lblSummary.onClick = on_([this] { OpenEmployeeSummary(session_, employee.Employee()); });
  BindExport(session_, mnuExport, fpgEMI, [] { return ExportWords{"EMI Details", "The schedule"}; });
  mnuBulkDelete.onClick = on_([this] {
    session_.doors.bulkDelete(type_);
    RefreshAll();
  });
  fpgAdvLoan.popup = {&mnuBulkDelete};
  cmdNew.onClick = on_(&modAdvLoan::cmdNew_Click);
  cmdClose.onClick = [this] { Unload(); };
}

void modAdvLoan::ConnectPermitted() {
  on_.Permitted(cmdSave, [this] { cmdSave_Click(); });
  on_.Permitted(cmdDelete, [this] { cmdDelete_Click(); });
  on_.Permitted(cmdEMIDelete, [this] { cmdEMIDelete_Click(); });
  on_.Permitted(cmdFmeFormula, [this] { formula.Show(true); });
  on_.Permitted(cmdMaster, [this] { cmdMaster_Click(); });
  on_.Permitted(cmdInstitution, [this] { cmdInstitution_Click(); });
  on_.Permitted(cmdIntrCalc, [this] { CalculateInterest(); });
  on_.Permitted(cmdEmi, [this] { OpenOnInstruction(session_.doors.emiEditor); });
  on_.Permitted(cmdReceipts, [this] { OpenOnInstruction(session_.doors.receipts); });
  on_.Permitted(cmdMonthly, [this] { session_.doors.monthView({employee.Employee(), type_, "", this}); });
  on_.Permitted(cmdMultiAllot, [this] { cmdMultiAllot_Click(); });
  on_.Permitted(cmdReport, [this] { cmdReport_Click(); });
  on_.Permitted(cmdTDSDet, [this] { session_.doors.houseLoan(*this); });
}

void modAdvLoan::ConnectFormula() {
  formula.subject = [this]() -> std::optional<FormulaFrame::Subject> {
    if (!txtAdvDate.Text().empty()) return {{employee.Employee(), FnLngMonthYear(txtAdvDate.Text())}};
    session_.Inform("Enter " + caption_ + " Date.");
    SetFocus(txtAdvDate);
    return std::nullopt;
  };
  formula.accepted = [this](double amount) { txtAdvAmount.SetText(FormatNumber(amount, "0.00")); };
  formula.done = [this] { SetFocus(txtInterestAmt); };
}

void modAdvLoan::PlaceInFrames() {
  fmeTransaction.Hold({lblALName,      cmbALName,      cmdMaster,    lblInstitution, cmbInstitution,
                       cmdInstitution, lblLoanAccNo,   txtLoanAccNo, lblSerialNo,    txtSerialNo,
                       lblAdvDate,     txtAdvDate,     lblAdvAmount, txtAdvAmount,   cmdFmeFormula,
                       lblInterestAmt, txtInterestAmt, cmdIntrCalc,  lblRemarks,     txtRemarks,
                       cmdTDSDet});
}

void modAdvLoan::SetKeyFilters() {
  TakeAmounts({&txtAdvAmount, &txtInterestAmt});
  TakeCounts({&txtSerialNo});
  txtAdvDate.onKeyPress = clsGenCmn::DateKeyWithAlpha;
}

void modAdvLoan::Form_Load() {
  EnterTopLevel(session_, *this);
  SetCaptions();
  ShowForType();
  DescribeLists();
  session_.AdvanceMgmtYN = session_.features.On("ADVMGALYN");
  on_.Run([this] { FillLists(); });
  ApplyTypeRights(session_, *this, type_);
  formula.Show(false);
  ClearInstruction();
  ShowScheduleInputs(true);
  EnableCommands();
  SetFocus(employee.cmbEmpName);
}

void modAdvLoan::SetCaptions() {
  const bool advance = type_ == InstructionType::Advance;
  caption_ = InstructionCaption(session_, type_);
  caption = caption_ + " - " + session_.title;
  tabDetails.pages = {
      {caption_ + " N&ame"}, {"EMI Details"}, {advance ? "R&eceipts Recovered" : "D&eposits"}};
  lblALName.caption = caption_ + " Name";
  fmeTransaction.caption = caption_ + " Details";
  overview.lblAdvLoan.caption = "Total " + caption_;
  lblLoanAccNo.caption = caption_ + " A/c No.";
  overview.lblTotRcpt.caption = advance ? "Total Receipts" : "Total Deposits";
  cmdReceipts.caption = advance ? "&Receipts" : "&Deposits";
  employee.lblEmpIDRef.caption = session_.options.REFNOCAP;
}

void modAdvLoan::ShowForType() {
  for (Control* control : std::initializer_list<Control*>{&lblLoanAccNo, &txtLoanAccNo, &lblInstitution,
                                                          &cmbInstitution, &cmdInstitution})
    control->visible = type_ == InstructionType::Loan;
  cmdTDSDet.visible = false;
}

void modAdvLoan::DescribeLists() {
  instructions_.Describe(type_, caption_);
  schedule_.Describe(type_);
  receipts_.SetColumns(ReceiptColumns(type_));
  fpgReceipts.summed = kSummedReceiptColumns;
  fpgAdvLoan.title = "List of " + caption_ + "s";
  fpgReceipts.title = std::string(FactsOf(type_).receiptWord) + "s";
  lblAmountPaid.backColour = kRecoveredColour;
  lblTotalEqual.backColour = kRecoveryEqualColour;
  lblTotalNotEqual.backColour = kRecoveryUnequalColour;
  ShowComponentColumns();
}

void modAdvLoan::ShowComponentColumns() {
  schedule_.ShowColumns(session_.SepPiYN || rules_.REDUCINGBALYN, rules_.REDUCINGBALYN);
}

Subject modAdvLoan::Subject() const {
  if (serial_ == 0) return {.employee = employee.Words()};
  return {employee.Words(), fmt::format("{} {}", cmbALName.Text(), serial_), AmountWords(Totals())};
}

void modAdvLoan::FillLists() {
  FillNames();
  FillEmployeeLists();
  cmbInstitution.SetRows(ReadInstitutions(session_, type_));
  formula.FillList();
  if (session_.AdvanceMgmtYN) RefreshTotalInterest(session_);
}

void modAdvLoan::FillEmployeeLists() {
  const auto read = [this](const char* shown) {
    return chkCurrEMIEmp.Value() ? ReadEmployeesWithRunningEmi(session_, type_, shown)
                                 : ReadEmployees(session_, shown);
  };
  std::vector<ListRow> byName = read("EMPNAME");
  employee.SetPeople(std::move(byName), read("REFNO"));
}

void modAdvLoan::FillNames() { cmbALName.SetRows(ReadNames(session_, type_)); }

// Who is chosen stays, with what is typed for him, even when the narrower list does not show him.
void modAdvLoan::chkCurrEMIEmp_Click() { FillEmployeeLists(); }

// Buttons by the rights of the user and the lock of the employee.
void modAdvLoan::EnableCommands() {
  const bool writable = EnableWriting(session_, {&cmdSave, &cmdDelete, &cmdEMIDelete, &cmdMonthly, &cmdNew,
                                                 &cmdEmi, &cmdInstitution, &cmdMaster});
  EnableWriting(session_, {&cmdMultiAllot}, WriteLock::OfUser);
  cmdEmi.enabled = writable || employee.Employee() == 0;  // a read-only user loses it with the first employee
  schedule_.Lock(!writable);
  EnableInputs();
}

// Without an employee nothing can be typed; the names can be kept all the same.
void modAdvLoan::EnableInputs() {
  const bool chosen = employee.Employee() != 0;
  for (Control* input :
       std::initializer_list<Control*>{&cmbALName, &cmbInstitution, &txtLoanAccNo, &txtSerialNo, &txtAdvDate,
                                       &txtAdvAmount, &txtInterestAmt, &cmdIntrCalc, &txtRemarks})
    input->enabled = chosen;
  recovery.Enable(chosen);
  cmdFmeFormula.enabled = chosen && recovery.fmeInstallment.visible;
}

void modAdvLoan::cmbEmpName_Change() {
  formula.Show(false);
  newRecord_ = false;
  serial_ = 0;
  txtSerialNo.SetText("");
  ClearInstruction();
  ShowScheduleInputs(true);
  RefreshAll();
  session_.EmpLockStatus = 0;
  if (employee.Employee() != 0) ReadEmpLockStatus(session_, employee.Employee());
  EnableCommands();
}

void modAdvLoan::cmbALName_Change() {
  const std::string& name = cmbALName.Text();
  rules_ = {};
  if (session_.AdvanceMgmtYN) {
    rules_ = ReadNameRules(session_, type_, name);
    recovery.Propose(rules_.EMIRECCNT);
  }
  ShowHouseLoan();
  session_.SepPiYN = ReadSepPiYN(session_, type_, name);
  ShowInterestLock();
  ShowComponentColumns();
}

void modAdvLoan::ShowHouseLoan() {
  cmdTDSDet.visible = type_ == InstructionType::Loan && employee.Employee() != 0 &&
                      MayHaveHouseLoan(session_, employee.Employee(), type_, cmbALName.Text());
}

void modAdvLoan::ShowInterestLock() {
  txtInterestAmt.locked = session_.SepPiYN;
  txtInterestAmt.backColour = session_.SepPiYN ? kWindowColour : kWhite;
  if (session_.SepPiYN) txtInterestAmt.SetText("");
  if (session_.AdvanceMgmtYN && rules_.REDUCINGBALYN) {
    // Looks locked, since the schedule computes the interest, but can be typed in: the lock follows SEPPIYN
    // alone.
    txtInterestAmt.SetText("");
    txtInterestAmt.backColour = kToolTipColour;
  }
}

void modAdvLoan::txtSerialNo_Change() {
  serial_ = employee.Employee() == 0 ? 0 : TypedSerial(txtSerialNo.Text());
  if (serial_ != 0) shownRow_ = InstructionRow(session_, Key());
  const std::optional<AdvLoanDetail> detail = serial_ == 0 ? std::nullopt : ReadAdvLoan(session_, Key());
  if (detail) {
    newRecord_ = false;
    ShowInstruction(*detail);
    ShowScheduleInputs(false);
  } else if (!newRecord_) {
    ClearInstruction();
    ShowScheduleInputs(true);
    newRecord_ = serial_ > 0;
  }
  instructions_.Mark(HasInstruction() ? serial_ : 0);
  ShowHouseLoan();
  RefreshEMI();
  RefreshReceipts();
}

void modAdvLoan::ShowInstruction(const AdvLoanDetail& detail) {
  cmbALName.SetText(detail.name);
  txtLoanAccNo.SetText(detail.account);
  txtAdvDate.SetText(detail.date ? FormatDate(*detail.date, "dd/mm/yyyy") : "");
  txtAdvAmount.SetText(ShownAmount(detail.amount));
  txtInterestAmt.SetText(ShownAmount(detail.interest));
  txtRemarks.SetText(detail.remarks);
  cmbInstitution.SetText(detail.institution);
  recovery.Empty();
  formula.Forget();
  formula.Show(false);  // its amount would go over the stored one
}

// Everything but the serial number.
void modAdvLoan::ClearInstruction() {
  for (TextBox* box : {&txtLoanAccNo, &txtAdvDate, &txtAdvAmount, &txtInterestAmt, &txtRemarks})
    box->SetText("");
  cmbALName.SetText("");
  cmbInstitution.SetText("");
  recovery.Clear();
  formula.Forget();
}

// An instruction that is stored shows none of the schedule's inputs: its schedule is made once.
void modAdvLoan::ShowScheduleInputs(bool shown) {
  recovery.Show(shown);
  txtAdvAmount.locked = !shown;
  EnableInputs();
}

void modAdvLoan::txtAdvDate_LostFocus() { LeaveDate(txtAdvDate, recovery.txtRecvrFrom); }

void modAdvLoan::txtAdvAmount_LostFocus() { LeaveAmount(session_, rules_, txtAdvAmount, txtInterestAmt); }

void modAdvLoan::RefreshAll() {
  RefreshDetail();
  RefreshEMI();
  RefreshReceipts();
  UpdateOverview();
}

void modAdvLoan::RefreshDetail() {
  const long person = employee.Employee();
  instructions_.Show(person == 0 ? std::vector<AdvLoanListRow>() : ReadAdvLoanList(session_, person, type_),
                     HasInstruction() ? serial_ : 0);
}

void modAdvLoan::RefreshEMI() {
  chkSelectAll.SetValue(false);
  std::vector<ScheduleMonth> months;
  if (HasInstruction()) {
    shownSchedule_ = ScheduleRows(session_, Key());
    months = ReadSchedule(session_, Key());
  }
  if (!months.empty() && ComponentsApart()) CountComponents(session_, Key(), months);
  schedule_.Show(std::move(months));
}

void modAdvLoan::RefreshReceipts() {
  if (HasInstruction()) shownReceipts_ = ReceiptRows(session_, Key());
  receipts_.Show(HasInstruction() ? ReadReceipts(session_, Key()) : std::vector<Receipt>());
  fpgReceipts.activeRow = kNoRow;
}

void modAdvLoan::UpdateOverview() {
  const long person = employee.Employee();
  overview.Show(person == 0 ? AdvLoanTotals{} : ReadTotals(session_, person, type_));
}

long modAdvLoan::FnLngGetCounter() { return NextCounter(session_, Key()); }

void modAdvLoan::fpgAdvLoan_Click(std::size_t, std::size_t) {
  const AdvLoanListRow* const clicked = instructions_.Active();
  if (clicked == nullptr) return;
  const std::string serial = std::to_string(clicked->serial);
  if (serial == txtSerialNo.Text())
    txtSerialNo_Change();
  else
    txtSerialNo.SetText(serial);
}

void modAdvLoan::fpgEMI_CellChange(std::size_t row, std::size_t column) {
  if (column != ScheduleGrid::kRecovered) return;
  const bool recovered = fpgEMI.IsTicked(row, column);
  schedule_.ShowStored(row);  // a mark that cannot be written is not shown
  const auto mark = [&] { MarkRecovered(session_, Key(), schedule_.At(row).counter, recovered); };
  const auto months = [this] { return ScheduleRows(session_, Key()); };
  if (!WriteInTurn(session_, months, shownSchedule_, mark, [this] { ShowAnew(); })) return;
  shownSchedule_ = months();
  schedule_.SetRecovered(row, recovered);
  UpdateOverview();
}

AdvLoanEntry modAdvLoan::Entry() const {
  AdvLoanEntry entry{.key = Key(),
                     .caption = caption_,
                     .rules = rules_,
                     .newRecord = newRecord_,
                     .amountByFormula = formula.HasMonths()};
  fields_.ReadInto(entry, txtSerialNo.Text());
  return entry;
}

void modAdvLoan::cmdNew_Click() {
  if (newRecord_ && !MayLeaveNewRecord(session_, "Do you want to Save Entered Details?", cmdSave,
                                       [this] { return ValidateAndSave(); }))
    return;
  if (employee.Employee() == 0) {
    session_.Inform("Select employee.");
    SetFocus(employee.cmbEmpName);
    return;
  }
  newRecord_ = false;
  while (!newRecord_) {  // once more when another workstation stores the number between
    const std::string serial = std::to_string(NextSerial(session_, employee.Employee(), type_));
    if (txtSerialNo.Text() == serial) txtSerialNo.SetText("");
    txtSerialNo.SetText(serial);
  }
  EnableCommands();
  SetFocus(cmbALName);
}

void modAdvLoan::cmdSave_Click() {
  const bool deducted = schedule_.AnyRecovered();
  if (deducted &&
      !session_.desk.Confirm("EMI already deducted. Do you want to modify the detail ?", session_.title))
    return;
  if (!ValidateAndSave() || deducted) return;
  if (session_.SepPiYN) CalculateInterest();
  cmdNew_Click();
}

bool modAdvLoan::ValidateAndSave() {
  AdvLoanEntry entry = Entry();
  const auto ask = [this](const std::string& text, Icon icon, Answer preset) {
    return session_.desk.Confirm(text, session_.title, preset, icon);
  };
  if (const auto refusal = ValidateAdvLoan(session_, entry, ask)) return RefuseSave(*refusal);
  bool written = false;
  const auto row = [this] { return InstructionRow(session_, Key()); };
  const auto write = [&] {
    // A number that was taken meanwhile becomes the next free one.
    if (newRecord_ && row() != shownRow_) entry.key.serial = NextSerial(session_, entry.key.employee, type_);
    try {
      written = WriteAdvLoan(session_, entry);
    } catch (const RuntimeError&) {
      shownRow_ = row();  // without its schedule it is there all the same; another save is an edit of it
      throw;
    }
  };
  const std::optional<std::string> shown = newRecord_ ? std::nullopt : std::optional(shownRow_);
  if (!WriteInTurn(session_, row, shown, write, [this] { ShowAnew(); })) return false;
  // An amount of 0 or below writes nothing and says nothing.
  if (!written) return false;
  serial_ = entry.key.serial;
  AfterSave();
  return true;
}

void modAdvLoan::ShowAnew() {
  RefreshDetail();
  UpdateOverview();
  txtSerialNo_Change();
}

bool modAdvLoan::RefuseSave(const EntryRefusal& refusal) {
  std::map<EntryField, Control*> controls = fields_.ByRefusal();
  controls.emplace(EntryField::EmployeeName, &employee.cmbEmpName);
  controls.emplace(EntryField::Serial, &txtSerialNo);
  return Refuse(session_, *this, refusal, controls);
}

void modAdvLoan::AfterSave() {
  formula.Forget();
  ShowSaved(session_);
  newRecord_ = false;
  if (session_.AdvanceMgmtYN) RefreshTotalInterest(session_);
  shownRow_ = InstructionRow(session_, Key());
  if (const std::string taken = std::to_string(serial_); taken != txtSerialNo.Text())
    txtSerialNo.SetText(taken);
  RefreshDetail();
  UpdateOverview();
  FillNames();
  tabDetails.SetCurrent(0);
}

void modAdvLoan::cmdDelete_Click() {
  if (fpgAdvLoan.rows.empty()) return session_.Inform("No " + caption_ + " to delete.");
  const std::size_t row = fpgAdvLoan.activeRow;
  const auto paint = [this, row](Colour colour) {
    if (row < fpgAdvLoan.rows.size()) fpgAdvLoan.PaintRow(row, colour);
  };
  paint(kAboutToGoColour);
  const std::optional<AdvLoanDetail> detail = DetailToDelete();
  if (!detail) return paint(kWhite);
  const bool deleted = WriteInTurn(
      session_, [this] { return InstructionAndSchedule(session_, Key()) + ReceiptRows(session_, Key()); },
      shownRow_ + shownSchedule_ + shownReceipts_,
      [&] { DeleteAdvLoan(session_, Key(), *detail, cmdTDSDet.visible); }, [this] { ShowAnew(); });
  if (!deleted) return;
  serial_ = 0;
  RefreshDetail();
  UpdateOverview();
  ClearInstruction();
  cmdNew_Click();
}

// Nothing when something stands against it, which has been told.
std::optional<AdvLoanDetail> modAdvLoan::DetailToDelete() {
  if (!session_.desk.Confirm("Do you want to delete selected " + caption_ + "?", session_.title)) return {};
  if (employee.Employee() == 0) {
    session_.Inform("Select employee.");
    SetFocus(employee.cmbEmpName);
    return {};
  }
  if (!HasInstruction()) {
    session_.Inform("Select " + caption_ + " record to delete.");
    return {};
  }
  std::optional<AdvLoanDetail> detail = ReadAdvLoan(session_, Key());
  if (!detail || !ConfirmCascades()) return {};
  if (const auto refusal = FindDeleteRefusal(session_, Key(), caption_)) {
    Refuse(session_, *this, *refusal, {});
    return {};
  }
  return detail;
}

bool modAdvLoan::ConfirmCascades() {
  const auto confirmed = [this](const char* found) {
    return session_.desk.Confirm(
        fmt::format("Selected {0} has {1} will be deleted if {0} is deleted.\r\nDo you want to proceed?",
                    caption_, found),
        session_.title);
  };
  if (HasReceipts(session_, Key()) && !confirmed("receipts.  Receipts")) return false;
  return !cmdTDSDet.visible || !HasHouseLoan(session_, Key()) ||
         confirmed("house loan details.  These details");
}

void modAdvLoan::cmdEMIDelete_Click() {
  const std::vector<ScheduleMonth> deleted = MonthsToDelete();
  if (deleted.empty()) return;
  const bool written = WriteInTurn(
      session_, [this] { return ScheduleRows(session_, Key()); }, shownSchedule_,
      [&] { DeleteInstalments(deleted); }, [this] { ShowAnew(); });
  if (!written) return;
  RefreshDetail();
  RefreshEMI();
  UpdateOverview();
  fpgAdvLoan_Click(fpgAdvLoan.activeRow, 0);
}

void modAdvLoan::DeleteInstalments(const std::vector<ScheduleMonth>& deleted) {
  for (const ScheduleMonth& month : deleted) DeleteInstalment(session_, Key(), month.counter);
  const DeletedInstalments choice = AdjustAfterDelete(deleted);
  AuditDeletedInstalments(session_, Key(), cmbALName.Text(), deleted, choice);
  if (session_.SepPiYN)
    LowerTotalInterest(session_, Key(), cmbALName.Text(), SumAsShown(deleted, &ScheduleMonth::MDFINTAMT));
}

std::vector<ScheduleMonth> modAdvLoan::MonthsToDelete() {
  const std::vector<ScheduleMonth> ticked = schedule_.Ticked();
  if (ticked.empty()) {
    session_.Inform("Select EMI to delete.");
    return {};
  }
  if (!session_.desk.Confirm("Do you want to delete selected " + caption_ + " EMI Detail?", session_.title))
    return {};
  if (const auto refusal = FindMonthsRefusal(session_, employee.Employee(), ticked)) {
    Refuse(session_, *this, *refusal, {});
    return {};
  }
  return ticked;
}

// The list still shows the deleted months, ticked.
DeletedInstalments modAdvLoan::AdjustAfterDelete(const std::vector<ScheduleMonth>& deleted) {
  const std::vector<OpenMonth> open = schedule_.OpenMonths();
  if (open.empty() || session_.SepPiYN) return DeletedInstalments::NotAsked;
  const Answer answer = session_.desk.MsgBox(
      {"Do you want to Adjust the EMI Amount?\r\nClick on 'Yes' to Adjust the EMI Amount for the "
       "Months\r\nClick on 'No' to Create New Month for Recovery\r\nClick 'Cancel' to Delete with No "
       "Adjustments",
       Buttons::YesNoCancel,
       Icon::Question,
       Answer::Cancel,
       session_.title,
       0,
       {"&Yes, spread it", "&No, one new month", "&Cancel, only delete"}});
  const double amount = SumAsShown(deleted, &ScheduleMonth::EMIAMT);
  if (answer == Answer::Yes) {
    SpreadDeleted(session_, Key(), open, amount);
    return DeletedInstalments::SpreadOverOthers;
  }
  if (answer == Answer::No) {
    AddMonthAtEnd(session_, Key(), amount);
    return DeletedInstalments::NewMonth;
  }
  return DeletedInstalments::NoAdjustment;
}

void modAdvLoan::cmdMaster_Click() {
  session_.doors.instructionMaster(type_);
  FillNames();
  cmdTDSDet.visible = false;
}

void modAdvLoan::cmdInstitution_Click() {
  OpenInstitutionMaster(session_);
  cmbInstitution.SetRows(ReadInstitutions(session_, type_));
}

void modAdvLoan::cmdMultiAllot_Click() {
  session_.doors.multipleAllotment(type_);
  RegisterWindow(session_);
  if (employee.Employee() != 0) RefreshAll();
}

void modAdvLoan::OpenOnInstruction(const Door<InstructionParent&>& door) {
  const AdvLoanListRow* const listed = instructions_.Active();
  if (listed == nullptr || AsShown(listed->amount) == 0 || !HasInstruction())
    return session_.Inform("Select a " + caption_ + " record.");
  door(*this);
  RefreshAll();
}

void modAdvLoan::cmdReport_Click() {
  StartExternal(session_, {"KTLSIRep", "KestrelLedger - Reports",
                           fmt::format("{}#{}#{}#0", FactsOf(type_).report,
                                       Value(session_.ReportFlag).ToText(), session_.ReportNumber)});
}

void modAdvLoan::CalculateInterest() {
  const auto calculate = [this] {
    if (!session_.SepPiYN) return OpenInterestCalculator(session_);
    session_.doors.interestEditor(*this);
    RefreshDetail();
    RefreshEMI();
    UpdateOverview();
    ShowStoredInterest();
  };
  CalculateInterestBy(session_, calculate, txtAdvAmount, txtInterestAmt);
}

// The total that the editor has stored; the next save keeps it. What else is typed stays.
void modAdvLoan::ShowStoredInterest() {
  if (!HasInstruction()) return;
  shownRow_ = InstructionRow(session_, Key());
  if (const auto detail = ReadAdvLoan(session_, Key())) txtInterestAmt.SetText(ShownAmount(detail->interest));
}

bool modAdvLoan::Form_QueryUnload() {
  if ((!cmdSave.enabled && !cmdDelete.enabled) || !newRecord_) return true;
  return MayLeaveNewRecord(session_, "Do you want to Save entered details?", cmdSave, [this] {
    bool saved = false;  // a failure is shown and keeps the screen
    on_.Run([&] { saved = ValidateAndSave(); });
    return saved;
  });
}

void modAdvLoan::Form_Unload() { LeaveTopLevel(session_); }

}  // namespace ktl
