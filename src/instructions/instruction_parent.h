#pragma once

#include <string>

#include "screen/grid.h"

namespace ktl {

// The instruction that a child screen works on.
struct InstructionKey {
  long employee = 0;
  int siType = 0;
  long serial = 0;

  bool operator==(const InstructionKey&) const = default;
};

// What the month editor and the receipts screen need of the entry screen that opened them.
class InstructionParent {
 public:
  virtual ~InstructionParent() = default;

  virtual InstructionKey Key() const = 0;
  virtual std::string InstructionName() const = 0;
  virtual bool ReducingBalance() const = 0;
  virtual Grid& OverviewGrid() = 0;  // one row an instruction
  virtual Grid& EmiGrid() = 0;       // one row a month of the current instruction

  virtual void RefreshDetail() = 0;
  virtual void RefreshEMI() = 0;
  virtual void RefreshReceipts() = 0;
  virtual void UpdateOverview() = 0;
  virtual long FnLngGetCounter() = 0;  // the number of the instruction's next month
};

}  // namespace ktl
