#pragma once

#include <string>
#include <vector>

#include "instructions/advloan_entry.h"

namespace ktl {

struct Session;

// Writes a validated entry: the instruction's row, the schedule of a new one, the audit line, the salary
// flags. Each statement stands on its own; a failure half-way leaves what was done. False when nothing was
// written because the amount is 0 or below.
bool WriteAdvLoan(Session& session, const AdvLoanEntry& entry);

// The same for one of many employees: a flat schedule without the principal of its months, no loan number,
// the audit line last. For an amount above 0.
void WriteAllotted(Session& session, const AdvLoanEntry& entry);

// Takes the instruction away with its receipts, its schedule and, when told, its house-loan details. The
// flags are raised before, while its months are still there.
void TakeAway(Session& session, const InstructionKey& key, bool withHouseLoan);
// The same of an instruction that was looked at, with its audit line.
void DeleteAdvLoan(Session& session, const InstructionKey& key, const AdvLoanDetail& detail,
                   bool withHouseLoan);

enum class DeletedInstalments { NotAsked, SpreadOverOthers, NewMonth, NoAdjustment };

// Flags the month for recalculation and takes the instalment away.
void DeleteInstalment(Session& session, const InstructionKey& key, long counter);
// Spreads what was deleted over the months given, which are open and stay.
void SpreadDeleted(Session& session, const InstructionKey& key, const std::vector<OpenMonth>& open,
                   double deleted);
void AuditDeletedInstalments(Session& session, const InstructionKey& key, std::string_view name,
                             const std::vector<ScheduleMonth>& deleted, DeletedInstalments choice);
// Takes the interest of deleted months off the instruction; it may fall below 0.
void LowerTotalInterest(Session& session, const InstructionKey& key, std::string_view name, double interest);

// "Update INS_EMIDETAIL SET EMIRECVYN=1 " and back, for one month.
void MarkRecovered(Session& session, const InstructionKey& key, long counter, bool recovered);

}  // namespace ktl
