#pragma once

#include <string>
#include <vector>

#include "instructions/schedule_month.h"
#include "premium/premium_entry.h"

namespace ktl {

// Of the employee, from the first month to the last one.
void MarkTaxFlags(Session& session, const InstructionKey& key, long firstMonth, long lastMonth);

// Writes a validated entry: the instruction, the schedule of a new one, the audit line, the salary flags.
void WritePremium(Session& session, const PremiumEntry& entry);

// Deletes the instruction with its schedule. No transaction: a failure half-way leaves what was done.
void DeletePremium(Session& session, const InstructionKey& key, const std::string& caption);

// What became of the months that were to be deleted.
struct DeletedMonths {
  std::string locked;  // the months that stay, "Apr/2026, May/2026"
  bool employeeLocked = false;
};
// Month by month, without a transaction: a locked month stays, the employee's lock ends it.
DeletedMonths DeletePremiumMonths(Session& session, const InstructionKey& key, const std::string& caption,
                                  const std::vector<ScheduleMonth>& months);

}  // namespace ktl
