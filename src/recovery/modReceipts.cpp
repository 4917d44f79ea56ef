#include "recovery/modReceipts.h"

#include <fmt/format.h>

#include <algorithm>

#include "common/amounts.h"
#include "common/month_year.h"
#include "frame/handler_guard.h"
#include "frame/number_fields.h"
#include "frame/pickers.h"
#include "frame/rights.h"
#include "frame/saved_box.h"
#include "frame/session.h"
#include "frame/writing_buttons.h"
#include "frame/writing_turn.h"
#include "instructions/list_columns.h"
#include "instructions/shown_rows.h"
#include "instructions/type_rights.h"
#include "recovery/working.h"
#include "runtime/numbers.h"

namespace ktl {

modReceipts::modReceipts(Session& session, InstructionParent& parent)
    : Screen("modReceipts"),
      session_(session),
      parent_(parent),
      key_(parent.Key()),
      reducing_(parent.ComponentsApart()),
      strRcptWord(FactsOf(key_.type).receiptWord) {
  caption = key_.type == InstructionType::Advance ? "Receipts Recovered" : "Deposits";
  lblRcptDate.caption = strRcptWord + " Date";
  fmeHidden.Hold({txtCounter});
  fmeHidden.visible = false;
  TakeAmounts({&txtAmount, &txtInterest});
  for (TextBox* box : {&txtAmount, &txtInterest})
    box->onLeave = [box] { box->SetText(EditedAmount(box->Text(), "").text); };  // as it will be stored
  AskForDate(session_, txtRcptDate);
  txtRcptDate.onKeyPress = clsGenCmn::DateKey;
  ConnectHandlers();
}

void modReceipts::ConnectHandlers() {
  const HandlerGuard on(session_, *this, ErrorStyle::DescriptionFirst, "Error");
  fpgReceipts.onRowClick = [this](std::size_t row, std::size_t) { fpgReceipts_Click(row); };
  txtRcptDate.onLeave = on(&modReceipts::txtRcptDate_LostFocus);
  cmdNew.onClick = on(&modReceipts::cmdNew_Click);
  cmdSave.onClick = on(&modReceipts::cmdSave_Click);
  cmdDelete.onClick = on(&modReceipts::cmdDelete_Click);
  cmdClose.onClick = [this] { Unload(); };
}

void modReceipts::Form_Load() {
  receipts_.SetColumns(ReceiptColumns(key_.type));
  fpgReceipts.summed = kSummedReceiptColumns;
  FillReceiptGrid();
  ApplyTypeRights(session_, *this, key_.type);
  EnableWriting(session_, {&cmdSave, &cmdDelete});
}

Subject modReceipts::Subject() const { return parent_.Subject(); }

void modReceipts::FillReceiptGrid() {
  shown_ = RowsShown();
  fpgReceipts.Clear();
  receipts_.Show(ReadReceipts(session_, key_));
}

void modReceipts::fpgReceipts_Click(std::size_t row) { ShowReceiptRow(row); }

// Of an ordinary instruction the total is edited as the principal, beside the interest that it holds already:
// saving such a row again adds its interest once more.
void modReceipts::ShowReceiptRow(std::size_t lngRow) {
  const Receipt* receipt = receipts_.At(lngRow);
  if (receipt == nullptr) return;
  txtCounter.SetText(std::to_string(receipt->counter));
  txtRcptDate.SetText(ShownDate(receipt->RCPTDATE));
  txtAmount.tag = ShownAmount(reducing_ ? receipt->RCPTPRNAMT : receipt->RCPTAMT);
  txtAmount.SetText(txtAmount.tag);
  txtInterest.SetText(ShownAmount(receipt->RCPTINTAMT));
  txtInterest.tag = reducing_ ? txtInterest.Text() : "";
  txtRemarks.SetText(receipt->remarks);
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
  const std::string& counter = txtCounter.Text();
  return {.counter = counter.empty() ? std::nullopt : std::optional(static_cast<long>(Val(counter))),
          .date = txtRcptDate.Text(),
          .amount = {txtAmount.Text(), txtAmount.tag},
          .interest = {txtInterest.Text(), txtInterest.tag},
          .remarks = txtRemarks.Text()};
}

void modReceipts::cmdSave_Click() {
  if (FnBlnPermitted(session_, cmdSave)) return;
  const Working working(session_, cmdClose);
  SaveReceipt();
}

const Receipt* modReceipts::StoredReceipt(const ReceiptEntry& entry) const {
  const auto stored = std::ranges::find(receipts_.Rows(), entry.counter, &Receipt::counter);
  return stored == receipts_.Rows().end() ? nullptr : &*stored;
}

bool modReceipts::SaveReceipt() {
  ReceiptEntry entry = Entry();
  if (const auto refusal = CheckReceipt(session_, key_, entry))
    return Refuse(session_, *this, *refusal, fields_);
  if (!MayExceedRecoverable(entry)) {
    SetFocus(txtAmount);
    return false;
  }
  cmdClose.enabled = false;
  const ReceiptDifference months = MonthsOfReceipt(session_, parent_, entry.date);
  const std::optional<Answer> answer = AskAdjustment(entry, months);
  if (!AreMonthsFree(answer, months)) return false;
  const Receipt* const stored = StoredReceipt(entry);
  if (stored != nullptr) entry.date = ShownDate(stored->RCPTDATE);
  const auto write = [&] {
    if (stored == nullptr) TakeNextCounter(entry, months);
    WriteSaved(entry, answer, months);
  };
  if (!ReceiveInTurn(stored == nullptr ? std::nullopt : std::optional(shown_), write)) return false;
  ShowSaved(session_);
  AfterChange();
  return true;
}

std::string modReceipts::RowsShown() {
  return InstructionAndSchedule(session_, key_) + ReceiptRows(session_, key_);
}

bool modReceipts::ReceiveInTurn(const std::optional<std::string>& shown, const std::function<void()>& write) {
  return WriteInTurn(
      session_, [this] { return RowsShown(); }, shown, write,
      [this] {
        parent_.RefreshEMI();
        AfterChange();
      });
}

void modReceipts::TakeNextCounter(ReceiptEntry& entry, const ReceiptDifference& months) {
  if (RowsShown() == shown_) return;
  const bool exceeded = ExceedsRecoverable(parent_.Totals(), entry);
  parent_.RefreshDetail();
  parent_.RefreshEMI();
  if (InstructionRow(session_, key_).empty() ||
      MonthsOfReceipt(session_, parent_, entry.date).lngToMonth != months.lngToMonth ||
      (!exceeded && ExceedsRecoverable(parent_.Totals(), entry)))
    throw ChangedMeanwhile();
  entry.counter = NextReceiptCounter(session_, key_);
}

void modReceipts::WriteSaved(const ReceiptEntry& entry, std::optional<Answer> answer,
                             const ReceiptDifference& months) {
  WriteReceipt(session_, key_, entry);
  if (answer && *answer != Answer::Cancel) {
    AdjustSavedReceipt(session_, parent_, *answer, entry, months);
    parent_.RefreshEMI();
  }
  AuditReceipt(session_, key_, reducing_, ReceiptDeed::Saved, entry, answer);
}

bool modReceipts::MayExceedRecoverable(const ReceiptEntry& entry) {
  return !ExceedsRecoverable(parent_.Totals(), entry) ||
         session_.desk.Confirm(
             fmt::format("Entered amount is more than {} recoverable.\r\nDo you want to continue?",
                         InstructionCaption(session_, key_.type)),
             session_.title);
}

std::optional<Answer> modReceipts::AskAdjustment(const ReceiptEntry& entry, const ReceiptDifference& months) {
  if (months.lngFromMonth > months.lngToMonth) return Answer::Cancel;
  if (!entry.amount.IsChanged() && !(reducing_ && entry.interest.IsChanged())) return std::nullopt;
  return AskAboutAmount("Delete the Current and Future Months EMI Amount from Last ",
                        "&No, from the last months");
}

Answer modReceipts::AskAboutAmount(const char* no, const char* noWords) {
  return session_.desk.MsgBox(
      {fmt::format("Do you want to Adjust the EMI Amount?\r\n"
                   "Click on 'Yes' to Adjust the EMI Amount for Current and Future Months\r\n"
                   "Click on 'No' to {}\r\n"
                   "Click 'Cancel' to Save/Update with No Adjustments",
                   no),
       Buttons::YesNoCancel,
       Icon::Question,
       Answer::Cancel,
       session_.title,
       0,
       {"&Yes, adjust", noWords, "&Cancel, no adjustment"}});
}

bool modReceipts::AreMonthsFree(std::optional<Answer> answer, const ReceiptDifference& months) {
  if (answer == Answer::Cancel) return true;
  const auto refusal = CheckReceiptMonths(session_, months);
  return !refusal || Refuse(session_, *this, *refusal, fields_);
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
  if (receipts_.Rows().empty()) return session_.Inform("No records to delete.");
  ReceiptEntry entry = Entry();
  const Receipt* const stored = StoredReceipt(entry);
  if (entry.amount.now == 0 || stored == nullptr) return session_.Inform("Select record to delete.");
  const auto row = static_cast<std::size_t>(stored - receipts_.Rows().data());
  fpgReceipts.PaintRow(row, kAboutToGoColour);
  const bool confirmed = session_.desk.Confirm("Delete selected " + strRcptWord + "?", session_.title);
  if (!confirmed) return fpgReceipts.PaintRow(row, kWhite);
  cmdClose.enabled = false;
  const ReceiptDifference months = MonthsOfReceipt(session_, parent_, entry.date);
  const Answer answer = AskAboutAmount("Create New Month for Recovery", "&No, one new month");
  fpgReceipts.PaintRow(row, kWhite);
  if (!AreMonthsFree(answer, months)) return;
  entry.date = ShownDate(stored->RCPTDATE);
  entry.remarks = stored->remarks;
  if (ReceiveInTurn(shown_, [&] { WriteDeleted(entry, answer, months); })) AfterChange();
}

void modReceipts::WriteDeleted(const ReceiptEntry& entry, Answer answer, const ReceiptDifference& months) {
  DeleteReceipt(session_, key_, *entry.counter);
  if (answer != Answer::Cancel) {
    AdjustDeletedReceipt(session_, parent_, answer, entry, months);
    parent_.RefreshEMI();
  }
  AuditReceipt(session_, key_, reducing_, ReceiptDeed::Deleted, entry, answer);
}

bool modReceipts::Form_QueryUnload() { return !blnNewRow || MayLeaveNewRow(session_, cmdSave); }

}  // namespace ktl
