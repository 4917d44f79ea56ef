#pragma once

#include <vector>

#include "instructions/instruction_parent.h"
#include "instructions/schedule_month.h"

namespace ktl {

struct Session;

// Principal and interest of months that are kept apart: those of a reducing balance.

// REDUCINGBALYN of the name that the instruction is stored under, whatever option is on.
bool KeepsComponentsApart(Session& session, const InstructionKey& key);

// The entry screen makes months without components: INTAMT is their interest then and the rest of the amount
// their principal, actual and modified alike. Counted so in months that were read:
void CountComponents(Session& session, const InstructionKey& key, std::vector<ScheduleMonth>& months);
// and written into the table before a month of the instruction is changed.
void StoreComponents(Session& session, const InstructionKey& key);

// What a month is made of when its amount becomes another one: the principal bears the difference, the
// interest only what the principal cannot.
struct ChangedComponents {
  double principal = 0;
  double interest = 0;
};
ChangedComponents ComponentsOfChangedAmount(double amount, double interestBefore);

}  // namespace ktl
