#pragma once

#include <string>
#include <vector>

#include "instructions/instruction_parent.h"
#include "instructions/schedule_month.h"
#include "recovery/adjustment.h"
#include "screen/controls.h"

namespace ktl {

struct Session;

// Which of the modified amounts of a month is meant: MDFYAMT, MDFPRNAMT, MDFINTAMT.
enum class Component { Amount, Principal, Interest };

double AmountOf(const ScheduleMonth& month, Component component);  // 0 for a null

// In the order of the months. Of the types with institutions a month without one is not listed, as in the
// parent. Recovered, of advances and loans only, is what the parent's list marks.
std::vector<ScheduleMonth> ReadEmiMonths(Session& session, const InstructionParent& parent);
std::vector<AdjustableMonth> AdjustableMonths(const std::vector<ScheduleMonth>& months, Component component);

// Of the months that have an actual amount; nothing when there is none.
struct LastMonth {
  long counter = 0;
  long monthYear = 0;
};
std::optional<LastMonth> ReadLastMonth(Session& session, const InstructionKey& key);

// The institutions of the type by name, INSTID behind each; none for types without institutions.
std::vector<ListRow> ReadInstitutionRows(Session& session, InstructionType type);

// Asks the salary side to calculate the month again.
void RaiseFlags(Session& session, const InstructionKey& key, long monthYear);

// Locked months of the range, each asked by itself.
long CountLockedMonths(Session& session, long firstMonth, long lastMonth);
// The same in one query.
long CountLockedMonthsAtOnce(Session& session, long firstMonth, long lastMonth);
// "3 Month(s) locked. Cannot save." and how to go on.
std::string LockedMonthsText(long count);

}  // namespace ktl
