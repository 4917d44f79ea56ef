// Saving months in the editor and what becomes of the difference.
#include <fmt/format.h>

#include "frame/rights.h"
#include "frame/saved_box.h"
#include "frame/session.h"
#include "recovery/adjustment_write.h"
#include "recovery/modEMIDet.h"
#include "recovery/working.h"
#include "runtime/numbers.h"

namespace ktl {

namespace {

constexpr long kMenuNumber = 19;

// " (old)" behind an amount when months were only updated.
std::string Audited(const std::string& label, const std::string& now, const std::string& before, bool added) {
  return added ? label + now : fmt::format("{}{} ({})", label, now, before);
}

std::string Sum(double amount) { return FormatNumber(amount, "#,##,###.00"); }

}  // namespace

void modEMIDet::cmdSave_Click() {
  if (FnBlnPermitted(session_, cmdSave)) return;
  const Working working(session_, cmdClose);
  lngActiveRow = fpgEMIDetail.activeRow;
  SaveEmiRow();
}

EmiEntry modEMIDet::Entry() const {
  EmiEntry entry;
  entry.lngCounter = lngCounter;
  entry.months = {txtFromMonth.Text(), txtToMonth.Text()};
  entry.amount = {txtAmount.Text(), txtAmount.tag};
  if (reducing_) entry.interest = {txtInterest.Text(), txtInterest.tag};
  entry.institution = cmbInstitution.BoundText();
  entry.remarks = txtRemarks.Text();
  return entry;
}

Control* modEMIDet::FieldOf(EmiField field) {
  switch (field) {
    case EmiField::New:
      return &cmdNew;
    case EmiField::From:
      return &txtFromMonth;
    case EmiField::To:
      return &txtToMonth;
    case EmiField::Amount:
      return &txtAmount;
    case EmiField::Institution:
      return &cmbInstitution;
    case EmiField::None:
      break;
  }
  return nullptr;
}

void modEMIDet::Refuse(const EmiRefusal& refusal) {
  session_.desk.MsgBox({.text = refusal.text,
                        .icon = refusal.icon,
                        .title = refusal.title.empty() ? session_.title : refusal.title});
  if (Control* field = FieldOf(refusal.field)) SetFocus(*field);
}

bool modEMIDet::SaveEmiRow() {
  const EmiEntry entry = Entry();
  if (const auto refusal = CheckEmiEntry(session_, key_, entry)) {
    Refuse(*refusal);
    return false;
  }
  cmdClose.enabled = false;
  const std::optional<Answer> answer = AskAdjustment(entry);
  if (answer != Answer::Yes && !MayRecoverMore(entry)) {
    SetFocus(txtAmount);
    return false;
  }
  const bool blnRowAdded = WriteEmiMonths(session_, parent_, entry);
  if (IsAdvanceOrLoan()) {
    RefreshParent();
    // Months that were added are no change of the others, whatever was answered.
    if (!blnRowAdded && answer) AdjustSaved(*answer, entry);
  } else {
    parent_.RefreshEMI();
  }
  FillEmiGrid();
  AuditSaved(entry, blnRowAdded);
  ShowSaved(session_);
  ClearEmiFields();
  SetFocus(cmdNew);
  blnNewRow = false;
  return true;
}

std::optional<Answer> modEMIDet::AskAdjustment(const EmiEntry& entry) {
  if (blnNewRow) return std::nullopt;
  if (!IsAdvanceOrLoan()) return Answer::No;
  if (!entry.amount.IsChanged() && !entry.interest.IsChanged()) return std::nullopt;
  return session_.desk.MsgBox(
      {"Do you want to Adjust the EMI Amount?\r\n"
       "Click on 'Yes' to Adjust the EMI Amount for Future Months\r\n"
       "Click on 'No' to Create New Month for Recovery\r\n"
       "Click 'Cancel' to Save/Update with No Adjustments",
       Buttons::YesNoCancel, Icon::Question, Answer::Cancel, session_.title});
}

// The typed amount alone counts, the principal of a reducing instruction.
bool modEMIDet::MayRecoverMore(const EmiEntry& entry) {
  if (!IsAdvanceOrLoan()) return true;
  const InstructionTotals totals = parent_.Totals();
  double emi = totals.emi;
  if (lngActiveRow < months_.size()) emi -= AmountOf(months_[lngActiveRow], Component::Amount);
  const double entered = static_cast<double>(entry.months.Count()) * entry.amount.Now();
  if (emi + totals.receipts + entered <= totals.amount + totals.interest) return true;
  return session_.desk.Confirm(
      "Entered EMI results in more recovery than required.\r\nDo you want to continue?", session_.title);
}

// The overview first: it selects the instruction's row, and the list of months is what an adjustment reads.
void modEMIDet::RefreshParent() {
  parent_.RefreshDetail();
  parent_.RefreshEMI();
  parent_.UpdateOverview();
}

void modEMIDet::AdjustSaved(Answer answer, const EmiEntry& entry) {
  if (answer == Answer::Cancel) return;
  const auto months = static_cast<double>(entry.months.Count());
  const double less = (entry.amount.Before() - entry.amount.Now()) * months;
  using Mode = EditorDifference::Mode;
  if (answer == Answer::Yes && reducing_) {
    AdjustFuturePrincipal(session_, parent_,
                          {Mode::Save, lngActiveRow, AmountOf(picked_, Component::Principal)});
    AdjustFutureInterest(session_, parent_,
                         {Mode::Save, lngActiveRow, AmountOf(picked_, Component::Interest)});
  } else if (answer == Answer::Yes) {
    AdjustFutureMonths(session_, parent_, {Mode::Save, lngActiveRow, AmountOf(picked_, Component::Amount)});
  } else if (reducing_) {
    const double dblDeletedInterest = (entry.interest.Before() - entry.interest.Now()) * months;
    CreateRecoveryMonthRed(session_, parent_, less, dblDeletedInterest);
  } else {
    CreateRecoveryMonth(session_, parent_, less);
  }
  RefreshParent();
}

void modEMIDet::AuditSaved(const EmiEntry& entry, bool added) {
  std::string detail = fmt::format("::From Month = {}:To Month = {}", entry.months.from, entry.months.to);
  const auto audited = [&](const char* label, const EditedAmount& amount) {
    return Audited(label, amount.text, amount.tag, added);
  };
  if (!reducing_) {
    detail += audited("::EMI Amount = ", entry.amount);
  } else {
    detail += audited("::Principle Amount = ", entry.amount) +
              audited(":Interest Amount = ", entry.interest) +
              Audited(":EMI Amount = ", Sum(entry.amount.Now() + entry.interest.Now()),
                      Sum(entry.amount.Before() + entry.interest.Before()), added);
  }
  WriteAudit(" EMI's Created/Updated", detail);
}

void modEMIDet::WriteAudit(const std::string& deed, const std::string& detail) {
  if (!FnBlnAuditOn(session_)) return;
  const std::string done = strTypeDesc + deed;
  WriteAuditTrail(session_, kMenuNumber, key_.employee, "Standing Instructions - " + done,
                  fmt::format("{}:::SI Type = {}:SI Name = {}{}", done, strTypeDesc,
                              ReadInstructionName(session_, key_), detail));
}

}  // namespace ktl
