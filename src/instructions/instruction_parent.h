#pragma once

#include <set>
#include <string>

#include "instructions/instruction_type.h"
#include "screen/screen.h"

namespace ktl {

// The instruction that a child screen works on.
struct InstructionKey {
  long employee = 0;
  InstructionType type = InstructionType::None;
  long serial = 0;

  bool operator==(const InstructionKey&) const = default;
};

// Of one instruction as its list shows them, rupees; all 0 when the list has no such row.
struct InstructionTotals {
  double amount = 0;
  double interest = 0;
  double emi = 0;  // all months as modified
  double recovered = 0;
  double receipts = 0;

  double Due() const { return amount + interest - recovered - receipts; }
};
// "10,000.00, due 6,660.00"
std::string AmountWords(const InstructionTotals& totals);

// What a child screen refreshes when it has written.
class InstructionLists {
 public:
  virtual ~InstructionLists() = default;

  virtual void RefreshDetail() = 0;
  virtual void RefreshEMI() = 0;
  virtual void RefreshReceipts() = 0;
  virtual void UpdateOverview() = 0;
};

// What a child screen needs of the entry screen that opened it.
class InstructionParent : public InstructionLists {
 public:
  virtual InstructionKey Key() const = 0;
  virtual std::string InstructionName() const = 0;
  virtual ktl::Subject Subject() const { return {}; }  // what a child says under its caption
  virtual InstructionTotals Totals() const = 0;
  virtual std::set<long> RecoveredMonths() const = 0;  // month-years, as the schedule's list marks them
  // Principal and interest of the months are kept apart.
  virtual bool ComponentsApart() const = 0;
  virtual long FnLngGetCounter() = 0;  // the number of the instruction's next month
};

}  // namespace ktl
