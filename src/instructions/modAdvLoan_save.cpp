// What the entry of advances and loans does to the database: a new record, saving, the two deletes.
#include <fmt/format.h>

#include "common/amounts.h"
#include "common/month_year.h"
#include "frame/rights.h"
#include "frame/saved_box.h"
#include "frame/session.h"
#include "instructions/instruction_statements.h"
#include "instructions/modAdvLoan.h"
#include "instructions/total_interest.h"
#include "runtime/numbers.h"

namespace ktl {

namespace {

constexpr Colour kAboutToGoColour = 0xFFE0E0;
constexpr const char* kNoLaterLock = "36000";

}  // namespace

AdvLoanEntry modAdvLoan::Entry() const {
  AdvLoanEntry entry;
  entry.key = Key();
  entry.caption = caption_;
  entry.serialText = txtSerialNo.Text();
  entry.name = cmbALName.Text();
  entry.institution = cmbInstitution.BoundText();
  entry.account = txtLoanAccNo.Text();
  entry.date = txtAdvDate.Text();
  entry.amount = txtAdvAmount.Text();
  entry.interest = txtInterestAmt.Text();
  entry.remarks = txtRemarks.Text();
  entry.noRecovery = chkNoRecovery.Value();
  entry.lumpSum = optInstlLumpSum.Value();
  entry.instalment = txtInstlAmt.Text();
  entry.count = txtNoOfInstlmnts.Text();
  entry.rounding = optNearTenRupee.Value()     ? InstalmentRounding::NearTenRupee
                   : optNearFiftyRupee.Value() ? InstalmentRounding::NearFiftyRupee
                   : optRoundNone.Value()      ? InstalmentRounding::None
                                               : InstalmentRounding::NearOneRupee;
  entry.recoverFrom = txtRecvrFrom.Text();
  entry.newRecord = newRecord_;
  entry.amountByFormula = formulaMonths_ != 0;
  entry.rules = rules_;
  return entry;
}

Control* modAdvLoan::FieldOf(EntryField field) {
  switch (field) {
    case EntryField::EmployeeName:
      return &cmbEmpName;
    case EntryField::Name:
      return &cmbALName;
    case EntryField::Institution:
      return &cmbInstitution;
    case EntryField::Account:
      return &txtLoanAccNo;
    case EntryField::Serial:
      return &txtSerialNo;
    case EntryField::Date:
      return &txtAdvDate;
    case EntryField::Amount:
      return &txtAdvAmount;
    case EntryField::Interest:
      return &txtInterestAmt;
    case EntryField::Instalment:
      return &txtInstlAmt;
    case EntryField::Count:
      return &txtNoOfInstlmnts;
    case EntryField::RecoverFrom:
      return &txtRecvrFrom;
    case EntryField::None:
      break;
  }
  return nullptr;
}

bool modAdvLoan::Refuse(const Refusal& refusal) {
  if (!refusal.text.empty()) {
    session_.desk.Inform(refusal.text, refusal.title.empty() ? session_.title : refusal.title);
  }
  if (Control* field = FieldOf(refusal.focus)) SetFocus(*field);
  return false;
}

void modAdvLoan::cmdNew_Click() {
  if (newRecord_) {
    const Answer answer = session_.desk.MsgBox({"Do you want to Save Entered Details?", Buttons::YesNoCancel,
                                                Icon::Question, Answer::Yes, session_.title});
    if (answer == Answer::Cancel || (answer == Answer::Yes && !ValidateAndSave())) return;
  }
  if (employee_ == 0) {
    session_.Inform("Select employee.");
    SetFocus(cmbEmpName);
    return;
  }
  newRecord_ = false;
  const std::string serial = std::to_string(NextSerial(session_, employee_));
  if (txtSerialNo.Text() == serial) txtSerialNo.SetText("");
  txtSerialNo.SetText(serial);
  fpgAdvLoan.activeRow = kNoRow;
  EnableCommands();
  SetFocus(cmbALName);
}

bool modAdvLoan::FnBlnChkEMIDeducted() const {
  for (std::size_t row = 0; row < fpgEMI.rows.size(); ++row) {
    if (IsRecoveredRow(row)) return true;
  }
  return false;
}

void modAdvLoan::cmdSave_Click() {
  if (FnBlnPermitted(session_, cmdSave)) return;
  const bool deducted = FnBlnChkEMIDeducted();
  if (deducted &&
      !session_.desk.Confirm("EMI already deducted. Do you want to modify the detail ?", session_.title)) {
    return;
  }
  if (!ValidateAndSave() || deducted) return;
  if (session_.SepPiYN) CalculateInterest();
  cmdNew_Click();
}

bool modAdvLoan::ValidateAndSave() {
  const AdvLoanEntry entry = Entry();
  const auto ask = [this](const std::string& text, Icon icon, Answer preset) {
    return session_.desk.Confirm(text, session_.title, preset, icon);
  };
  if (const std::optional<Refusal> refusal = ValidateAdvLoan(session_, entry, ask)) return Refuse(*refusal);
  // An amount of 0 or below writes nothing and says nothing.
  if (!WriteAdvLoan(session_, entry)) return false;
  AfterSave();
  return true;
}

void modAdvLoan::AfterSave() {
  ForgetFormula();
  ShowSaved(session_);
  newRecord_ = false;
  if (session_.AdvanceMgmtYN) RefreshTotalInterest(session_);
  RefreshDetail();
  UpdateOverview();
  FillNames();
  tabDetails.SetCurrent(0);
}

void modAdvLoan::cmdDelete_Click() {
  if (FnBlnPermitted(session_, cmdDelete)) return;
  if (fpgAdvLoan.rows.empty()) {
    session_.Inform("No " + caption_ + " to delete.");
    return;
  }
  const std::size_t row = fpgAdvLoan.activeRow;
  const auto paint = [this, row](Colour colour) {
    if (row < fpgAdvLoan.rows.size()) fpgAdvLoan.PaintRow(row, colour);
  };
  paint(kAboutToGoColour);
  if (!session_.desk.Confirm("Do you want to delete selected " + caption_ + "?", session_.title)) {
    paint(kWhite);
    return;
  }
  if (employee_ == 0) {
    session_.Inform("Select employee.");
    paint(kWhite);
    SetFocus(cmbEmpName);
    return;
  }
  if (serial_ == 0 || newRecord_) {
    session_.Inform("Select " + caption_ + " record to delete.");
    paint(kWhite);
    return;
  }
  const InstructionKey key = Key();
  const std::optional<AdvLoanDetail> detail = ReadAdvLoan(session_, key);
  if (!detail || !ConfirmCascades(key) || !AreMonthsFree(key)) {
    paint(kWhite);
    return;
  }
  DeleteAdvLoan(session_, key, *detail, cmdTDSDet.visible);
  serial_ = 0;
  RefreshDetail();
  UpdateOverview();
  ClearInstruction();
  cmdNew_Click();
}

bool modAdvLoan::ConfirmCascades(const InstructionKey& key) {
  const auto confirmed = [this](const char* found) {
    return session_.desk.Confirm(
        fmt::format("Selected {0} has {1} will be deleted if {0} is deleted.\r\nDo you want to proceed?",
                    caption_, found),
        session_.title);
  };
  if (session_.data.FnBlnRecExists("Select EMPID From INS_RECEIPTS Where " + WhereInstruction(key)) &&
      !confirmed("receipts.  Receipts")) {
    return false;
  }
  return !(cmdTDSDet.visible &&
           session_.data.FnBlnRecExists("Select EMPID From INS_HLOAN Where " + WhereInstruction(key)) &&
           !confirmed("house loan details.  These details"));
}

bool modAdvLoan::AreMonthsFree(const InstructionKey& key) {
  const std::vector<long> months = ReadScheduleMonths(session_, key);
  std::string locked;
  for (long month : months) {
    if (IsMonthLocked(session_, month)) locked += (locked.empty() ? "" : ", ") + FnStrFormatMonthYear(month);
  }
  if (!locked.empty()) {
    session_.Inform(
        locked + " of the EMI month(s) has/have been locked.\r\nDelete these EMI(s) to delete the selected " +
        caption_ + ".\r\nUnlock the month(s)");
    return false;
  }
  const long first = months.empty() ? 0 : months.front();
  const long last = months.empty() ? 0 : months.back();
  if (!IsEmployeeLocked(session_, key.employee, first, std::to_string(last))) return true;
  session_.desk.Warn("Emloyee has been locked one of the EMI month(s). Cannot Delete", kDeniedTitle);
  return false;
}

std::optional<std::vector<InstalmentToDelete>> modAdvLoan::UnlockedTickedInstalments() {
  std::vector<InstalmentToDelete> unlocked;
  std::size_t ticked = 0;
  for (std::size_t row = 0; row < fpgEMI.rows.size(); ++row) {
    if (!fpgEMI.IsTicked(row, kEmiTick)) continue;
    ++ticked;
    const long month = clsDateHandle::FnLngFindMonthValue(fpgEMI.Text(row, kEmiMonth));
    if (IsMonthLocked(session_, month)) continue;
    unlocked.push_back(
        {static_cast<long>(Val(fpgEMI.Text(row, kEmiCounter))), month, fpgEMI.Text(row, kEmiModifiedAmount)});
  }
  if (unlocked.size() == ticked) return unlocked;
  // Not even the unlocked ones go: the locked ones have to be unticked first.
  session_.Inform(fmt::format("{} month(s) are locked.\r\nEMI details for these months will not be deleted.",
                              ticked - unlocked.size()));
  return std::nullopt;
}

double modAdvLoan::SumOfTicked(EmiColumn column) const {
  double sum = 0;
  for (std::size_t row = 0; row < fpgEMI.rows.size(); ++row) {
    if (fpgEMI.IsTicked(row, kEmiTick)) sum += Val(fpgEMI.Text(row, column));
  }
  return sum;
}

std::vector<OpenMonth> modAdvLoan::OpenMonths() const {
  std::vector<OpenMonth> open;
  for (std::size_t row = 0; row < fpgEMI.rows.size(); ++row) {
    if (fpgEMI.IsTicked(row, kEmiTick) || IsRecoveredRow(row)) continue;
    open.push_back({clsDateHandle::FnLngFindMonthValue(fpgEMI.Text(row, kEmiMonth)),
                    Val(fpgEMI.Text(row, kEmiModifiedAmount))});
  }
  return open;
}

void modAdvLoan::cmdEMIDelete_Click() {
  if (FnBlnPermitted(session_, cmdEMIDelete)) return;
  bool anyTicked = false;
  for (std::size_t row = 0; row < fpgEMI.rows.size(); ++row) anyTicked |= fpgEMI.IsTicked(row, kEmiTick);
  if (!anyTicked) {
    session_.Inform("Select EMI to delete.");
    return;
  }
  if (!session_.desk.Confirm("Do you want to delete selected " + caption_ + " EMI Detail?", session_.title))
    return;
  const auto instalments = UnlockedTickedInstalments();
  if (!instalments) return;
  const InstructionKey key = Key();
  if (IsEmployeeLocked(session_, key.employee, instalments->front().monthYear, kNoLaterLock)) {
    session_.desk.Warn("Employee has been locked. Cannot Delete.", kDeniedTitle);
    return;
  }
  for (const InstalmentToDelete& instalment : *instalments) DeleteInstalment(session_, key, instalment);
  const std::string_view adjustment = AdjustAfterDelete();
  AuditDeletedInstalments(session_, key, cmbALName.Text(), *instalments, adjustment);
  if (session_.SepPiYN)
    LowerTotalInterest(session_, key, cmbALName.Text(), SumOfTicked(kEmiModifiedInterest));
  RefreshDetail();
  RefreshEMI();
  UpdateOverview();
  fpgAdvLoan_Click();
}

// The grid still shows the deleted months, ticked. "" when nothing was asked.
std::string_view modAdvLoan::AdjustAfterDelete() {
  const std::vector<OpenMonth> open = OpenMonths();
  if (open.empty() || session_.SepPiYN) return "";
  const Answer answer = session_.desk.MsgBox(
      {"Do you want to Adjust the EMI Amount?\r\nClick on 'Yes' to Adjust the EMI Amount for the "
       "Months\r\nClick on "
       "'No' to Create New Month for Recovery\r\nClick 'Cancel' to Delete with No Adjustments",
       Buttons::YesNoCancel, Icon::Question, Answer::Cancel, session_.title});
  const double deleted = SumOfTicked(kEmiActualAmount);
  if (answer == Answer::Yes) {
    SpreadDeleted(session_, Key(), open, deleted);
    return AuditTextOf(DeletedInstalments::SpreadOverOthers);
  }
  if (answer == Answer::No) {
    AddMonthAtEnd(session_, Key(), deleted);
    return AuditTextOf(DeletedInstalments::NewMonth);
  }
  return AuditTextOf(DeletedInstalments::NoAdjustment);
}

}  // namespace ktl
