#pragma once

#include <optional>
#include <string>

#include "frame/refusal.h"
#include "instructions/receipts.h"
#include "recovery/adjustment_write.h"
#include "recovery/emi_entry.h"

namespace ktl {

struct Session;

long NextReceiptCounter(Session& session, const InstructionKey& key);

// What stands in the fields of the receipts screen.
struct ReceiptEntry {
  std::optional<long> counter;  // nothing is picked
  std::string date;
  EditedAmount amount;
  EditedAmount interest;
  std::string remarks;

  double Total() const { return amount.now + interest.now; }
};

enum class ReceiptField { None, New, Date, Amount, Interest, Remarks };
using ReceiptRefusal = Refusal<ReceiptField>;

// The checks before a save that ask nothing, in their fixed order.
std::optional<ReceiptRefusal> CheckReceipt(Session& session, const InstructionKey& key,
                                           const ReceiptEntry& entry);
bool ExceedsRecoverable(const InstructionTotals& totals, const ReceiptEntry& entry);

// The months that a receipt of that date falls on: from its salary month (of the calendar when no salary
// month holds the date) to the last of the schedule.
ReceiptDifference MonthsOfReceipt(Session& session, const InstructionParent& parent, const std::string& date);
// Locked months among them.
std::optional<ReceiptRefusal> CheckReceiptMonths(Session& session, const ReceiptDifference& months);

// Adds the receipt or changes its amounts and remarks. The date of a stored receipt is never rewritten.
void WriteReceipt(Session& session, const InstructionKey& key, const ReceiptEntry& entry);
void DeleteReceipt(Session& session, const InstructionKey& key, long counter);

// By the answer to "Do you want to Adjust the EMI Amount?": Yes spreads the difference over the months, No
// takes it off their end (a saved receipt) or adds a month with it (a deleted one).
void AdjustSavedReceipt(Session& session, InstructionParent& parent, Answer answer, const ReceiptEntry& entry,
                        const ReceiptDifference& months);
void AdjustDeletedReceipt(Session& session, InstructionParent& parent, Answer answer,
                          const ReceiptEntry& entry, const ReceiptDifference& months);

enum class ReceiptDeed { Saved, Deleted };
// No answer where no question was due.
void AuditReceipt(Session& session, const InstructionKey& key, bool reducing, ReceiptDeed deed,
                  const ReceiptEntry& entry, std::optional<Answer> answer);

}  // namespace ktl
