#include "recovery/modReceipts.h"

#include <fmt/format.h>

#include <algorithm>

#include "common/amounts.h"
#include "common/month_year.h"
#include "frame/error_box.h"
#include "frame/rights.h"
#include "frame/saved_box.h"
#include "frame/session.h"
#include "instructions/type_rights.h"
#include "recovery/emi_months.h"
#include "recovery/working.h"
#include "runtime/numbers.h"

namespace ktl {

namespace {

constexpr long kMenuNumber = 19;
constexpr Colour kDeleteColour = 0xFFE0E0;
constexpr const char* kAskBegin =
    "Do you want to Adjust the EMI Amount?\r\n"
    "Click on 'Yes' to Adjust the EMI Amount for Current and Future Months\r\n";
constexpr const char* kAskEnd = "Click 'Cancel' to Save/Update with No Adjustments";
constexpr const char* kTakeFromLast =
    "Click on 'No' to Delete the Current and Future Months EMI Amount from Last \r\n";
constexpr const char* kNewMonth = "Click on 'No' to Create New Month for Recovery\r\n";

std::string AuditedAdjustment(std::optional<Answer> answer, const char* no) {
  if (!answer) return "";
  switch (*answer) {
    case Answer::Yes:
      return ":EMI Adjustment = Adjust the EMI Amount for Current and Future Months";
    case Answer::No:
      return std::string(":EMI Adjustment = ") + no;
    default:
      return ":EMI Adjustment = Save/Update with No Adjustments";
  }
}

}  // namespace

modReceipts::modReceipts(Session& session, InstructionParent& parent)
    : Screen("modReceipts"),
      session_(session),
      parent_(parent),
      key_(parent.Key()),
      reducing_(parent.ComponentsApart()),
      strRcptWord(FactsOf(key_.type).receiptWord) {
  caption = key_.type == InstructionType::Advance ? "Receipts Recovered" : "Deposits";
  lblRcptDate.caption = strRcptWord + " Date";
  txtCounter.container = &fmeHidden;
  fmeHidden.visible = false;
  for (TextBox* box : {&txtAmount, &txtInterest}) {
    box->rightAligned = true;
    box->onKeyPress = [box](int key) { return clsGenCmn::FnIntAllowAmtOnly(key, box->Text()); };
  }
  txtRcptDate.onKeyPress = [](int key) { return clsGenCmn::FnIntAllowDateOnly(key); };
  ConnectHandlers();
}

void modReceipts::ConnectHandlers() {
  const auto on = [this](void (modReceipts::*handler)()) {
    return WithNumberedErrorBox(
        session_, [this, handler] { (this->*handler)(); }, "Error");
  };
  fpgReceipts.onRowClick = [this](std::size_t row, std::size_t) { fpgReceipts_Click(row); };
  txtRcptDate.onLeave = on(&modReceipts::txtRcptDate_LostFocus);
  cmdNew.onClick = on(&modReceipts::cmdNew_Click);
  cmdSave.onClick = on(&modReceipts::cmdSave_Click);
  cmdDelete.onClick = on(&modReceipts::cmdDelete_Click);
  cmdClose.onClick = [this] { Unload(); };
}

void modReceipts::Form_Load() {
  SetColumns();
  FillReceiptGrid();
  ApplyTypeRights(session_, *this, key_.type);
  cmdSave.enabled = cmdDelete.enabled = session_.EmpLockStatus != 1 && !session_.ReadOnlyUser;
}

void modReceipts::SetColumns() {
  fpgReceipts.columns = {
      {"Counter", CellType::Number, 70, true},   {strRcptWord + " Date", CellType::Date, 110},
      {"Principle Amt.", CellType::Number, 120}, {"Interest Amt.", CellType::Number, 120},
      {"Total Amount", CellType::Number, 120},   {"Remarks", CellType::Text, 220},
  };
}

void modReceipts::FillReceiptGrid() {
  receipts_ = ReadReceipts(session_, key_);
  fpgReceipts.Clear();
  for (const Receipt& receipt : receipts_) {
    const std::size_t row = fpgReceipts.AddRow();
    fpgReceipts.At(row, kCounter).text = std::to_string(receipt.counter);
    fpgReceipts.At(row, kDate).text = receipt.RCPTDATE ? FormatDate(*receipt.RCPTDATE, "dd/mm/yyyy") : "";
    fpgReceipts.At(row, kPrincipal).text = ShownAmount(receipt.RCPTPRNAMT);
    fpgReceipts.At(row, kInterest).text = ShownAmount(receipt.RCPTINTAMT);
    fpgReceipts.At(row, kTotal).text = ShownAmount(receipt.RCPTAMT);
    fpgReceipts.At(row, kRemarks).text = receipt.remarks;
  }
}

void modReceipts::fpgReceipts_Click(std::size_t row) { ShowReceiptRow(row); }

// Of an ordinary instruction the total is edited as the principal, beside the interest that it holds already:
// saving such a row again adds its interest once more.
void modReceipts::ShowReceiptRow(std::size_t lngRow) {
  if (lngRow >= receipts_.size()) return;
  txtCounter.SetText(fpgReceipts.Text(lngRow, kCounter));
  txtRcptDate.SetText(fpgReceipts.Text(lngRow, kDate));
  txtAmount.tag = fpgReceipts.Text(lngRow, reducing_ ? kPrincipal : kTotal);
  txtAmount.SetText(txtAmount.tag);
  txtInterest.SetText(fpgReceipts.Text(lngRow, kInterest));
  txtInterest.tag = reducing_ ? txtInterest.Text() : "";
  txtRemarks.SetText(fpgReceipts.Text(lngRow, kRemarks));
  blnNewRow = false;
}

void modReceipts::ClearFields() {
  for (TextBox* box : {&txtCounter, &txtRcptDate, &txtAmount, &txtInterest, &txtRemarks}) {
    box->SetText("");
    box->tag.clear();
  }
  blnNewRow = false;
}

void modReceipts::cmdNew_Click() { NewReceipt(); }

void modReceipts::NewReceipt() {
  ClearFields();
  txtCounter.SetText(std::to_string(NextReceiptCounter(session_, key_)));
  txtRcptDate.SetText(FormatDate(session_.machine.clock.Now(), "dd/mm/yyyy"));
  blnNewRow = true;
  SetFocus(txtRcptDate);
}

void modReceipts::txtRcptDate_LostFocus() {
  txtRcptDate.SetText(clsDateHandle::FnStrCorrectDate(txtRcptDate.Text()));
}

ReceiptEntry modReceipts::Entry() const {
  return {txtCounter.Text(),
          txtRcptDate.Text(),
          {txtAmount.Text(), txtAmount.tag},
          {txtInterest.Text(), txtInterest.tag},
          txtRemarks.Text()};
}

void modReceipts::Refuse(const ReceiptRefusal& refusal) {
  session_.Inform(refusal.text);
  switch (refusal.field) {
    case ReceiptField::New:
      return SetFocus(cmdNew);
    case ReceiptField::Date:
      return SetFocus(txtRcptDate);
    case ReceiptField::Amount:
      return SetFocus(txtAmount);
    case ReceiptField::None:
      break;
  }
}

void modReceipts::cmdSave_Click() {
  if (FnBlnPermitted(session_, cmdSave)) return;
  const Working working(session_, cmdClose);
  SaveReceipt();
}

bool modReceipts::SaveReceipt() {
  const ReceiptEntry entry = Entry();
  if (const auto refusal = CheckReceipt(session_, key_, entry)) {
    Refuse(*refusal);
    return false;
  }
  if (!MayExceedRecoverable(entry)) {
    SetFocus(txtAmount);
    return false;
  }
  cmdClose.enabled = false;
  const ReceiptDifference months = MonthsOf(entry);
  const std::optional<Answer> answer = AskAdjustment(entry, months);
  if (!AreMonthsFree(answer, months)) return false;
  WriteReceipt(session_, key_, entry);
  if (answer) AdjustSaved(*answer, entry, months);
  WriteAudit(" Receipts Updated", entry,
             AuditedAdjustment(answer, "Delete the Current and Future Months EMI Amount from Last"));
  ShowSaved(session_);
  AfterChange();
  return true;
}

bool modReceipts::MayExceedRecoverable(const ReceiptEntry& entry) {
  const InstructionTotals totals = parent_.Totals();
  const double recoverable = totals.amount + totals.interest - totals.recovered;
  if (recoverable >= entry.Total()) return true;
  return session_.desk.Confirm(
      fmt::format("Entered amount is more than {} recoverable.\r\nDo you want to continue?",
                  InstructionCaption(session_, key_.type)),
      session_.title);
}

ReceiptDifference modReceipts::MonthsOf(const ReceiptEntry& entry) {
  const std::vector<ScheduleMonth> schedule = ReadEmiMonths(session_, parent_);
  return {.lngFromMonth = SalaryMonthOf(session_, entry.date),
          .lngToMonth = schedule.empty() ? 0 : schedule.back().monthYear};
}

std::optional<Answer> modReceipts::AskAdjustment(const ReceiptEntry& entry, const ReceiptDifference& months) {
  if (months.lngFromMonth > months.lngToMonth) return Answer::Cancel;
  if (!entry.amount.IsChanged() && !(reducing_ && entry.interest.IsChanged())) return std::nullopt;
  return session_.desk.MsgBox({std::string(kAskBegin) + kTakeFromLast + kAskEnd, Buttons::YesNoCancel,
                               Icon::Question, Answer::Cancel, session_.title});
}

bool modReceipts::AreMonthsFree(std::optional<Answer> answer, const ReceiptDifference& months) {
  if (answer == Answer::Cancel) return true;
  const long locked = CountLockedMonthsAtOnce(session_, months.lngFromMonth, months.lngToMonth);
  if (locked == 0) return true;
  session_.desk.Warn(LockedMonthsText(locked), session_.title);
  SetFocus(txtAmount);
  return false;
}

void modReceipts::AdjustSaved(Answer answer, const ReceiptEntry& entry, ReceiptDifference months) {
  if (answer == Answer::Cancel) return;
  const auto by = [&months](const EditedAmount& amount) {
    ReceiptDifference difference = months;
    difference.amount = amount.Now() - amount.Before();
    return difference;
  };
  const bool spread = answer == Answer::Yes;
  if (reducing_) {
    (spread ? RedPrinciModify : RedPrinciModifyLastMonth)(session_, parent_, by(entry.amount));
    (spread ? RedIntModify : RedIntModifyLastMonth)(session_, parent_, by(entry.interest));
  } else {
    (spread ? EMIModify : EMIModifyLastMonth)(session_, parent_, by(entry.amount));
  }
  parent_.RefreshEMI();
}

void modReceipts::AfterChange() {
  parent_.RefreshDetail();
  parent_.RefreshReceipts();
  parent_.UpdateOverview();
  FillReceiptGrid();
  ClearFields();
  SetFocus(cmdNew);
}

void modReceipts::cmdDelete_Click() {
  if (FnBlnPermitted(session_, cmdDelete)) return;
  const Working working(session_, cmdClose);
  Delete();
}

void modReceipts::Delete() {
  if (receipts_.empty()) return session_.Inform("No records to delete.");
  const ReceiptEntry entry = Entry();
  const auto picked = std::ranges::find(receipts_, static_cast<long>(Val(entry.counter)), &Receipt::counter);
  if (entry.counter.empty() || entry.amount.Now() == 0 || picked == receipts_.end())
    return session_.Inform("Select record to delete.");
  const auto row = static_cast<std::size_t>(picked - receipts_.begin());
  fpgReceipts.PaintRow(row, kDeleteColour);
  const bool confirmed = session_.desk.Confirm("Delete selected " + strRcptWord + "?", session_.title);
  if (!confirmed) return fpgReceipts.PaintRow(row, kWhite);
  cmdClose.enabled = false;
  const ReceiptDifference months = MonthsOf(entry);
  const Answer answer =
      session_.desk.MsgBox({std::string(kAskBegin) + kNewMonth + kAskEnd, Buttons::YesNoCancel,
                            Icon::Question, Answer::Cancel, session_.title});
  fpgReceipts.PaintRow(row, kWhite);
  if (!AreMonthsFree(answer, months)) return;
  DeleteReceipt(session_, key_, entry.counter);
  AdjustDeleted(answer, entry, months);
  WriteAudit(" Receipts Deleted", entry, AuditedAdjustment(answer, "Create New Month for Recovery"));
  AfterChange();
}

void modReceipts::AdjustDeleted(Answer answer, const ReceiptEntry& entry, ReceiptDifference months) {
  if (answer == Answer::Cancel) return;
  months.blnDeleted = true;
  const auto by = [&months](const EditedAmount& amount) {
    ReceiptDifference difference = months;
    difference.amount = amount.Now();
    return difference;
  };
  if (answer == Answer::No) {
    if (reducing_) {
      AddRecoveryMonthRed(session_, parent_, entry.amount.Now(), entry.interest.Now());
    } else {
      AddRecoveryMonth(session_, parent_, entry.amount.Now());
    }
  } else if (reducing_) {
    RedPrinciModify(session_, parent_, by(entry.amount));
    RedIntModify(session_, parent_, by(entry.interest));
  } else {
    EMIModify(session_, parent_, by(entry.amount));
  }
  parent_.RefreshEMI();
}

void modReceipts::WriteAudit(const char* deed, const ReceiptEntry& entry, std::string_view adjustment) {
  if (!FnBlnAuditOn(session_)) return;
  const std::string typeDesc = InstructionCaption(session_, key_.type);
  const std::string done = typeDesc + deed;
  std::string detail =
      fmt::format("{}:::SI Type = {}:SI Name = {}::Receipt Date = {}", done, typeDesc,
                  ReadInstructionName(session_, key_), FormatDateText(entry.date, "dd/mmm/yyyy"));
  if (reducing_) {
    detail += fmt::format("::Principle Amount = {}:Interest Amount = {}:EMI Amount = {}", entry.amount.text,
                          entry.interest.text, FormatNumber(entry.Total(), "#,##,###.00"));
  } else {
    detail += fmt::format("::EMI Amount = {}{}", entry.amount.text, adjustment);
  }
  detail += ":Remarks = " + entry.remarks;
  WriteAuditTrail(session_, kMenuNumber, key_.employee, "Standing Instructions - " + done, detail);
}

bool modReceipts::Form_QueryUnload() { return !blnNewRow || MayLeaveNewRow(session_, cmdSave); }

}  // namespace ktl
