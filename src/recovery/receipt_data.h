#pragma once

#include <optional>
#include <string>
#include <vector>

#include "instructions/receipts.h"
#include "recovery/emi_entry.h"

namespace ktl {

struct Session;

long NextReceiptCounter(Session& session, const InstructionKey& key);

// The salary month that a date belongs to: of the calendar when no salary month holds it.
long SalaryMonthOf(Session& session, std::string_view dateText);

// What stands in the fields of the receipts screen.
struct ReceiptEntry {
  std::string counter;  // "" when nothing is picked
  std::string date;
  EditedAmount amount;
  EditedAmount interest;
  std::string remarks;

  double Total() const { return amount.Now() + interest.Now(); }
};

enum class ReceiptField { None, New, Date, Amount };

struct ReceiptRefusal {
  std::string text;
  ReceiptField field = ReceiptField::None;
};

// The checks before a save that ask nothing, in their fixed order.
std::optional<ReceiptRefusal> CheckReceipt(Session& session, const InstructionKey& key,
                                           const ReceiptEntry& entry);

// Adds the receipt or changes its amounts and remarks. The date of a stored receipt is never rewritten.
void WriteReceipt(Session& session, const InstructionKey& key, const ReceiptEntry& entry);
void DeleteReceipt(Session& session, const InstructionKey& key, const std::string& counter);

}  // namespace ktl
