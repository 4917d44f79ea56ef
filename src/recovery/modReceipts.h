#pragma once

#include <functional>
#include <map>
#include <optional>

#include "recovery/receipt_entry.h"
#include "screen/controls.h"
#include "screen/grid.h"
#include "screen/grid_list.h"
#include "screen/screen.h"

namespace ktl {

// What an employee pays back outside the salary: receipts of an advance, deposits of a loan.
class modReceipts final : public Screen {
 public:
  enum Column : std::size_t { kCounter, kDate, kPrincipal, kInterest, kTotal, kRemarks };

  modReceipts(Session& session, InstructionParent& parent);

  Grid fpgReceipts{*this, "fpgReceipts"};
  Label lblRcptDate{*this, "lblRcptDate"};
  TextBox txtRcptDate{*this, "txtRcptDate"};
  Label lblAmount{*this, "lblAmount", "Principle Amt"};
  TextBox txtAmount{*this, "txtAmount"};
  Label lblInterest{*this, "lblInterest", "Int. Amt"};
  TextBox txtInterest{*this, "txtInterest"};
  Label lblRemarks{*this, "lblRemarks", "Remarks"};
  TextBox txtRemarks{*this, "txtRemarks"};
  Frame fmeHidden{*this, "fmeHidden"};
  TextBox txtCounter{*this, "txtCounter"};
  Button cmdNew{*this, "cmdNew", "&New"};
  Button cmdSave{*this, "cmdSave", "&Save"};
  Button cmdDelete{*this, "cmdDelete", "&Delete"};
  Button cmdClose{*this, "cmdClose", "&Close"};

  ktl::Subject Subject() const override;

  void Form_Load() override;
  bool Form_QueryUnload() override;

  void fpgReceipts_Click(std::size_t row);
  void txtRcptDate_LostFocus();
  void cmdNew_Click();
  void cmdSave_Click();
  void cmdDelete_Click();

  void FillReceiptGrid();
  void ShowReceiptRow(std::size_t lngRow);
  void NewReceipt();
  bool SaveReceipt();  // false when nothing was written

 private:
  void ConnectHandlers();
  void ClearFields();
  void Delete();

  ReceiptEntry Entry() const;
  const Receipt* StoredReceipt(const ReceiptEntry& entry) const;  // null for a new one
  bool MayExceedRecoverable(const ReceiptEntry& entry);
  // Nothing when no question was due: months are tested for locks all the same.
  std::optional<Answer> AskAdjustment(const ReceiptEntry& entry, const ReceiptDifference& months);
  // What No does, as the text tells it and as its button does.
  Answer AskAboutAmount(const char* no, const char* noWords);
  bool AreMonthsFree(std::optional<Answer> answer, const ReceiptDifference& months);
  std::string RowsShown();
  // False when another workstation has changed what was shown.
  bool ReceiveInTurn(const std::optional<std::string>& shown, const std::function<void()>& write);
  void WriteSaved(const ReceiptEntry& entry, std::optional<Answer> answer, const ReceiptDifference& months);
  void WriteDeleted(const ReceiptEntry& entry, Answer answer, const ReceiptDifference& months);
  // Whatever was received meanwhile, the entry becomes the next receipt: unless it is too much only now, or
  // the schedule ends elsewhere, which the questions did not know.
  void TakeNextCounter(ReceiptEntry& entry, const ReceiptDifference& months);
  void AfterChange();

  Session& session_;
  InstructionParent& parent_;
  InstructionKey key_;
  bool reducing_;
  std::string strRcptWord;
  GridList<Receipt> receipts_{fpgReceipts};
  const std::map<ReceiptField, Control*> fields_{{ReceiptField::New, &cmdNew},
                                                 {ReceiptField::Date, &txtRcptDate},
                                                 {ReceiptField::Amount, &txtAmount},
                                                 {ReceiptField::Interest, &txtInterest},
                                                 {ReceiptField::Remarks, &txtRemarks}};
  bool blnNewRow = false;
  std::string shown_;  // the instruction, its months and receipts, as the lists show them
};

}  // namespace ktl
